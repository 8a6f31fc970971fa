#include "Shell/Forms/TabStops.h"

#include <QScrollArea>
#include <QTabWidget>
#include <algorithm>

namespace TarvaneApp {

namespace {

// Tabs hand the focus on to their bar, and have their pages' stops besides.
bool isTabStop(const QWidget& widget) {
    return (widget.focusPolicy() & Qt::TabFocus) != 0 &&
           qobject_cast<const QTabWidget*>(&widget) == nullptr;
}

// Widgets that share a line differ in height: a line is what begins above the middle of its first.
QList<QWidget*> inReadingOrder(QList<QWidget*> widgets) {
    std::ranges::stable_sort(widgets, {}, [](const QWidget* widget) { return widget->y(); });
    for (auto line = widgets.begin(); line != widgets.end();) {
        const int middle = (*line)->geometry().center().y();
        const auto end = std::find_if(line, widgets.end(),
                                      [&](const QWidget* widget) { return widget->y() > middle; });
        std::stable_sort(line, end,
                         [](const QWidget* a, const QWidget* b) { return a->x() < b->x(); });
        line = std::max(end, line + 1);
    }
    return widgets;
}

void collect(const QWidget& parent, QList<QWidget*>& stops) {
    QList<QWidget*> inside;
    for (QWidget* child : parent.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
        if (!child->isWindow() && child->isVisible() && child->isEnabled()) {
            inside.append(child);
        }
    }
    for (QWidget* widget : inReadingOrder(std::move(inside))) {
        if (isTabStop(*widget)) {
            stops.append(widget);
        } else {
            collect(*widget, stops);
        }
    }
}

void scrollTo(QWidget& widget) {
    for (QWidget* around = widget.parentWidget(); around != nullptr;
         around = around->parentWidget()) {
        if (auto* area = qobject_cast<QScrollArea*>(around)) {
            area->ensureWidgetVisible(&widget);
        }
    }
}

}  // namespace

void chainTabStops(const QList<QWidget*>& stops) {
    for (qsizetype i = 1; i < stops.size(); ++i) {
        QWidget::setTabOrder(stops[i - 1], stops[i]);
    }
}

QList<QWidget*> tabStopsIn(const QWidget& widget) {
    QList<QWidget*> stops;
    collect(widget, stops);
    return stops;
}

bool focusNextTabStop(const QWidget& window, bool forwards) {
    const auto stops = tabStopsIn(window);
    if (stops.empty()) {
        return false;
    }
    const QWidget* focused = window.focusWidget();
    const auto at = std::ranges::find_if(stops, [&](const QWidget* stop) {
        return focused != nullptr && (stop == focused || stop->isAncestorOf(focused));
    });
    const qsizetype last = stops.size() - 1;
    const qsizetype place = at - stops.begin();
    QWidget* next = at == stops.end() ? stops[forwards ? 0 : last]
                    : forwards        ? stops[place == last ? 0 : place + 1]
                                      : stops[place == 0 ? last : place - 1];
    next->setFocus(forwards ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    scrollTo(*next);
    return true;
}

}  // namespace TarvaneApp
