#include "Shell/Controls/IconButton.h"

#include <QPainter>

#include "Displays/FocusRing.h"
#include "Displays/Plate.h"
#include "Displays/Theme.h"
#include "Shell/Controls/Icon.h"

namespace TarvaneApp {

namespace {

constexpr double faded = 0.4;

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
    return {side, side};
}

void IconButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setOpacity(isEnabled() ? 1.0 : faded);
    if (isDown() || (underMouse() && isEnabled())) {
        paintPlate(painter, rect(), Theme::Radius::control,
                   isDown() ? Theme::controlBackground : Theme::gridLine);
    }
    if (!symbol_.isEmpty()) {
        const double left = margin(iconSize_);
        Icon::paint(painter, symbol_, QRectF(left, left, iconSize_, iconSize_), color_);
    }
    if (hasFocus()) {
        paintFocusRing(painter, rect(), Theme::Radius::control);
    }
}

}  // namespace TarvaneApp
