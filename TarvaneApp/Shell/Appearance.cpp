#include "Shell/Appearance.h"

#include <QAbstractSpinBox>
#include <QApplication>
#include <QPainter>
#include <QPalette>
#include <QPolygonF>
#include <QProxyStyle>
#include <QStyleFactory>
#include <QStyleOption>
#include <QToolTip>
#include <algorithm>

#include "Displays/FocusRing.h"
#include "Displays/Plate.h"
#include "Displays/Theme.h"
#include "Shell/Controls/Icon.h"

namespace TarvaneApp {

namespace {

QPalette darkPalette() {
    QPalette palette;
    palette.setColor(QPalette::Window, Theme::background);
    palette.setColor(QPalette::WindowText, Theme::primaryText);
    palette.setColor(QPalette::Base, Theme::panelBackground);
    palette.setColor(QPalette::AlternateBase, Theme::controlBackground);
    palette.setColor(QPalette::Text, Theme::primaryText);
    palette.setColor(QPalette::PlaceholderText, Theme::axisText);
    palette.setColor(QPalette::Button, Theme::gridLine);
    palette.setColor(QPalette::ButtonText, Theme::primaryText);
    palette.setColor(QPalette::BrightText, Qt::white);
    palette.setColor(QPalette::Highlight, Theme::accent);
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, Theme::accent);
    palette.setColor(QPalette::ToolTipBase, Theme::gridLine);
    palette.setColor(QPalette::ToolTipText, Theme::primaryText);
    palette.setColor(QPalette::Light, Theme::gridLineStrong);
    palette.setColor(QPalette::Midlight, Theme::gridLineStrong);
    palette.setColor(QPalette::Mid, Theme::gridLine);
    palette.setColor(QPalette::Dark, Theme::background);
    palette.setColor(QPalette::Shadow, Qt::black);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(QPalette::Disabled, role, Theme::gridLineStrong.lighter(140));
    }
    palette.setColor(QPalette::Disabled, QPalette::Highlight, Theme::gridLineStrong);
    return palette;
}

