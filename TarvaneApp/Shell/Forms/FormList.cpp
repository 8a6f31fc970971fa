#include "Shell/Forms/FormList.h"

#include <QVBoxLayout>

#include "Displays/Theme.h"
#include "Shell/Controls/BareLayout.h"
#include "Shell/Forms/TabStops.h"

namespace TarvaneApp {

FormList::FormList(MakeItem makeItem, QWidget* parent)
    : QWidget(parent),
      makeItem_(std::move(makeItem)),
      column_(layOutColumn(this, Theme::Space::row)) {}

// Made after all that follows the list, an item would come after it in the order of Tab.
void FormList::addItem() {
    QWidget* ahead = stopAhead();
    const Item item = makeItem_(static_cast<int>(items_.size()), this);
    chainTabStops(QList<QWidget*>{ahead} + tabStopsIn(*item.widget));
    column_->addWidget(item.widget);
    item.widget->show();
    items_.push_back(item);
}

QWidget* FormList::stopAhead() const {
    if (!items_.empty()) {
        const auto stops = tabStopsIn(*items_.back().widget);
        if (!stops.empty()) {
            return stops.back();
        }
    }
    QWidget* ahead = previousInFocusChain();
    while (ahead != this && ahead->focusPolicy() == Qt::NoFocus) {
        ahead = ahead->previousInFocusChain();
    }
    return ahead;
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
