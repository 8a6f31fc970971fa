// The look of every window: one dark palette for the toolkit's own controls, made of the
// display theme's colours, and a focus ring that can be seen.
#pragma once

#include <QRectF>

class QPainter;

namespace TarvaneApp {

/// Puts style and palette in force for the whole program. Once, before the first window.
void applyAppearance();

/// The ring about a control that has the keyboard's focus, just inside `rect`.
void paintFocusRing(QPainter& painter, const QRectF& rect, double radius);

}  // namespace TarvaneApp
