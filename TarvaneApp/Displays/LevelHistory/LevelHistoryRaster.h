// The fast drawing of the level history into a picture. It looks like the plain drawing of
// LevelHistoryView; its columns are copied from the few different columns that there are (on a
// grid line or beside it, band or foot, by colour), and its lines are drawn by pixel column.
//
// One raster per view, kept from frame to frame with all its storage. Main thread.
#pragma once

#include <QImage>
#include <map>
#include <span>
#include <tuple>
#include <vector>

#include "Displays/ColumnTiles.h"
#include "Displays/LevelHistory/LevelHistoryGeometry.h"
#include "Displays/Theme.h"
#include "Displays/TraceColumns.h"

namespace TarvaneApp {

class LevelHistoryRaster {
  public:
    /// `ground` is the background's colour.
    explicit LevelHistoryRaster(const QColor& ground, Typeface typeface = Typeface::installed());

    /// The graph without its readout, in RGB32 with `pixelRatio` device pixels per logical one;
    /// repainted only when record, size or ratio have changed. Valid until the next call. Null for
    /// a size without pixels.
    const QImage& image(const LevelHistoryView& view, const QSizeF& size, double pixelRatio);

    /// The picture's, for its readout.
    const LevelHistoryGeometry& geometry() const { return geometry_; }

    /// How often a picture was drawn.
    int picturesDrawn() const { return picturesDrawn_; }

  private:
    // A history column in device pixels, from the plot's top down.
    struct Column {
        double top = 0.0;
        double bandBottom = 0.0;
        QRgb foot = 0;  // premultiplied
        QRgb band = 0;
    };
    enum class Part { foot, band };

    void drawColumns(const LevelHistoryView& view);
    void takeGrounds(const QRect& plot);
    void compose(int ground, const Column& column, double plotHeight, std::span<QRgb> pixels);
    // A column of ground with the foot over it, and the band over that.
    const QRgb* stillColumn(int ground, const Column& column, Part part);
    void drawLines(const LevelHistoryView& view);

    const QColor ground_;
    const Typeface typeface_;
    QImage image_;
    QSizeF size_;
    LevelHistoryView view_;
    LevelHistoryGeometry geometry_;
    int picturesDrawn_ = 0;

    // Reused from picture to picture.
    std::vector<std::vector<QRgb>> grounds_;
    std::vector<int> groundOfColumn_;  // by column of the plot
    std::vector<int> columnAt_;        // by column of the plot; -1 for a gap
    std::vector<Column> columns_;
    std::map<std::tuple<int, Part, QRgb>, std::vector<QRgb>> stillColumns_;
    ColumnTiles tiles_;
    TraceColumns trace_;
};

}  // namespace TarvaneApp
