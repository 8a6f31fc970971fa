#include "Shell/Forms/FormList.h"

#include <QVBoxLayout>

#include "Displays/Theme.h"
#include "Shell/Controls/BareLayout.h"

namespace TarvaneApp {

FormList::FormList(MakeItem makeItem, QWidget* parent)
    : QWidget(parent),
      makeItem_(std::move(makeItem)),
      column_(layOutColumn(this, Theme::Space::row)) {}

void FormList::addItem() {
    const Item item = makeItem_(static_cast<int>(items_.size()), this);
    column_->addWidget(item.widget);
    item.widget->show();
    items_.push_back(item);
}

// An item goes after the press of its own button has come back.
void FormList::showItems(int count) {
    while (static_cast<int>(items_.size()) > count) {
        QWidget* last = items_.back().widget;
        items_.pop_back();
        column_->removeWidget(last);
        last->hide();
        last->deleteLater();
    }
    while (static_cast<int>(items_.size()) < count) {
        addItem();
    }
    for (const Item& item : items_) {
        item.show();
    }
}

}  // namespace TarvaneApp
