#include "Shell/Forms/FormList.h"

#include <QVBoxLayout>

#include "Displays/Theme.h"
#include "Shell/Controls/BareLayout.h"

namespace TarvaneApp {

namespace {

// Where Tab stops in an item. What has parts of its own, as a slider with its value, is one stop.
void collectStops(QWidget& widget, QList<QWidget*>& stops) {
    if (widget.focusPolicy() != Qt::NoFocus) {
        stops.append(&widget);
        return;
    }
    for (QObject* child : widget.children()) {
        if (child->isWidgetType()) {
            collectStops(static_cast<QWidget&>(*child), stops);
        }
    }
}

QList<QWidget*> stopsOf(QWidget& item) {
    QList<QWidget*> stops;
    collectStops(item, stops);
    return stops;
}

}  // namespace

FormList::FormList(MakeItem makeItem, QWidget* parent)
    : QWidget(parent),
      makeItem_(std::move(makeItem)),
      column_(layOutColumn(this, Theme::Space::row)) {}

// Made after all that follows the list, an item would come after it in the order of Tab.
void FormList::addItem() {
    QWidget* ahead = stopAhead();
    const Item item = makeItem_(static_cast<int>(items_.size()), this);
    for (QWidget* stop : stopsOf(*item.widget)) {
        setTabOrder(ahead, stop);
        ahead = stop;
    }
    column_->addWidget(item.widget);
    item.widget->show();
    items_.push_back(item);
}

QWidget* FormList::stopAhead() const {
    if (!items_.empty()) {
        const auto stops = stopsOf(*items_.back().widget);
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
