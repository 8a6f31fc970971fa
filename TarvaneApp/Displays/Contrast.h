// How well a colour stands out of another one, and colours that stand out well enough: 4.5 to 1 for
// text, 3 to 1 for large text and marks (WCAG 2.1, 1.4.3 and 1.4.11).
#pragma once

#include <QColor>

namespace TarvaneApp::Contrast {

inline constexpr double text = 4.5;
inline constexpr double mark = 3.0;

/// From 1 to 21; opaque colours.
double ratio(const QColor& a, const QColor& b);

/// The theme's light or dark text, whichever stands out more.
QColor textOn(const QColor& ground);

/// The colour, as much lighter as text in it needs on a dark ground.
QColor legible(const QColor& color, const QColor& ground);

}  // namespace TarvaneApp::Contrast
