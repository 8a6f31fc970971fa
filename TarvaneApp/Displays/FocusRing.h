// The ring around the control or display that has the keyboard focus.
#pragma once

#include <QRectF>

class QColor;
class QPainter;

namespace TarvaneApp {

/// Just inside `rect`.
void paintFocusRing(QPainter& painter, const QRectF& rect, double radius);
/// In a colour that stands out from the ground, where the usual one wouldn't.
void paintFocusRing(QPainter& painter, const QRectF& rect, double radius, const QColor& color);

}  // namespace TarvaneApp
