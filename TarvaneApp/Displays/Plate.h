// The rounded plate under a text or control.
#pragma once

class QColor;
class QPainter;
class QRectF;

namespace TarvaneApp {

/// Leaves the painter without a pen, and antialiasing on.
void paintPlate(QPainter& painter, const QRectF& rect, double radius, const QColor& color);

}  // namespace TarvaneApp
