// Fills a picture column by column at the speed of rows: sixteen columns are composed in a buffer
// where each is contiguous, then written row by row, the order of a picture's memory.
#pragma once

#include <QImage>
#include <QRect>
#include <algorithm>
#include <cstddef>
#include <type_traits>
#include <vector>

namespace TarvaneApp {

class ColumnTiles {
  public:
    /// Calls `compose(column, pixels)` for each column of the area; it writes all pixels of the
    /// column within the area, top down. The picture has 32 bits a pixel and contains the area.
    template <class Compose>
    void draw(QImage& picture, const QRect& area, Compose compose) {
        const std::size_t stride = static_cast<std::size_t>(area.height()) + padding;
        pixels_.resize(tileColumns * stride);
        const int right = area.left() + area.width();
        // Outside the loop: each call to `bits` checks whether the picture is shared.
        uchar* const bits = picture.bits() + area.top() * picture.bytesPerLine();
        const qsizetype bytesPerLine = picture.bytesPerLine();
        for (int left = area.left(); left < right; left += tileColumns) {
            const int count = std::min(tileColumns, right - left);
            for (int i = 0; i < count; ++i) {
                compose(left + i, pixels_.data() + static_cast<std::size_t>(i) * stride);
            }
            const auto write = [&](auto columns) {
                for (int y = 0; y < area.height(); ++y) {
                    auto* row = reinterpret_cast<QRgb*>(bits + y * bytesPerLine) + left;
                    const QRgb* source = pixels_.data() + y;
                    for (int i = 0; i < columns; ++i) {
                        row[i] = source[static_cast<std::size_t>(i) * stride];
                    }
                }
            };
            if (count == tileColumns) {
                // With a width known to the compiler this becomes vector code.
                write(std::integral_constant<int, tileColumns>());
            } else {
                write(count);
            }
        }
    }

  private:
    static constexpr int tileColumns = 16;  // of four bytes: a cache line
    // Between two columns, so that neighbours don't share a set of the cache.
    static constexpr std::size_t padding = 24;

    std::vector<QRgb> pixels_;
};

}  // namespace TarvaneApp
