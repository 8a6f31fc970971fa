// Fills a picture column by column at the speed of rows: sixteen columns are composed in a buffer
// where each is contiguous, then written row by row, the order of a picture's memory.
#pragma once

#include <QImage>
#include <QRect>
#include <algorithm>
#include <cstddef>
#include <cstring>
#include <vector>

#include "Displays/PixelRows.h"

namespace TarvaneApp {

class ColumnTiles {
  public:
    static constexpr int tileColumns = 16;  // of four bytes: a cache line

    static constexpr std::size_t tileCount(int columns) {
        return static_cast<std::size_t>((columns + tileColumns - 1) / tileColumns);
    }

    /// Calls `compose(column, pixels)` for each column of the area; it writes all pixels of the
    /// column within the area, top down. The picture has 32 bits a pixel and contains the area.
    template <class Compose>
    void draw(QImage& picture, const QRect& area, Compose compose) {
        const PixelRows all{.first = 0, .end = area.height()};
        draw(
            picture, area, [all](int) { return all; },
            [&compose](int column, PixelRows, QRgb* pixels) { compose(column, pixels); });
    }

    /// Draws of each tile, counted from the area's left edge, the rows that `rowsOf(tile)` gives,
    /// counted from its top, and leaves the others as they are. `compose(column, rows, pixels)`
    /// writes those rows; `pixels` is where the area's first one would stand.
    template <class RowsOf, class Compose>
    void draw(QImage& picture, const QRect& area, RowsOf rowsOf, Compose compose) {
        const std::size_t stride = static_cast<std::size_t>(area.height()) + padding;
        pixels_.resize(tileColumns * stride);
        const int right = area.left() + area.width();
        // Outside the loop: each call to `bits` checks whether the picture is shared.
        uchar* const bits = picture.bits() + area.top() * picture.bytesPerLine();
        const qsizetype bytesPerLine = picture.bytesPerLine();
        int tile = 0;
        for (int left = area.left(); left < right; left += tileColumns) {
            const PixelRows rows = rowsOf(tile++);
            if (rows.isEmpty()) {
                continue;
            }
            const int count = std::min(tileColumns, right - left);
            for (int i = 0; i < count; ++i) {
                compose(left + i, rows, pixels_.data() + static_cast<std::size_t>(i) * stride);
            }
            int y = rows.first;
            if (count == tileColumns) {
                for (; y + block <= rows.end; y += block) {
                    for (int i = 0; i < tileColumns; i += block) {
                        auto* corner = bits + y * bytesPerLine + (left + i) * pixelBytes;
                        transpose(pixels_.data() + static_cast<std::size_t>(i) * stride + y, stride,
                                  corner, bytesPerLine);
                    }
                }
            }
            for (; y < rows.end; ++y) {
                auto* row = reinterpret_cast<QRgb*>(bits + y * bytesPerLine) + left;
                for (int i = 0; i < count; ++i) {
                    row[i] =
                        pixels_[static_cast<std::size_t>(i) * stride + static_cast<std::size_t>(y)];
                }
            }
        }
    }

  private:
    static constexpr int block = 4;
    static constexpr int pixelBytes = static_cast<int>(sizeof(QRgb));
    // Between two columns, so that neighbours don't share a set of the cache.
    static constexpr std::size_t padding = 24;

    using Vector [[gnu::vector_size(block * sizeof(QRgb))]] = QRgb;

    // Four pixels of each of four columns, `stride` apart, into four rows. No compiler of ours
    // makes vector code of the plain loop.
    static void transpose(const QRgb* columns, std::size_t stride, uchar* rows,
                          qsizetype bytesPerLine) {
        Vector a, b, c, d;
        std::memcpy(&a, columns, sizeof(a));
        std::memcpy(&b, columns + stride, sizeof(b));
        std::memcpy(&c, columns + 2 * stride, sizeof(c));
        std::memcpy(&d, columns + 3 * stride, sizeof(d));
        const Vector upperLeft = __builtin_shufflevector(a, b, 0, 4, 1, 5);
        const Vector upperRight = __builtin_shufflevector(c, d, 0, 4, 1, 5);
        const Vector lowerLeft = __builtin_shufflevector(a, b, 2, 6, 3, 7);
        const Vector lowerRight = __builtin_shufflevector(c, d, 2, 6, 3, 7);
        a = __builtin_shufflevector(upperLeft, upperRight, 0, 1, 4, 5);
        b = __builtin_shufflevector(upperLeft, upperRight, 2, 3, 6, 7);
        c = __builtin_shufflevector(lowerLeft, lowerRight, 0, 1, 4, 5);
        d = __builtin_shufflevector(lowerLeft, lowerRight, 2, 3, 6, 7);
        std::memcpy(rows, &a, sizeof(a));
        std::memcpy(rows + bytesPerLine, &b, sizeof(b));
        std::memcpy(rows + 2 * bytesPerLine, &c, sizeof(c));
        std::memcpy(rows + 3 * bytesPerLine, &d, sizeof(d));
    }

    std::vector<QRgb> pixels_;
};

}  // namespace TarvaneApp
