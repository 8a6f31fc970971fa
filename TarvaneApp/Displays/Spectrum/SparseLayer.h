// A layer that covers little of a picture (labels, a dashed curve), kept as its runs of visible
// pixels: drawn once, then blended into each frame.
#pragma once

#include <QImage>
#include <algorithm>
#include <cstddef>
#include <vector>

#include "Displays/ColumnTiles.h"

namespace TarvaneApp {

class SparseLayer {
  public:
    SparseLayer() = default;
    /// Takes what is visible of a picture in ARGB32_Premultiplied.
    explicit SparseLayer(const QImage& picture);

    /// `target` is opaque, of the picture's size. Of each tile of columns (ColumnTiles) it is
    /// blended into the rows that `rowsOf(tile)` gives.
    template <class RowsOf>
    void blendInto(QImage& target, RowsOf rowsOf) const {
        uchar* const bits = target.bits();
        const qsizetype bytesPerLine = target.bytesPerLine();
        for (const Run& run : runs_) {
            auto* pixels = reinterpret_cast<QRgb*>(bits + run.y * bytesPerLine);
            for (int x = run.x; x < run.x + run.length;) {
                const int tile = x / ColumnTiles::tileColumns;
                const int end = std::min(run.x + run.length, (tile + 1) * ColumnTiles::tileColumns);
                if (rowsOf(tile).contains(run.y)) {
                    blend(pixels + x, pixels_.data() + run.source + (x - run.x), end - x);
                }
                x = end;
            }
        }
    }

  private:
    struct Run {
        int x;
        int y;
        int length;
        std::ptrdiff_t source;  // its first pixel
    };

    static void blend(QRgb* target, const QRgb* source, int count);

    std::vector<Run> runs_;
    std::vector<QRgb> pixels_;  // of all runs, one after another
};

}  // namespace TarvaneApp
