// Straight lines of a graph on whole device pixels: grid lines and markers. A line at the plot's
// edge lies inside the plot in full.
#pragma once

#include <QRectF>

class QColor;
class QPainter;

namespace TarvaneApp {

/// Across the whole plot, one logical pixel thick.
void paintHorizontalLine(QPainter& painter, double y, const QRectF& plot, const QColor& color);

/// From top to bottom of the plot, `thickness` in logical pixels.
void paintVerticalLine(QPainter& painter, double x, const QRectF& plot, const QColor& color,
                       double thickness = 1.0);

}  // namespace TarvaneApp
