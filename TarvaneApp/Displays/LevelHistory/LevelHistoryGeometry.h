// Where the parts of a level history are at a size: its plot and axes, the columns and lines of its
// traces. Arithmetic that the plain and the fast drawing share. Coordinates are logical pixels,
// the origin at the top left of the view.
#pragma once

#include <QColor>
#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <vector>

#include "Core/RGBAColor.h"
#include "Displays/LevelHistory/LevelHistoryTraces.h"
#include "Displays/LevelHistory/LevelHistoryView.h"
#include "Displays/LevelHistory/LevelHistoryViewport.h"

namespace TarvaneApp {

/// Plot, axes and traces of one picture, as they follow from the record and a size.
struct LevelHistoryGeometry {
    QRectF plot;
    LevelHistoryViewport::Range range;
    LevelHistoryTraces traces;
    LevelHistoryView::Span axis;
};
LevelHistoryGeometry layout(const LevelHistoryView& view, const QSizeF& size);

/// A line as its unbroken parts, and its look.
struct LevelHistoryLine {
    std::vector<std::vector<QPointF>> parts;
    QColor color;
    double width = 0.0;
};
std::vector<LevelHistoryLine> historyLines(const LevelHistoryView& view,
                                           const LevelHistoryGeometry& geometry);

/// The bright band of a column over its faint foot, on whole device pixels across.
struct LevelHistoryColumn {
    double left = 0.0;
    double right = 0.0;
    double top = 0.0;     ///< of band and foot
    double bottom = 0.0;  ///< of the band; the foot ends with the plot
    TarvaneKit::RGBAColor color;
};
std::vector<LevelHistoryColumn> historyColumns(const LevelHistoryView& view,
                                               const LevelHistoryGeometry& geometry,
                                               double pixelRatio);

}  // namespace TarvaneApp
