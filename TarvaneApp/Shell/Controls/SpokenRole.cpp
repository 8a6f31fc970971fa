#include "Shell/Controls/SpokenRole.h"

#include <QVariant>
#include <QWidget>

namespace TarvaneApp {

namespace {

constexpr char key[] = "spokenRole";
constexpr char popoverKey[] = "opensPopover";

}  // namespace

void setSpokenRole(QWidget& widget, QAccessible::Role role) {
    widget.setProperty(key, static_cast<int>(role));
}

std::optional<QAccessible::Role> spokenRole(const QWidget& widget) {
    const QVariant role = widget.property(key);
    return role.isValid() ? std::optional(static_cast<QAccessible::Role>(role.toInt()))
                          : std::nullopt;
}

void setOpensPopover(QWidget& button) {
    button.setProperty(popoverKey, true);
}

bool opensPopover(const QWidget& button) {
    return button.property(popoverKey).toBool();
}

}  // namespace TarvaneApp
