#include "Shell/Style/FlatStyle.h"

#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QComboBox>
#include <QFrame>
#include <QMenu>
#include <QPainter>
#include <QScrollBar>
#include <QStyleFactory>
#include <QStyleOption>
#include <algorithm>

#include "Displays/Theme.h"
#include "Shell/Controls/Icon.h"
#include "Shell/Style/ButtonLook.h"
#include "Shell/Style/MenuLook.h"
#include "Shell/Style/SliderLook.h"

namespace TarvaneApp {

namespace {

constexpr int textPadding = 12;
constexpr int textInset = 4;  // more than the toolkit leaves ahead of a text
constexpr int tabPadding = 16;

template <class Option>
const Option* as(const QStyleOption* option) {
    return qstyleoption_cast<const Option*>(option);
}

// A part of a form, without a box to tick.
bool isPlainGroup(const QStyleOptionGroupBox* option) {
    return option != nullptr && (option->subControls & QStyle::SC_GroupBoxCheckBox) == 0;
}

// The list that opens under a picker, which has no class of its own to ask for.
bool isPickerList(const QWidget& widget) {
    return widget.inherits("QComboBoxPrivateContainer");
}

}  // namespace

FlatStyle::FlatStyle() : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion"))) {}

void FlatStyle::polish(QWidget* widget) {
    QProxyStyle::polish(widget);
    if (qobject_cast<QMenu*>(widget) != nullptr || isPickerList(*widget) ||
        widget->inherits("QTipLabel")) {
        // What is outside of the rounded corners isn't drawn.
        widget->setAttribute(Qt::WA_TranslucentBackground);
        if (isPickerList(*widget)) {
            widget->setContentsMargins(MenuLook::margin, 0, MenuLook::margin, 0);
        }
    } else if (auto* list = qobject_cast<QAbstractItemView*>(widget);
               list != nullptr && list->inherits("QComboBoxListView")) {
        list->viewport()->setAutoFillBackground(false);  // it lies on the panel
    } else if (qobject_cast<QScrollBar*>(widget) != nullptr) {
        // Only the thumb is drawn; it lies on what scrolls.
        widget->setAttribute(Qt::WA_OpaquePaintEvent, false);
    }
}

void FlatStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                              QPainter* painter, const QWidget* widget) const {
    switch (element) {
        case PE_PanelButtonCommand:
            ButtonLook::paintPlateOf(*painter, *option);
            break;
        case PE_PanelButtonTool:
            ButtonLook::paintToolPlate(*painter, *option);
            break;
        case PE_IndicatorCheckBox:
            ButtonLook::paintCheckBox(*painter, *option);
            break;
        case PE_IndicatorRadioButton:
            ButtonLook::paintRadioButton(*painter, *option);
            break;
        case PE_PanelLineEdit:
            // The field of a number is drawn with its arrows.
            if (widget == nullptr || qobject_cast<QAbstractSpinBox*>(widget->parent()) == nullptr) {
                ButtonLook::paintField(*painter, *option);
            }
            break;
        case PE_FrameTabBarBase:
            painter->fillRect(option->rect.adjusted(0, option->rect.height() - 1, 0, 0),
                              Theme::gridLine);
            break;
        case PE_PanelMenu:
            MenuLook::paintPanel(*painter, option->rect);
            break;
        case PE_PanelTipLabel:
            MenuLook::paintTip(*painter, option->rect);
            break;
        case PE_FrameFocusRect:
        case PE_FrameMenu:
            break;
        default:
            QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
}

void FlatStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                            const QWidget* widget) const {
    const auto* item = as<QStyleOptionMenuItem>(option);
    const auto* button = as<QStyleOptionButton>(option);
    const bool underlines = proxy()->styleHint(SH_UnderlineShortcut, option, widget, nullptr) != 0;
    if (element == CE_MenuItem && item != nullptr) {
        MenuLook::paintItem(*painter, *item, underlines);
    } else if (element == CE_MenuBarItem && item != nullptr) {
        MenuLook::paintBarItem(*painter, *item, underlines);
    } else if (element == CE_MenuEmptyArea || element == CE_MenuHMargin ||
               element == CE_MenuVMargin) {
        return;  // the panel is under it
    } else if (element == CE_PushButtonBevel && button != nullptr &&
               (button->features & QStyleOptionButton::Flat) != 0) {
        ButtonLook::paintToolPlate(*painter, *option);
    } else if (element == CE_TabBarTabShape) {
        ButtonLook::paintTab(*painter, *option);
    } else if (element == CE_PushButtonLabel && button != nullptr) {
        QStyleOptionButton labelled = *button;
        labelled.palette = ButtonLook::textPalette(*button);
        QProxyStyle::drawControl(element, &labelled, painter, widget);
    } else {
        QProxyStyle::drawControl(element, option, painter, widget);
        if (element == CE_PushButton || element == CE_CheckBox || element == CE_RadioButton) {
            ButtonLook::ringIfFocused(*painter, *option);
        }
    }
}

void FlatStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                   QPainter* painter, const QWidget* widget) const {
    const auto* slider = as<QStyleOptionSlider>(option);
    const auto* spinBox = as<QStyleOptionSpinBox>(option);
    const auto* picker = as<QStyleOptionComboBox>(option);
    const auto* group = as<QStyleOptionGroupBox>(option);
    if (control == CC_Slider && slider != nullptr) {
        SliderLook::paint(*painter, *slider);
    } else if (control == CC_ScrollBar && slider != nullptr) {
        SliderLook::paintBar(*painter, *slider);
    } else if (control == CC_SpinBox && spinBox != nullptr) {
        drawSpinBox(*spinBox, *painter, widget);
    } else if (control == CC_ComboBox && picker != nullptr && !picker->editable) {
        ButtonLook::paintPicker(*painter, *picker);
    } else if (control == CC_GroupBox && isPlainGroup(group)) {
        ButtonLook::paintGroup(*painter, *group);
    } else {
        QProxyStyle::drawComplexControl(control, option, painter, widget);
    }
}

void FlatStyle::drawSpinBox(const QStyleOptionSpinBox& option, QPainter& painter,
                            const QWidget* widget) const {
    ButtonLook::paintField(painter, option);
    const auto paintStep = [&](SubControl part, QAbstractSpinBox::StepEnabledFlag step,
                               ButtonLook::StepTo direction) {
        const bool canStep =
            (option.state & State_Enabled) != 0 && (option.stepEnabled & step) != 0;
        ButtonLook::paintStep(painter, subControlRect(CC_SpinBox, &option, part, widget), direction,
                              canStep, canStep && option.activeSubControls == part);
    };
    paintStep(SC_SpinBoxUp, QAbstractSpinBox::StepUpEnabled, ButtonLook::StepTo::higher);
    paintStep(SC_SpinBoxDown, QAbstractSpinBox::StepDownEnabled, ButtonLook::StepTo::lower);
}

QRect FlatStyle::subControlRect(ComplexControl control, const QStyleOptionComplex* option,
                                SubControl part, const QWidget* widget) const {
    const auto* slider = as<QStyleOptionSlider>(option);
    if (control == CC_Slider && slider != nullptr) {
        return part == SC_SliderHandle ? SliderLook::thumb(*slider) : slider->rect;
    }
    if (control == CC_ScrollBar && slider != nullptr) {
        const QRect thumb = SliderLook::barThumb(*slider);
        const QRect& bar = slider->rect;
        const bool isHorizontal = slider->orientation == Qt::Horizontal;
        switch (part) {
            case SC_ScrollBarSlider:
                return thumb;
            case SC_ScrollBarGroove:
                return bar;
            case SC_ScrollBarSubPage:
                return isHorizontal ? QRect(bar.topLeft(), QPoint(thumb.left() - 1, bar.bottom()))
                                    : QRect(bar.topLeft(), QPoint(bar.right(), thumb.top() - 1));
            case SC_ScrollBarAddPage:
                return isHorizontal
                           ? QRect(QPoint(thumb.right() + 1, bar.top()), bar.bottomRight())
                           : QRect(QPoint(bar.left(), thumb.bottom() + 1), bar.bottomRight());
            default:
                return {};  // no arrows
        }
    }
    if (const auto* group = as<QStyleOptionGroupBox>(option);
        control == CC_GroupBox && isPlainGroup(group)) {
        const QRect frame = ButtonLook::groupFrame(*group);
        return part == SC_GroupBoxFrame ? frame
               : part == SC_GroupBoxContents
                   ? frame.adjusted(1, 1, -1, -1)
                   : QRect(group->rect.topLeft(), QPoint(group->rect.right(), frame.top() - 1));
    }
    const QRect natural = QProxyStyle::subControlRect(control, option, part, widget);
    const bool isText = (control == CC_ComboBox && part == SC_ComboBoxEditField) ||
                        (control == CC_SpinBox && part == SC_SpinBoxEditField);
    return isText ? natural.adjusted(textInset, 0, 0, 0) : natural;
}