// Draws the toolkit's buttons and pickers as flat as our own controls, with room around their texts
// and a ring around the focused one.
class FlatStyle final : public QProxyStyle {
  public:
    FlatStyle() : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion"))) {}

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override {
        if (element == PE_PanelButtonCommand) {
            paintButton(*painter, *option);
        } else if (element == PE_IndicatorCheckBox) {
            paintCheckBox(*painter, *option);
        } else if (element == PE_PanelLineEdit) {
            if (widget == nullptr || qobject_cast<QAbstractSpinBox*>(widget->parent()) == nullptr) {
                paintField(*painter, *option);
            }
        } else if (element != PE_FrameFocusRect) {
            QProxyStyle::drawPrimitive(element, option, painter, widget);
        }
    }

    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override {
        if (const auto* separator = menuSeparator(option); element == CE_MenuItem && separator) {
            paintMenuSeparator(*painter, *separator);
            return;
        }
        if (element == CE_TabBarTabShape) {
            paintTab(*painter, *option);
            return;
        }
        QProxyStyle::drawControl(element, option, painter, widget);
        if (element == CE_PushButton || element == CE_CheckBox) {
            ringIfFocused(*option, *painter);
        }
    }

    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                            QPainter* painter, const QWidget* widget) const override {
        if (const auto* slider = qstyleoption_cast<const QStyleOptionSlider*>(option);
            control == CC_Slider && slider != nullptr) {
            QStyleOptionSlider plain = *slider;
            plain.state &= ~State_HasFocus;
            QProxyStyle::drawComplexControl(control, &plain, painter, widget);
            ringIfFocused(*option, *painter);
            return;
        }
        if (const auto* spinBox = qstyleoption_cast<const QStyleOptionSpinBox*>(option);
            control == CC_SpinBox && spinBox != nullptr) {
            paintSpinBox(*painter, *spinBox, widget);
            return;
        }
        const auto* combo = qstyleoption_cast<const QStyleOptionComboBox*>(option);
        if (control != CC_ComboBox || combo == nullptr || combo->editable) {
            QProxyStyle::drawComplexControl(control, option, painter, widget);
            return;
        }
        paintButton(*painter, *option);
        const QRectF arrow(option->rect.right() - Theme::Symbol::chevron - chevronMargin,
                           option->rect.center().y() - Theme::Symbol::chevron / 2.0 + 1.0,
                           Theme::Symbol::chevron, Theme::Symbol::chevron);
        Icon::paint(*painter, QStringLiteral("chevron.down"), arrow, Theme::axisText);
        ringIfFocused(*option, *painter);
    }

    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                           const QWidget* widget) const override {
        const QSize natural = QProxyStyle::sizeFromContents(type, option, size, widget);
        const auto* separator = menuSeparator(option);
        if (type == CT_MenuItem && separator != nullptr && !separator->text.isEmpty()) {
            return {natural.width(), menuSectionHeight};
        }
        const int height = std::max(natural.height(), Theme::controlHeight);
        if (type == CT_PushButton || type == CT_ComboBox) {
            return {natural.width() + textPadding, height};
        }
        return type == CT_LineEdit || type == CT_SpinBox ? QSize(natural.width(), height) : natural;
    }

    int pixelMetric(PixelMetric metric, const QStyleOption* option,
                    const QWidget* widget) const override {
        return metric == PM_TabBarTabHSpace ? tabPadding
                                            : QProxyStyle::pixelMetric(metric, option, widget);
    }

    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* returned) const override {
        return hint == SH_TabBar_Alignment ? int{Qt::AlignHCenter}
                                           : QProxyStyle::styleHint(hint, option, widget, returned);
    }

  private:
    static constexpr int textPadding = 12;
    static constexpr int tabPadding = 16;
    static constexpr double chevronMargin = 8.0;
    static constexpr int menuSectionHeight = 28;
    static constexpr int menuSectionIndent = 10;

    static const QStyleOptionMenuItem* menuSeparator(const QStyleOption* option) {
        const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
        return item != nullptr && item->menuItemType == QStyleOptionMenuItem::Separator ? item
                                                                                        : nullptr;
    }

    // With a text it is the heading of the items below, without one a line.
    static void paintMenuSeparator(QPainter& painter, const QStyleOptionMenuItem& separator) {
        if (separator.text.isEmpty()) {
            const QRect& room = separator.rect;
            painter.fillRect(QRect(room.left() + menuSectionIndent, room.center().y(),
                                   room.width() - 2 * menuSectionIndent, 1),
                             Theme::gridLineStrong);
            return;
        }
        painter.save();
        painter.setFont(Theme::sectionLabelFont());
        painter.setPen(Theme::axisText);
        painter.drawText(separator.rect.adjusted(menuSectionIndent, 0, 0, 0),
                         Qt::AlignLeft | Qt::AlignVCenter, separator.text);
        painter.restore();
    }

    static void paintButton(QPainter& painter, const QStyleOption& option) {
        const bool isEnabled = (option.state & State_Enabled) != 0;
        const bool isPressed = isEnabled && (option.state & State_Sunken) != 0;
        const bool isHovered = isEnabled && (option.state & State_MouseOver) != 0;
        painter.save();
        paintPlate(painter, option.rect, Theme::Radius::control,
                   isPressed   ? Theme::controlBackground
                   : isHovered ? Theme::gridLineStrong
                               : Theme::gridLine);
        painter.restore();
    }

    // Where a text or number is typed.
    static void paintField(QPainter& painter, const QStyleOption& option) {
        const bool isEnabled = (option.state & State_Enabled) != 0;
        painter.save();
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(isEnabled ? Theme::gridLineStrong : Theme::gridLine);
        painter.setBrush(Theme::controlBackground);
        painter.drawRoundedRect(QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5),
                                Theme::Radius::control, Theme::Radius::control);
        painter.restore();
        ringIfFocused(option, painter);
    }

    void paintSpinBox(QPainter& painter, const QStyleOptionSpinBox& option,
                      const QWidget* widget) const {
        paintField(painter, option);
        const auto paintArrow = [&](SubControl part, bool canStep, bool isUp) {
            const QRect room = subControlRect(CC_SpinBox, &option, part, widget);
            const bool isHovered = canStep && option.activeSubControls == part;
            painter.save();
            painter.translate(QRectF(room).center());
            painter.scale(1.0, isUp ? -1.0 : 1.0);
            const double half = Theme::Symbol::chevron / 2.0;
            Icon::paint(painter, QStringLiteral("chevron.down"),
                        QRectF(-half, -half, 2.0 * half, 2.0 * half),
                        !canStep    ? Theme::gridLineStrong
                        : isHovered ? Theme::primaryText
                                    : Theme::axisText);
            painter.restore();
        };
        const bool isEnabled = (option.state & State_Enabled) != 0;
        paintArrow(SC_SpinBoxUp,
                   isEnabled && (option.stepEnabled & QAbstractSpinBox::StepUpEnabled) != 0, true);
        paintArrow(SC_SpinBoxDown,
                   isEnabled && (option.stepEnabled & QAbstractSpinBox::StepDownEnabled) != 0,
                   false);
    }

    static void paintTab(QPainter& painter, const QStyleOption& option) {
        const bool isSelected = (option.state & State_Selected) != 0;
        const bool isHovered = (option.state & State_MouseOver) != 0;
        if (isSelected || isHovered) {
            painter.save();
            paintPlate(painter, option.rect.adjusted(1, 1, -1, -3), Theme::Radius::control,
                       isSelected ? Theme::gridLineStrong : Theme::gridLine);
            painter.restore();
        }
        if (isSelected && (option.state & State_HasFocus) != 0) {
            paintFocusRing(painter, option.rect.adjusted(1, 1, -1, -3), Theme::Radius::control);
        }
    }

    static void paintCheckBox(QPainter& painter, const QStyleOption& option) {
        const bool isOn = (option.state & State_On) != 0;
        const QRectF box = QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5);
        painter.save();
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(isOn ? Theme::accent : Theme::axisText);
        painter.setBrush(isOn ? Theme::accent : Theme::controlBackground);
        painter.drawRoundedRect(box, 3.0, 3.0);
        if (isOn) {
            const auto at = [&box](double x, double y) {
                return QPointF(box.left() + x * box.width(), box.top() + y * box.height());
            };
            painter.setPen(QPen(Qt::white, 2.0, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
            painter.drawPolyline(QPolygonF{at(0.25, 0.52), at(0.43, 0.7), at(0.76, 0.32)});
        }
        painter.restore();
    }

    static void ringIfFocused(const QStyleOption& option, QPainter& painter) {
        if ((option.state & State_HasFocus) != 0) {
            paintFocusRing(painter, option.rect, Theme::Radius::control - 1.0);
        }
    }
};

}  // namespace

void applyAppearance() {
    QApplication::setStyle(new FlatStyle);
    QApplication::setPalette(darkPalette());
    QToolTip::setPalette(darkPalette());
}

}  // namespace TarvaneApp
