// The ring about the control or display that has the keyboard's focus.
#pragma once

#include <QRectF>

class QColor;
class QPainter;

namespace TarvaneApp {

/// Just inside `rect`.
void paintFocusRing(QPainter& painter, const QRectF& rect, double radius);
/// In another colour than the usual one, on a ground that this wouldn't stand out from.
void paintFocusRing(QPainter& painter, const QRectF& rect, double radius, const QColor& color);

}  // namespace TarvaneApp
