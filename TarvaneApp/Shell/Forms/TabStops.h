// The order in which Tab goes through widgets that were not made in their order on the screen: the
// toolkit's own is that of their making.
#pragma once

#include <QList>

class QWidget;

namespace TarvaneApp {

/// Where Tab stops in a widget, in the order of its children. What has parts of its own, as a
/// slider with its value, is one stop.
QList<QWidget*> tabStopsIn(QWidget& widget);

/// From each to the next.
void chainTabStops(const QList<QWidget*>& stops);

}  // namespace TarvaneApp
