// The ring about the control or display that has the keyboard's focus.
#pragma once

#include <QRectF>

class QPainter;

namespace TarvaneApp {

/// Just inside `rect`.
void paintFocusRing(QPainter& painter, const QRectF& rect, double radius);

}  // namespace TarvaneApp
