#include "Displays/Spectrogram/SpectrogramRasterCache.h"

#include <algorithm>
#include <cstring>

#include "Displays/Spectrogram/SpectrogramView.h"

namespace TarvaneApp {

namespace {

// Keeps the arithmetic finite where floor and ceiling have met.
constexpr double smallestRangeDB = 0.000001;
constexpr float lastIndex = 255.0F;

}  // namespace

int SpectrogramRasterCache::update(const SpectrogramRows& rows, std::int64_t rowsAdded, bool isLive,
                                   int width, double floorDB, double ceilingDB,
                                   const std::vector<SpectrogramColorStop>& stops) {
    const int height = rows.count();
    if (height < 1 || width < 1) {
        return 0;
    }
    const bool isSameRamp = key_ && key_->stops == stops;
    const bool isSamePicture = isSameRamp && key_->width == width && key_->height == height &&
                               key_->floorDB == floorDB && key_->ceilingDB == ceilingDB;
    if (!isSameRamp) {
        lut_ = SpectrogramView::colorLUT(stops);
    }
    const std::int64_t arrived = rowsAdded - renderedRowsAdded_;
    const bool isIncremental =
        isLive && wasLive_ && isSamePicture && arrived >= 0 && arrived < height;
    const int painted = isIncremental ? static_cast<int>(arrived) : height;
    if (!isSamePicture) {
        key_ = {.width = width,
                .height = height,
                .floorDB = floorDB,
                .ceilingDB = ceilingDB,
                .stops = stops};
    }
    if (!isIncremental) {
        pixels_.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
        first_ = 0;
    }
    // New rows take the slots of those that left.
    first_ = (first_ + painted) % height;
    const auto scale =
        static_cast<float>(lastIndex / std::max(ceilingDB - floorDB, smallestRangeDB));
    for (int row = height - painted; row < height; ++row) {
        paintRow(rows[row], static_cast<float>(floorDB), scale,
                 pixels_.data() + static_cast<std::size_t>(slot(row)) * this->width());
    }
    if (painted > 0) {
        cachedImage_ = QImage();
    }
    renderedRowsAdded_ = rowsAdded;
    wasLive_ = isLive;
    return painted;
}

// A cell beyond the end of its row, or NaN, gets the ramp's first colour.
void SpectrogramRasterCache::paintRow(std::span<const float> levelsDB, float floorDB, float scale,
                                      QRgb* pixels) const {
    const std::size_t count = std::min(levelsDB.size(), width());
    for (std::size_t column = 0; column < count; ++column) {
        const float t = (levelsDB[column] - floorDB) * scale;
        const float limited = t > 0.0F ? std::min(t, lastIndex) : 0.0F;
        pixels[column] = lut_[static_cast<std::size_t>(limited)];
    }
    std::fill(pixels + count, pixels + width(), lut_.front());
}

QImage SpectrogramRasterCache::image(const SpectrogramRows& rows, std::int64_t rowsAdded,
                                     bool isLive, int width, double floorDB, double ceilingDB,
                                     const std::vector<SpectrogramColorStop>& stops) {
    if (rows.count() < 1 || width < 1) {
        return {};
    }
    update(rows, rowsAdded, isLive, width, floorDB, ceilingDB, stops);
    if (cachedImage_.isNull()) {
        cachedImage_ = QImage(width, rows.count(), QImage::Format_RGB32);
        for (int row = 0; row < rows.count(); ++row) {
            std::memcpy(cachedImage_.scanLine(row), rowAtSlot(slot(row)),
                        this->width() * sizeof(QRgb));
        }
    }
    return cachedImage_;
}

}  // namespace TarvaneApp
