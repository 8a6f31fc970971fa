#include "Displays/Spectrogram/SpectrogramRaster.h"

#include <QPainter>
#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <utility>

#include "Displays/PixelBlend.h"
#include "Displays/Theme.h"

namespace TarvaneApp {

namespace {

std::size_t at(int index) {
    return static_cast<std::size_t>(index);
}

// Blends of rows, byte by byte and in 16 bits, which compilers turn into vector code. Weights sum
// up to 256, so that no sum exceeds 255 · 256 + 128.

constexpr std::uint16_t half = 128;

template <std::size_t rowCount>
void mix(std::uint8_t* __restrict line, const std::array<const std::uint8_t*, rowCount>& rows,
         const std::uint16_t* weights, std::size_t count) {
    const std::uint8_t* __restrict first = rows[0];
    const std::uint8_t* __restrict second = rows[1];
    const std::uint8_t* __restrict third = rows[rowCount > 2 ? 2 : 0];
    const std::uint8_t* __restrict fourth = rows[rowCount > 3 ? 3 : 0];
    const std::uint16_t w0 = weights[0];
    const std::uint16_t w1 = weights[1];
    const std::uint16_t w2 = rowCount > 2 ? weights[2] : std::uint16_t{0};
    const std::uint16_t w3 = rowCount > 3 ? weights[3] : std::uint16_t{0};
    for (std::size_t i = 0; i < count; ++i) {
        auto sum = static_cast<std::uint16_t>(first[i] * w0 + second[i] * w1 + half);
        if constexpr (rowCount > 2) {
            sum = static_cast<std::uint16_t>(sum + third[i] * w2);
        }
        if constexpr (rowCount > 3) {
            sum = static_cast<std::uint16_t>(sum + fourth[i] * w3);
        }
        line[i] = static_cast<std::uint8_t>(sum >> 8);
    }
}

void add(std::uint16_t* __restrict sums, const std::uint8_t* __restrict row, std::uint16_t weight,
         std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        sums[i] = static_cast<std::uint16_t>(sums[i] + row[i] * weight);
    }
}

void highBytes(std::uint8_t* __restrict line, const std::uint16_t* __restrict sums,
               std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        line[i] = static_cast<std::uint8_t>(sums[i] >> 8);
    }
}

}  // namespace

const QImage& SpectrogramRaster::image(const SpectrogramView& view, const QSizeF& size,
                                       double pixelRatio) {
    const bool isSameShape = prepareShape(view, size, pixelRatio);
    if (image_.isNull()) {
        return image_;
    }
    const SpectrogramView::VisibleRows visible = view.visibleRows();
    const int columns = static_cast<int>(view.frequencies.size());
    const int height = visible.end - visible.first;
    if (height < 1 || columns < 1) {
        image_.fill(Theme::background);
        QPainter painter(&image_);
        paintFrequencyRules(painter, view, size);
        hasRows_ = false;
        return image_;
    }
    const int painted =
        cache_.update(view.history.slice(visible.first, visible.end), view.rowsAdded,
                      visible.isLive, columns, view.floorDB, view.ceilingDB, view.colorStops);
    rowsPainted_ += painted;
    if (painted == 0 && isSameShape && hasRows_) {
        return image_;
    }
    prepare(across_, columns, image_.width());
    prepare(down_, height, image_.height());
    wideRows_.resize(at(height) * at(image_.width()));
    for (int row = isSameShape && hasRows_ ? height - painted : 0; row < height; ++row) {
        widen(cache_.slot(row));
    }
    hasRows_ = true;
    blendRows();
    return image_;
}

bool SpectrogramRaster::prepareShape(const SpectrogramView& view, const QSizeF& size,
                                     double pixelRatio) {
    const QSize pixels(qRound(size.width() * pixelRatio), qRound(size.height() * pixelRatio));
    if (image_.size() == pixels && size_ == size && minHz_ == view.minHz && maxHz_ == view.maxHz) {
        return true;
    }
    image_ = pixels.isEmpty() ? QImage() : QImage(pixels, QImage::Format_RGB32);
    size_ = size;
    minHz_ = view.minHz;
    maxHz_ = view.maxHz;
    if (!image_.isNull()) {
        image_.setDevicePixelRatio(pixelRatio);
        prepareRules(view, size);
    }
    return false;
}

