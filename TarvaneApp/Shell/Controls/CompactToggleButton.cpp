#include "Shell/Controls/CompactToggleButton.h"

#include <QFontMetrics>
#include <QPainter>
#include <QSignalBlocker>
#include <algorithm>

#include "Displays/Theme.h"

namespace TarvaneApp {

namespace {

// A label wider than a letter widens the button.
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
    painter.setRenderHint(QPainter::Antialiasing);
    QColor ground = isSelected() ? Theme::accent : Theme::controlBackground;
    if (isDown()) {
        ground = ground.darker(120);
    } else if (underMouse() && !isSelected()) {
        ground = Theme::gridLine;
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(ground);
    painter.drawRoundedRect(rect(), Theme::Radius::control, Theme::Radius::control);
    painter.setFont(labelFont());
    painter.setPen(isSelected() ? Theme::primaryText : Theme::axisText);
    painter.drawText(rect(), Qt::AlignCenter, text());
    if (hasFocus()) {
        painter.setPen(QPen(isSelected() ? Theme::primaryText : Theme::accent, 2.0));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), Theme::Radius::control - 1.0,
                                Theme::Radius::control - 1.0);
    }
}

}  // namespace TarvaneApp
