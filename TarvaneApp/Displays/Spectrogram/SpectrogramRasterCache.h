// The visible rows of a spectrogram as coloured pixels, one per cell, kept from frame to frame:
// while the newest rows are shown, only those that arrived since the last frame are painted.
//
// Rows lie in a ring, so that the older ones stay where they are. One cache per view; main
// thread.
#pragma once

#include <QImage>
#include <QRgb>
#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "Displays/Spectrogram/SpectrogramRows.h"
#include "Records/SpectrogramColorStop.h"

namespace TarvaneApp {

class SpectrogramRasterCache {
  public:
    /// What the pixels were painted for.
    struct Key {
        int width = 0;
        int height = 0;
        double floorDB = 0.0;
        double ceilingDB = 0.0;
        std::vector<SpectrogramColorStop> stops;

        bool operator==(const Key&) const = default;
    };
    using LUT = std::array<QRgb, 256>;

    /// Paints what is not painted yet. `rowsAdded` counts every row that ever came; `isLive` says
    /// that the last of `rows` is the newest. Without rows or columns the cache stays unchanged.
    /// @returns how many rows were painted, the newest ones; all of them after a change.
    int update(const SpectrogramRows& rows, std::int64_t rowsAdded, bool isLive, int width,
               double floorDB, double ceilingDB, const std::vector<SpectrogramColorStop>& stops);

    /// The same as a picture of one pixel per cell, the oldest row on top. It stays the same
    /// picture while nothing is painted. Null without rows or columns.
    QImage image(const SpectrogramRows& rows, std::int64_t rowsAdded, bool isLive, int width,
                 double floorDB, double ceilingDB, const std::vector<SpectrogramColorStop>& stops);

    /// Absent before the first update.
    const std::optional<Key>& key() const { return key_; }
    const LUT& lut() const { return lut_; }

    /// The place of a row in the ring; row 0 is the oldest.
    int slot(int row) const { return (first_ + row) % key_->height; }
    const QRgb* rowAtSlot(int slot) const {
        return pixels_.data() + static_cast<std::size_t>(slot) * width();
    }

  private:
    std::size_t width() const { return static_cast<std::size_t>(key_->width); }
    void paintRow(std::span<const float> levelsDB, float floorDB, float scale, QRgb* pixels) const;

    std::optional<Key> key_;
    LUT lut_{};
    std::vector<QRgb> pixels_;
    int first_ = 0;  // slot of the oldest row
    std::int64_t renderedRowsAdded_ = 0;
    bool wasLive_ = false;
    QImage cachedImage_;
};

}  // namespace TarvaneApp
