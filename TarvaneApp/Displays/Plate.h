// The rounded plate under a text or control.
#pragma once

class QColor;
class QPainter;
class QRectF;

namespace TarvaneApp {

/// Leaves the painter without a pen, and antialiasing on.
void paintPlate(QPainter& painter, const QRectF& rect, double radius, const QColor& color);

/// What lies over the window, as a popover: the panels' ground, with a hairline around it.
void paintRaisedPanel(QPainter& painter, const QRectF& rect);

}  // namespace TarvaneApp
