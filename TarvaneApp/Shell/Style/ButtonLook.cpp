#include "Shell/Style/ButtonLook.h"

#include <QFontMetrics>
#include <QPainter>
#include <QPolygonF>
#include <QStyle>
#include <QStyleOption>

#include "Displays/Contrast.h"
#include "Displays/FocusRing.h"
#include "Displays/Plate.h"
#include "Displays/Theme.h"
#include "Shell/Controls/Icon.h"

namespace TarvaneApp::ButtonLook {

namespace {

constexpr double boxRadius = 3.0;
constexpr double chevronMargin = 8.0;
constexpr double faded = 0.4;

bool has(const QStyleOption& option, QStyle::StateFlag flag) {
    return (option.state & flag) != 0;
}

bool isEnabled(const QStyleOption& option) {
    return has(option, QStyle::State_Enabled);
}

bool isProposed(const QStyleOption& option) {
    const auto* button = qstyleoption_cast<const QStyleOptionButton*>(&option);
    return button != nullptr && isEnabled(option) &&
           (button->features & QStyleOptionButton::DefaultButton) != 0;
}

QColor plateColor(const QStyleOption& option) {
    if (!isEnabled(option)) {
        return Theme::controlBackground;
    }
    const bool isPressed = has(option, QStyle::State_Sunken);
    const bool isHovered = has(option, QStyle::State_MouseOver);
    if (isProposed(option)) {
        return isPressed   ? Theme::accent.darker(115)
               : isHovered ? Theme::accent.lighter(112)
                           : Theme::accent;
    }
    return isPressed   ? Theme::controlBackground
           : isHovered ? Theme::gridLineStrong
                       : Theme::gridLine;
}

QFont groupFont() {
    return Typeface::installed().systemFont(Theme::Text::body, QFont::DemiBold);
}

// Round or with corners, filled once it is ticked.
void paintBox(QPainter& painter, const QStyleOption& option, double radius) {
    const bool isOn = has(option, QStyle::State_On);
    const bool isHovered = isEnabled(option) && has(option, QStyle::State_MouseOver);
    painter.setOpacity(isEnabled(option) ? 1.0 : faded);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(isOn ? Theme::accent : isHovered ? Theme::primaryText : Theme::axisText);
    painter.setBrush(isOn ? Theme::accent : Theme::controlBackground);
    painter.drawRoundedRect(QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
}

}  // namespace

void paintPlateOf(QPainter& painter, const QStyleOption& option) {
    painter.save();
    paintPlate(painter, option.rect, Theme::Radius::control, plateColor(option));
    painter.restore();
}

QPalette textPalette(const QStyleOptionButton& option) {
    QPalette palette = option.palette;
    if (isProposed(option)) {
        palette.setColor(QPalette::ButtonText, Contrast::textOn(plateColor(option)));
    } else if (isEnabled(option) && has(option, QStyle::State_MouseOver)) {
        palette.setColor(QPalette::ButtonText,
                         Theme::primaryText);  // a quiet one, too, on its plate
    }
    return palette;
}

void paintToolPlate(QPainter& painter, const QStyleOption& option) {
    const bool isDown = has(option, QStyle::State_Sunken) || has(option, QStyle::State_On);
    if (isEnabled(option) && (isDown || has(option, QStyle::State_MouseOver))) {
        painter.save();
        paintPlate(painter, option.rect, Theme::Radius::control,
                   isDown ? Theme::gridLineStrong : Theme::gridLine);
        painter.restore();
    }
}

void paintPicker(QPainter& painter, const QStyleOptionComboBox& option) {
    paintPlateOf(painter, option);
    constexpr double size = Theme::Symbol::chevron;
    const QRectF arrow(option.rect.right() - size - chevronMargin,
                       QRectF(option.rect).center().y() - size / 2.0 + 1.0, size, size);
    Icon::paint(painter, QStringLiteral("chevron.down"), arrow,
                isEnabled(option) ? Theme::axisText : Theme::dimmed);
    ringIfFocused(painter, option);
}

void paintCheckBox(QPainter& painter, const QStyleOption& option) {
    painter.save();
    paintBox(painter, option, boxRadius);
    const QRectF box = option.rect;
    const auto at = [&box](double x, double y) {
        return QPointF(box.left() + x * box.width(), box.top() + y * box.height());
    };
    painter.setPen(QPen(Qt::white, 2.0, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    if (has(option, QStyle::State_On)) {
        painter.drawPolyline(QPolygonF{at(0.25, 0.52), at(0.43, 0.7), at(0.76, 0.32)});
    } else if (has(option, QStyle::State_NoChange)) {
        painter.drawLine(at(0.28, 0.5), at(0.72, 0.5));
    }
    painter.restore();
}

void paintRadioButton(QPainter& painter, const QStyleOption& option) {
    painter.save();
    paintBox(painter, option, option.rect.width() / 2.0);
    if (has(option, QStyle::State_On)) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(Qt::white);
        const double radius = option.rect.width() * 0.2;
        painter.drawEllipse(QRectF(option.rect).center(), radius, radius);
    }
    painter.restore();
}

void paintField(QPainter& painter, const QStyleOption& option) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(isEnabled(option) ? Theme::gridLineStrong : Theme::gridLine);
    painter.setBrush(Theme::controlBackground);
    painter.drawRoundedRect(QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5),
                            Theme::Radius::control, Theme::Radius::control);
    painter.restore();
    ringIfFocused(painter, option);
}

void paintStep(QPainter& painter, const QRect& room, StepTo direction, bool canStep,
               bool isHovered) {
    constexpr double half = Theme::Symbol::chevron / 2.0;
    painter.save();
    painter.translate(QRectF(room).center());
    painter.scale(1.0, direction == StepTo::higher ? -1.0 : 1.0);
    Icon::paint(painter, QStringLiteral("chevron.down"),
                QRectF(-half, -half, 2.0 * half, 2.0 * half),
                !canStep    ? Theme::gridLineStrong
                : isHovered ? Theme::primaryText
                            : Theme::axisText);
    painter.restore();
}

void paintTab(QPainter& painter, const QStyleOption& option) {
    const bool isSelected = has(option, QStyle::State_Selected);
    const QRect plate = option.rect.adjusted(1, 1, -1, -3);
    if (isSelected || has(option, QStyle::State_MouseOver)) {
        painter.save();
        paintPlate(painter, plate, Theme::Radius::control,
                   isSelected ? Theme::gridLineStrong : Theme::gridLine);
        painter.restore();
    }
    if (isSelected && has(option, QStyle::State_HasFocus)) {
        paintFocusRing(painter, plate, Theme::Radius::control);
    }
}

QRect groupFrame(const QStyleOptionGroupBox& option) {
    const int title =
        option.text.isEmpty() ? 0 : QFontMetrics(groupFont()).height() + Theme::Space::related;
    return option.rect.adjusted(0, title, 0, 0);
}

void paintGroup(QPainter& painter, const QStyleOptionGroupBox& option) {
    painter.save();
    painter.setFont(groupFont());
    painter.setPen(isEnabled(option) ? Theme::primaryText : Theme::dimmed);
    painter.drawText(option.rect, Qt::AlignLeft | Qt::AlignTop | Qt::TextShowMnemonic, option.text);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Theme::gridLine);
    painter.setBrush(Theme::panelBackground);
    painter.drawRoundedRect(QRectF(groupFrame(option)).adjusted(0.5, 0.5, -0.5, -0.5),
                            Theme::Radius::panel, Theme::Radius::panel);
    painter.restore();
}

void ringIfFocused(QPainter& painter, const QStyleOption& option) {
    if (has(option, QStyle::State_HasFocus)) {
        paintFocusRing(painter, option.rect, Theme::Radius::control - 1.0);
    }
}

}  // namespace TarvaneApp::ButtonLook
