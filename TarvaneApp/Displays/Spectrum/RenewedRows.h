// Which part of a graph has to be drawn anew when only levels have changed. Above all that moves a
// graph is its ground, and below it is filled, from picture to picture: by tile of columns
// (ColumnTiles) the rows between are renewed, where something moved in the last picture or does in
// this one.
#pragma once

#include <QRect>
#include <vector>

#include "Displays/PixelRows.h"

namespace TarvaneApp {

class RenewedRows {
  public:
    /// A new picture of that size. `isAllAnew`: the last one is no help.
    void start(int columns, int rows, bool isAllAnew);
    /// Something that moves stands in these columns, and the graph looks otherwise from its rows'
    /// end on than above them. Rows without length are a mere border.
    void add(int firstColumn, int endColumn, PixelRows rows);

    PixelRows ofTile(int tile) const;
    /// Of the whole picture.
    QRect bounds() const;

  private:
    int columns_ = 0;
    std::vector<PixelRows> last_;  // by tile
    std::vector<PixelRows> moving_;
};

}  // namespace TarvaneApp
