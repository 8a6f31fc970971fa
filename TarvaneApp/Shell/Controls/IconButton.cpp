#include "Shell/Controls/IconButton.h"

#include <QPainter>

#include "Displays/FocusRing.h"
#include "Displays/Theme.h"
#include "Shell/Controls/Icon.h"

namespace TarvaneApp {

namespace {

constexpr double dimmed = 0.4;

}  // namespace

IconButton::IconButton(int iconSize, QWidget* parent)
    : QAbstractButton(parent), iconSize_(iconSize) {
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::TabFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void IconButton::setSymbol(const QString& name, const QColor& color) {
    if (name != symbol_ || color != color_) {
        symbol_ = name;
        color_ = color;
        update();
    }
}

void IconButton::setHelp(const QString& name, const QString& toolTip) {
    setAccessibleName(name);
    setToolTip(toolTip);
}

QSize IconButton::sizeHint() const {
    return {iconSize_ + 2 * margin, iconSize_ + 2 * margin};
}

void IconButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setOpacity(isEnabled() ? 1.0 : dimmed);
    if (!symbol_.isEmpty()) {
        const QColor color = isDown()                      ? color_.darker(130)
                             : underMouse() && isEnabled() ? color_.lighter(115)
                                                           : color_;
        Icon::paint(painter, symbol_, QRectF(margin, margin, iconSize_, iconSize_), color);
    }
    if (hasFocus()) {
        paintFocusRing(painter, rect(), Theme::Radius::control);
    }
}

}  // namespace TarvaneApp
