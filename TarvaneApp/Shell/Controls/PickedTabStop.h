// In a row of buttons of which one is picked Tab stops once, at the picked one, and arrow keys move
// within. The toolkit comes to that only after a button of the row has had the focus.
#pragma once

#include <QAbstractButton>
#include <QButtonGroup>

namespace TarvaneApp {

/// After each change of what is picked. While nothing is, Tab stops at the first.
inline void stopTabAtPicked(const QButtonGroup& row) {
    const QList<QAbstractButton*> buttons = row.buttons();
    const QAbstractButton* stop =
        row.checkedButton() != nullptr ? row.checkedButton() : buttons.value(0);
    for (QAbstractButton* button : buttons) {
        button->setFocusPolicy(button == stop ? Qt::TabFocus : Qt::NoFocus);
    }
}

}  // namespace TarvaneApp
