#include "Shell/Controls/IconTextMenuButton.h"

#include <QFontMetrics>
#include <QPainter>
#include <algorithm>

#include "Displays/Theme.h"

namespace TarvaneApp {

namespace {

constexpr int widestText = 180;
constexpr int narrowestText = 40;

}  // namespace

IconTextMenuButton::IconTextMenuButton(int iconSize, std::function<void(QMenu&)> fill,
                                       QWidget* parent)
    : IconMenuButton(iconSize, std::move(fill), parent) {
    setFont(Typeface::installed().systemFont(Theme::Text::body));
    setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
}

void IconTextMenuButton::setText(const QString& text) {
    QAbstractButton::setText(text);
    updateGeometry();
    update();
}

QSize IconTextMenuButton::sizeHint() const {
    const QSize icon = IconMenuButton::sizeHint();
    const int textWidth = std::min(fontMetrics().horizontalAdvance(text()), widestText);
    return {icon.width() + textWidth + Theme::Space::row, icon.height()};
}

QSize IconTextMenuButton::minimumSizeHint() const {
    const QSize icon = IconMenuButton::sizeHint();
    return {icon.width() + narrowestText + Theme::Space::row, icon.height()};
}

void IconTextMenuButton::paintEvent(QPaintEvent* event) {
    IconMenuButton::paintEvent(event);
    const QRect room =
        rect().adjusted(IconMenuButton::sizeHint().width(), 0, -Theme::Space::row, 0);
    QPainter painter(this);
    painter.setFont(font());
    painter.setPen(underMouse() ? Theme::primaryText : Theme::axisText);
    painter.drawText(room, Qt::AlignLeft | Qt::AlignVCenter,
                     fontMetrics().elidedText(text(), Qt::ElideRight, room.width() + 1));
}

}  // namespace TarvaneApp
