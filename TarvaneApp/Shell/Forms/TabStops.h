// Where Tab goes: the toolkit's own order is that of the widgets' making.
#pragma once

#include <QList>

class QWidget;

namespace TarvaneApp {

/// From each to the next.
void chainTabStops(const QList<QWidget*>& stops);

/// Where Tab stops in a widget, as one reads: lines from the top, each from the left. What has
/// parts of its own, as a slider with its value, is one stop; what can't be seen or used is none.
QList<QWidget*> tabStopsIn(const QWidget& widget);

/// Moves the focus of a window on by one stop in the order of reading, in a ring, and scrolls to
/// it. False in a window that has no stop. For forms whose rows come and go after what stands under
/// them.
bool focusNextTabStop(const QWidget& window, bool forwards);

}  // namespace TarvaneApp