// Enlarged, a pixel lies between the middles of two cells; reduced, it is the share of each cell
// that falls into it.
void SpectrogramRaster::prepare(Resampling& resampling, int from, int to) {
    if (resampling.from == from && resampling.to == to) {
        return;
    }
    resampling = {.from = from, .to = to, .shares = {}, .weights = {}};
    const double ratio = static_cast<double>(from) / to;
    for (int i = 0; i < to; ++i) {
        double start = i * ratio;
        double end = start + ratio;
        if (ratio < 1.0) {
            const double middle = (start + end) / 2.0;
            start = std::max(middle - 0.5, 0.0);
            end = std::min(middle + 0.5, static_cast<double>(from));
        }
        const int first = std::min(static_cast<int>(start), from - 1);
        const int last = std::clamp(static_cast<int>(std::ceil(end)) - 1, first, from - 1);
        Share share{.first = first, .count = 0, .firstWeight = resampling.weights.size()};
        // Running sums are rounded, so that the weights sum up exactly.
        std::uint32_t before = 0;
        for (int cell = first; cell <= last; ++cell) {
            const double reached = std::min(end, cell + 1.0) - start;
            const std::uint32_t sum =
                cell == last ? PixelBlend::fullWeight : PixelBlend::weight(reached / (end - start));
            resampling.weights.push_back(static_cast<std::uint16_t>(sum - before));
            before = sum;
            ++share.count;
        }
        resampling.shares.push_back(share);
    }
}

void SpectrogramRaster::widen(int slot) {
    constexpr std::uint32_t low = 0x00FF00FF;
    constexpr std::uint32_t halves = 0x00800080;
    const QRgb* cells = cache_.rowAtSlot(slot);
    QRgb* pixels = wideRows_.data() + at(slot) * at(across_.to);
    for (const Share& share : across_.shares) {
        const std::uint16_t* weights = across_.weights.data() + share.firstWeight;
        std::uint32_t even = halves;
        std::uint32_t odd = halves;
        for (int i = 0; i < share.count; ++i) {
            const QRgb cell = cells[share.first + i];
            even += (cell & low) * weights[i];
            odd += ((cell >> 8U) & low) * weights[i];
        }
        *pixels++ = ((even >> 8U) & low) | (odd & ~low);
    }
    pixels -= across_.to;
    for (const RulePixel& rule : rules_) {
        pixels[rule.x] = PixelBlend::over(pixels[rule.x], rule.color, PixelBlend::fullWeight);
    }
}

void SpectrogramRaster::blendRows() {
    const std::size_t bytes = at(across_.to) * sizeof(QRgb);
    const auto row = [&](int index) {
        return reinterpret_cast<const std::uint8_t*>(wideRows_.data() +
                                                     at(cache_.slot(index)) * at(across_.to));
    };
    sums_.resize(bytes);
    for (int y = 0; y < image_.height(); ++y) {
        const Share& share = down_.shares[at(y)];
        const std::uint16_t* weights = down_.weights.data() + share.firstWeight;
        std::uint8_t* line = image_.scanLine(y);
        const auto rows = [&]<std::size_t... i>(std::index_sequence<i...>) {
            return std::array{row(share.first + static_cast<int>(i))...};
        };
        switch (share.count) {
            case 1:
                std::memcpy(line, row(share.first), bytes);
                break;
            case 2:
                mix(line, rows(std::make_index_sequence<2>()), weights, bytes);
                break;
            case 3:
                mix(line, rows(std::make_index_sequence<3>()), weights, bytes);
                break;
            case 4:
                mix(line, rows(std::make_index_sequence<4>()), weights, bytes);
                break;
            default:
                std::fill(sums_.begin(), sums_.end(), half);
                for (int i = 0; i < share.count; ++i) {
                    add(sums_.data(), row(share.first + i), weights[i], bytes);
                }
                highBytes(line, sums_.data(), bytes);
        }
    }
}

void SpectrogramRaster::prepareRules(const SpectrogramView& view, const QSizeF& size) {
    const double pixelRatio = image_.devicePixelRatio();
    QImage row(image_.width(), 1, QImage::Format_ARGB32_Premultiplied);
    row.setDevicePixelRatio(pixelRatio);
    row.fill(Qt::transparent);
    QPainter painter(&row);
    paintFrequencyRules(painter, view, size);
    painter.end();
    rules_.clear();
    const auto* pixels = reinterpret_cast<const QRgb*>(row.constScanLine(0));
    for (int x = 0; x < row.width(); ++x) {
        if (qAlpha(pixels[x]) != 0) {
            rules_.push_back({x, pixels[x]});
        }
    }
}

}  // namespace TarvaneApp
