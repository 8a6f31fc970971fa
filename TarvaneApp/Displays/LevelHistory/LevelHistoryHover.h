// The readout of a level history under the pointer: a line over the plot, and a plate with the
// moment and its levels. It is drawn apart from the graph, since it follows the pointer.
#pragma once

#include <QRectF>
#include <QSizeF>
#include <QString>

#include "Displays/LevelHistory/LevelHistoryGeometry.h"
#include "Displays/Theme.h"

class QPainter;

namespace TarvaneApp {

/// What the readout says, empty for a pointer outside the plot.
QString hoverText(const LevelHistoryView& view, const LevelHistoryGeometry& geometry);
/// The readout's plate; empty without a readout.
QRectF hoverPlate(const LevelHistoryView& view, const LevelHistoryGeometry& geometry,
                  const QSizeF& size, const Typeface& typeface = Typeface::installed());
void drawHover(QPainter& painter, const LevelHistoryView& view,
               const LevelHistoryGeometry& geometry, const QSizeF& size,
               const Typeface& typeface = Typeface::installed());

}  // namespace TarvaneApp
