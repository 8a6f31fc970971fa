#include "Shell/Forms/TabStops.h"

#include <QWidget>

namespace TarvaneApp {

namespace {

void collect(QWidget& widget, QList<QWidget*>& stops) {
    if (widget.focusPolicy() != Qt::NoFocus) {
        stops.append(&widget);
        return;
    }
    for (QObject* child : widget.children()) {
        if (child->isWidgetType() && !static_cast<QWidget*>(child)->isWindow()) {
            collect(static_cast<QWidget&>(*child), stops);
        }
    }
}

}  // namespace

QList<QWidget*> tabStopsIn(QWidget& widget) {
    QList<QWidget*> stops;
    collect(widget, stops);
    return stops;
}

void chainTabStops(const QList<QWidget*>& stops) {
    for (qsizetype i = 1; i < stops.size(); ++i) {
        QWidget::setTabOrder(stops[i - 1], stops[i]);
    }
}

}  // namespace TarvaneApp
