#include "Displays/Spectrum/RenewedRows.h"

#include <algorithm>
#include <limits>

#include "Displays/ColumnTiles.h"

namespace TarvaneApp {

namespace {

constexpr PixelRows nothing{.first = std::numeric_limits<int>::max(), .end = 0};

PixelRows unite(PixelRows a, PixelRows b) {
    return {.first = std::min(a.first, b.first), .end = std::max(a.end, b.end)};
}

}  // namespace

void RenewedRows::start(int columns, int rows, bool isAllAnew) {
    columns_ = columns;
    const std::size_t tiles = ColumnTiles::tileCount(columns);
    std::swap(last_, moving_);
    if (isAllAnew || last_.size() != tiles) {
        last_.assign(tiles, {.first = 0, .end = rows});
    }
    moving_.assign(tiles, nothing);
}

void RenewedRows::add(int firstColumn, int endColumn, PixelRows rows) {
    const int first = std::max(firstColumn, 0);
    const int end = std::min(endColumn, columns_);
    for (int column = first; column < end;) {
        const int tile = column / ColumnTiles::tileColumns;
        PixelRows& moving = moving_[static_cast<std::size_t>(tile)];
        moving = unite(moving, rows);
        column = (tile + 1) * ColumnTiles::tileColumns;
    }
}

PixelRows RenewedRows::ofTile(int tile) const {
    const auto index = static_cast<std::size_t>(tile);
    return unite(last_[index], moving_[index]);
}

QRect RenewedRows::bounds() const {
    QRect all;
    for (int tile = 0; tile < static_cast<int>(moving_.size()); ++tile) {
        const PixelRows rows = ofTile(tile);
        const int left = tile * ColumnTiles::tileColumns;
        if (!rows.isEmpty()) {
            all |= QRect(left, rows.first, std::min(ColumnTiles::tileColumns, columns_ - left),
                         rows.end - rows.first);
        }
    }
    return all;
}

}  // namespace TarvaneApp
