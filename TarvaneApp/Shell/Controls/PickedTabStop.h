// Lets Tab stop once in a row of buttons, at the picked one; arrow keys move within the row. The
// toolkit does so only after a button of the row has had the focus.
#pragma once

#include <QAbstractButton>
#include <QButtonGroup>

namespace TarvaneApp {

/// Call it after each change of the pick. While nothing is picked, Tab stops at the first button.
inline void stopTabAtPicked(const QButtonGroup& row) {
    const QList<QAbstractButton*> buttons = row.buttons();
    const QAbstractButton* stop =
        row.checkedButton() != nullptr ? row.checkedButton() : buttons.value(0);
    for (QAbstractButton* button : buttons) {
        button->setFocusPolicy(button == stop ? Qt::TabFocus : Qt::NoFocus);
    }
}

}  // namespace TarvaneApp
