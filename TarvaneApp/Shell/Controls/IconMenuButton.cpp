#include "Shell/Controls/IconMenuButton.h"

#include <QMenu>

namespace TarvaneApp {

IconMenuButton::IconMenuButton(int iconSize, std::function<void(QMenu&)> fill, QWidget* parent)
    : IconButton(iconSize, parent), menu_(new QMenu(this)) {
    connect(menu_, &QMenu::aboutToShow, this, [this, fill = std::move(fill)] {
        // Clearing removes the items, but not their submenus.
        menu_->clear();
        qDeleteAll(menu_->findChildren<QMenu*>(Qt::FindDirectChildrenOnly));
        fill(*menu_);
    });
    connect(this, &QAbstractButton::clicked, this,
            [this] { menu_->popup(mapToGlobal(QPoint(0, height()))); });
}

}  // namespace TarvaneApp
