// Menus made of the program's own names and choices.
#pragma once

#include <QActionGroup>
#include <QMenu>
#include <QString>
#include <string_view>

#include "Core/RawEnum.h"
#include "Displays/RawText.h"

namespace TarvaneApp {

/// A name as the text of a menu item or of a form's label, in which an ampersand stands for itself.
inline QString menuText(std::string_view name) {
    return utf8Text(name).replace(u'&', QStringLiteral("&&"));
}

/// A submenu of all cases of an enum, the current one checked.
template <class E, class Choose>
void addPicker(QMenu& menu, std::string_view title, E current, Choose choose) {
    QMenu* picker = menu.addMenu(menuText(title));
    auto* group = new QActionGroup(picker);
    for (const E value : TarvaneKit::allCases<E>()) {
        QAction* item = picker->addAction(menuText(TarvaneKit::rawValue(value)));
        item->setCheckable(true);
        item->setChecked(value == current);
        group->addAction(item);
        QObject::connect(item, &QAction::triggered, picker, [choose, value] { choose(value); });
    }
}

}  // namespace TarvaneApp
