#include "Shell/Controls/CompactToggleButton.h"

#include <QFontMetrics>
#include <QPainter>
#include <QSignalBlocker>
#include <algorithm>

#include "Displays/Contrast.h"
#include "Displays/FocusRing.h"
#include "Displays/Plate.h"
#include "Displays/Theme.h"

namespace TarvaneApp {

namespace {

// A label of more than a letter widens the button.
constexpr QSize smallestSize(30, Theme::controlHeight);

QFont labelFont() {
    return Typeface::installed().systemFont(Theme::Text::title);
}

}  // namespace

CompactToggleButton::CompactToggleButton(const QString& label, std::function<void()> action,
                                         QWidget* parent)
    : QAbstractButton(parent) {
    setText(label);
    setCheckable(true);
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::TabFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    // Not `clicked`: an assistive program toggles without a click. What is selected can't be
    // switched off, only another selected.
    connect(this, &QAbstractButton::toggled, this, [this, action = std::move(action)](bool on) {
        if (on) {
            action();
        } else {
            setSelected(true);
        }
    });
}

void CompactToggleButton::setSelected(bool selected) {
    const QSignalBlocker quiet(this);
    setChecked(selected);
}

QSize CompactToggleButton::sizeHint() const {
    const int width =
        QFontMetrics(labelFont()).horizontalAdvance(text()) + 2 * Theme::Space::button;
    return {std::max(width, smallestSize.width()), smallestSize.height()};
}

void CompactToggleButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    QColor ground = isSelected() ? Theme::accent : Theme::controlBackground;
    if (isDown()) {
        ground = ground.darker(120);
    } else if (underMouse() && !isSelected()) {
        ground = Theme::gridLine;
    }
    paintPlate(painter, rect(), Theme::Radius::control, ground);
    painter.setFont(labelFont());
    painter.setPen(isSelected()   ? Contrast::textOn(ground)
                   : underMouse() ? Theme::primaryText
                                  : Theme::axisText);
    painter.drawText(rect(), Qt::AlignCenter, text());
    if (hasFocus()) {
        paintFocusRing(painter, rect(), Theme::Radius::control - 1.0,
                       isSelected() ? Contrast::textOn(ground) : Theme::accent);
    }
}

}  // namespace TarvaneApp
