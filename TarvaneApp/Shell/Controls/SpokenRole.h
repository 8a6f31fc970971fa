// What a widget of our own is to a screen reader, where the toolkit takes it for a mere frame.
#pragma once

#include <QAccessible>
#include <optional>

class QWidget;

namespace TarvaneApp {

/// Its name and description stay its own to say.
void setSpokenRole(QWidget& widget, QAccessible::Role role);
/// None where nothing was set.
std::optional<QAccessible::Role> spokenRole(const QWidget& widget);

/// A press of the button opens a popover, which a screen reader tells of ahead of the press.
void setOpensPopover(QWidget& button);
bool opensPopover(const QWidget& button);

}  // namespace TarvaneApp