QRect FlatStyle::subElementRect(SubElement element, const QStyleOption* option,
                                const QWidget* widget) const {
    const QRect natural = QProxyStyle::subElementRect(element, option, widget);
    // The field of a number has its inset from its arrows' style.
    const bool isOfNumber =
        widget != nullptr && qobject_cast<QAbstractSpinBox*>(widget->parent()) != nullptr;
    return element == SE_LineEditContents && !isOfNumber
               ? natural.adjusted(textInset, 0, -textInset, 0)
               : natural;
}

QSize FlatStyle::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                                  const QWidget* widget) const {
    const QSize natural = QProxyStyle::sizeFromContents(type, option, size, widget);
    const int height = std::max(natural.height(), Theme::controlHeight);
    switch (type) {
        case CT_MenuItem:
            if (const auto* item = as<QStyleOptionMenuItem>(option)) {
                // Of a picker's list the size is that of the list as it is.
                const bool isOfPicker = qobject_cast<const QComboBox*>(widget) != nullptr;
                return MenuLook::itemSize(
                    *item,
                    isOfPicker ? item->fontMetrics.size(Qt::TextSingleLine, item->text) : size);
            }
            return natural;
        case CT_PushButton:
        case CT_ComboBox:
            return {natural.width() + textPadding, height};
        case CT_LineEdit:
        case CT_SpinBox:
            return {natural.width(), height};
        default:
            return natural;
    }
}

int FlatStyle::pixelMetric(PixelMetric metric, const QStyleOption* option,
                           const QWidget* widget) const {
    switch (metric) {
        case PM_TabBarTabHSpace:
            return tabPadding;
        case PM_SliderThickness:
        case PM_SliderControlThickness:
        case PM_SliderLength:
            return SliderLook::thumbRoom;
        case PM_ScrollBarExtent:
            return SliderLook::barWidth;
        case PM_MenuHMargin:
        case PM_MenuVMargin:
            return MenuLook::margin;
        case PM_MenuPanelWidth:
            return 0;
        case PM_ToolTipLabelFrameWidth:
            return MenuLook::tipMargin;
        default:
            return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

QIcon FlatStyle::standardIcon(StandardPixmap icon, const QStyleOption* option,
                              const QWidget* widget) const {
    const bool isCritical = icon == SP_MessageBoxCritical;
    if (isCritical || icon == SP_MessageBoxWarning) {
        return Icon::tinted(QStringLiteral("exclamationmark.triangle"),
                            pixelMetric(PM_MessageBoxIconSize, option, widget),
                            isCritical ? Theme::ringAlert : Theme::peakHold);
    }
    return QProxyStyle::standardIcon(icon, option, widget);
}

int FlatStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                         QStyleHintReturn* returned) const {
    switch (hint) {
        case SH_TabBar_Alignment:
            return Qt::AlignHCenter;
        case SH_DialogButtonBox_ButtonsHaveIcons:
            return 0;
        case SH_ComboBox_PopupFrameStyle:
            return QFrame::NoFrame;  // the panel has a hairline
        case SH_EtchDisabledText:
        case SH_DitherDisabledText:
            return 0;
        default:
            return QProxyStyle::styleHint(hint, option, widget, returned);
    }
}

}  // namespace TarvaneApp
