// The plain drawing of a level history with any painter: what pages are drawn with, and what the
// fast drawing of windows (LevelHistoryRaster) must look like. Coordinates are logical pixels, the
// origin at the top left of the view.
#pragma once

#include <QSizeF>

#include "Displays/LevelHistory/LevelHistoryGeometry.h"
#include "Displays/Theme.h"

class QPainter;

namespace TarvaneApp {

/// The whole graph; the background is left as it is. The readout is drawn apart, since it
/// follows the pointer.
void paint(QPainter& painter, const LevelHistoryView& view, const QSizeF& size,
           const Typeface& typeface = Typeface::installed());
/// The same of what was read and laid out before: it needs no recorder, and runs on any thread.
void paint(QPainter& painter, const LevelHistoryView& view, const LevelHistoryGeometry& geometry,
           const Typeface& typeface = Typeface::installed());

void drawGrid(QPainter& painter, const LevelHistoryView& view, const LevelHistoryGeometry& geometry,
              const Typeface& typeface);
void drawColumns(QPainter& painter, const LevelHistoryView& view,
                 const LevelHistoryGeometry& geometry);
void drawLines(QPainter& painter, const LevelHistoryView& view,
               const LevelHistoryGeometry& geometry);
/// Marks at the extremes, and what an empty graph says.
void drawMarks(QPainter& painter, const LevelHistoryView& view,
               const LevelHistoryGeometry& geometry, const Typeface& typeface);

namespace LevelHistoryOpacity {
inline constexpr double foot = 0.18;
inline constexpr double band = 0.9;
}  // namespace LevelHistoryOpacity

}  // namespace TarvaneApp
