// How the toolkit's own controls are drawn: legible in every state, by numbers read off the
// drawing, and with what is worked where it is seen.

#include "Shell/Style/FlatStyle.h"

#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QGroupBox>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QScrollBar>
#include <QSlider>
#include <QStyleOption>
#include <QTest>
#include <QToolTip>

#include "Displays/Contrast.h"
#include "Displays/Theme.h"
#include "Support/DrawnContrast.h"

namespace TarvaneApp {
namespace FlatStyleTests {

using TarvaneTests::drawnContrast;

constexpr QStyle::State enabled = QStyle::State_Enabled;
constexpr QRect place(0, 0, 160, 26);
// Within the corners of a plate.
constexpr QRectF inside(8.0, 4.0, 144.0, 18.0);

const QStyle& style() {
    return *QApplication::style();
}

template <class Option>
Option optionIn(QStyle::State state) {
    Option option;
    option.rect = place;
    option.state = state;
    option.palette = QApplication::palette();
    if ((state & enabled) == 0) {
        option.palette.setCurrentColorGroup(QPalette::Disabled);
    }
    return option;
}

// The ground is that of a part of a form.
double contrastOf(QStyle::ControlElement element, const QStyleOption& option) {
    return drawnContrast(inside, [&](QPainter& painter) {
        painter.setFont(QApplication::font());
        style().drawControl(element, &option, &painter);
    });
}

QStyleOptionButton button(QStyle::State state, QStyleOptionButton::ButtonFeatures features = {}) {
    auto option = optionIn<QStyleOptionButton>(state);
    option.text = QStringLiteral("Apply");
    option.features = features;
    return option;
}

TEST(FlatStyleTests, aButtonIsLegibleInEveryState) {
    for (const auto feature :
         {QStyleOptionButton::None, QStyleOptionButton::DefaultButton, QStyleOptionButton::Flat}) {
        for (const QStyle::State state :
             std::initializer_list<QStyle::State>{QStyle::State_None, QStyle::State_MouseOver,
                                                  QStyle::State_Sunken | QStyle::State_MouseOver}) {
            EXPECT_GE(contrastOf(QStyle::CE_PushButton, button(enabled | state, feature)),
                      Contrast::text)
                << feature << " in " << state.toInt();
        }
        EXPECT_GE(contrastOf(QStyle::CE_PushButton, button(QStyle::State_None, feature)),
                  Contrast::mark)
            << "one that is disabled";
    }
}

TEST(FlatStyleTests, anItemOfAMenuIsLegibleInEveryState) {
    auto item = optionIn<QStyleOptionMenuItem>(enabled);
    item.text = QStringLiteral("Export\tCtrl+E");
    item.font = QApplication::font();
    item.reservedShortcutWidth = 50;
    const auto contrast = [&] {
        return drawnContrast(inside, [&](QPainter& painter) {
            QStyleOption panel = item;
            panel.rect = place.adjusted(-20, -20, 20, 20);
            style().drawPrimitive(QStyle::PE_PanelMenu, &panel, &painter);
            style().drawControl(QStyle::CE_MenuItem, &item, &painter);
        });
    };
    EXPECT_GE(contrast(), Contrast::text);
    item.state = enabled | QStyle::State_Selected;
    EXPECT_GE(contrast(), Contrast::text);
    item.text = QStringLiteral("\tCtrl+E");
    EXPECT_GE(contrast(), Contrast::text) << "the keys alone";
    item.state = enabled;
    EXPECT_GE(contrast(), Contrast::text) << "the keys alone";
    item.text = QStringLiteral("No Saved Profiles");
    item.state = QStyle::State_None;
    EXPECT_GE(contrast(), Contrast::mark);
}

TEST(FlatStyleTests, whatIsSelectedInATextIsLegible) {
    const QPalette palette = QApplication::palette();
    for (const auto group : {QPalette::Active, QPalette::Inactive}) {
        EXPECT_GE(Contrast::ratio(palette.color(group, QPalette::HighlightedText),
                                  palette.color(group, QPalette::Highlight)),
                  Contrast::text);
    }
    const QPalette tip = QToolTip::palette();
    EXPECT_GE(Contrast::ratio(tip.color(QPalette::ToolTipText), tip.color(QPalette::ToolTipBase)),
              Contrast::text);
}

TEST(FlatStyleTests, marksStandOutOfTheirGround) {
    for (const auto element : {QStyle::PE_IndicatorCheckBox, QStyle::PE_IndicatorRadioButton}) {
        for (const QStyle::State state : std::initializer_list<QStyle::State>{
                 QStyle::State_Off, QStyle::State_On, QStyle::State_On | QStyle::State_MouseOver}) {
            auto box = optionIn<QStyleOptionButton>(enabled | state);
            box.rect = QRect(0, 0, 14, 14);
            EXPECT_GE(drawnContrast(QRectF(0.0, 0.0, 14.0, 14.0),
                                    [&](QPainter& painter) {
                                        style().drawPrimitive(element, &box, &painter);
                                    }),
                      Contrast::mark);
        }
    }
    for (const bool isEnabled : {true, false}) {
        for (const auto control : {QStyle::CC_Slider, QStyle::CC_ScrollBar}) {
            auto slider = optionIn<QStyleOptionSlider>(isEnabled ? enabled : QStyle::State_None);
            slider.orientation = Qt::Horizontal;
            slider.state |= QStyle::State_Horizontal;
            slider.maximum = 100;
            slider.pageStep = 20;
            slider.subControls = QStyle::SC_All;
            EXPECT_GE(drawnContrast(QRectF(place),
                                    [&](QPainter& painter) {
                                        style().drawComplexControl(control, &slider, &painter);
                                    }),
                      Contrast::mark);
        }
    }
}

TEST(FlatStyleTests, theFocusIsSeenOnWhateverHasIt) {
    const auto differs = [](QWidget& widget) {
        widget.resize(160, 26);
        widget.show();
        const QImage without = widget.grab().toImage();
        widget.activateWindow();
        widget.setFocus(Qt::TabFocusReason);
        EXPECT_TRUE(QTest::qWaitFor([&] { return widget.hasFocus(); }));
        const QImage with = widget.grab().toImage();
        double best = 1.0;
        for (int y = 0; y < with.height(); ++y) {
            for (int x = 0; x < with.width(); ++x) {
                best = std::max(best,
                                Contrast::ratio(with.pixelColor(x, y), without.pixelColor(x, y)));
            }
        }
        return best;
    };
    QSlider slider(Qt::Horizontal);
    EXPECT_GE(differs(slider), Contrast::mark);
    QLineEdit field;
    EXPECT_GE(differs(field), Contrast::mark);
    QComboBox picker;
    EXPECT_GE(differs(picker), Contrast::mark);
}

// The thumb's middle is where the value is on the track, and its ring has room at both ends.
TEST(FlatStyleTests, theThumbOfASliderIsAtItsValue) {
    for (const auto orientation : {Qt::Horizontal, Qt::Vertical}) {
        QStyleOptionSlider slider;
        slider.rect = orientation == Qt::Horizontal ? QRect(0, 0, 220, 30) : QRect(0, 0, 30, 220);
        slider.orientation = orientation;
        slider.maximum = 100;
        for (const int value : {0, 25, 50, 100}) {
            slider.sliderPosition = value;
            const QRect thumb = style().subControlRect(QStyle::CC_Slider, &slider,
                                                       QStyle::SC_SliderHandle, nullptr);
            EXPECT_EQ(thumb.size(), QSize(20, 20));
            EXPECT_TRUE(slider.rect.contains(thumb));
            EXPECT_EQ(orientation == Qt::Horizontal ? thumb.left() : thumb.top(), 2 * value);
        }
    }
}

TEST(FlatStyleTests, aDraggedThumbFollowsThePointer) {
    QSlider slider(Qt::Horizontal);
    slider.resize(220, 20);
    slider.show();
    QTest::mousePress(&slider, Qt::LeftButton, {}, QPoint(10, 10));
    QTest::mouseMove(&slider, QPoint(110, 10));
    QMouseEvent move(QEvent::MouseMove, QPointF(110, 10), slider.mapToGlobal(QPointF(110, 10)),
                     Qt::NoButton, Qt::LeftButton, {});
    QApplication::sendEvent(&slider, &move);
    EXPECT_NEAR(slider.value(), 50, 1);
    QTest::mouseRelease(&slider, Qt::LeftButton, {}, QPoint(110, 10));
}

TEST(FlatStyleTests, aScrollBarIsAThumbAndWhatIsBesideItAndHasNoArrows) {
    QScrollBar bar(Qt::Vertical);
    bar.setRange(0, 300);
    bar.setPageStep(100);
    bar.setValue(150);
    bar.resize(bar.sizeHint().width(), 400);
    QStyleOptionSlider option;
    option.initFrom(&bar);
    option.orientation = Qt::Vertical;
    option.maximum = 300;
    option.pageStep = 100;
    option.sliderPosition = 150;
    const auto part = [&](QStyle::SubControl control) {
        return style().subControlRect(QStyle::CC_ScrollBar, &option, control, &bar);
    };
    EXPECT_EQ(part(QStyle::SC_ScrollBarSlider), QRect(0, 150, 12, 100))
        << "a quarter, in the middle";
    EXPECT_EQ(part(QStyle::SC_ScrollBarSubPage), QRect(0, 0, 12, 150));
    EXPECT_EQ(part(QStyle::SC_ScrollBarAddPage), QRect(0, 250, 12, 150));
    EXPECT_TRUE(part(QStyle::SC_ScrollBarAddLine).isEmpty());
    EXPECT_TRUE(part(QStyle::SC_ScrollBarSubLine).isEmpty());
    bar.show();
    QTest::mouseClick(&bar, Qt::LeftButton, {}, QPoint(6, 390));
    EXPECT_EQ(bar.value(), 250);
}

TEST(FlatStyleTests, aMenuIsRoundAndHoldsItsTexts) {
    QMenu menu;
    QAction* item = menu.addAction(QStringLiteral("Export the level history of every channel"));
    item->setShortcut(QKeySequence(QStringLiteral("Ctrl+Shift+E")));
    menu.addSeparator();
    QAction* ticked = menu.addAction(QStringLiteral("Show"));
    ticked->setCheckable(true);
    menu.popup(QPoint(100, 100));
    const QImage picture = menu.grab().toImage();
    EXPECT_EQ(picture.pixelColor(0, 0).alpha(), 0);
    EXPECT_EQ(picture.pixel(picture.width() / 2, 0), Theme::gridLineStrong.rgb());
    const QFontMetrics metrics(menu.font());
    EXPECT_GE(menu.actionGeometry(item).width(),
              metrics.horizontalAdvance(item->text()) +
                  metrics.horizontalAdvance(item->shortcut().toString(QKeySequence::NativeText)) +
                  metrics.horizontalAdvance(u' '));
    EXPECT_TRUE(menu.rect().adjusted(5, 5, -5, -5).contains(menu.actionGeometry(item)));
    menu.close();
}

TEST(FlatStyleTests, theListOfAPickerHasOneLowRowForEachEntry) {
    QComboBox picker;
    picker.addItems({QStringLiteral("1/1 Octave"), QStringLiteral("1/3 Octave")});
    picker.show();
    picker.showPopup();
    EXPECT_EQ(picker.view()->sizeHintForRow(0), 24);
    EXPECT_LT(picker.view()->window()->height(), 100);
    EXPECT_EQ(picker.view()->window()->grab().toImage().pixelColor(0, 0).alpha(), 0);
    picker.hidePopup();
}

TEST(FlatStyleTests, theTitleOfAPartOfAFormStandsAboveItsFrame) {
    QGroupBox part(QStringLiteral("Spectrogram"));
    part.resize(300, 100);
    QStyleOptionGroupBox option;
    option.initFrom(&part);
    option.text = part.title();
    option.subControls = QStyle::SC_GroupBoxFrame | QStyle::SC_GroupBoxLabel;
    const QRect frame =
        style().subControlRect(QStyle::CC_GroupBox, &option, QStyle::SC_GroupBoxFrame, &part);
    const QRect title =
        style().subControlRect(QStyle::CC_GroupBox, &option, QStyle::SC_GroupBoxLabel, &part);
    EXPECT_GT(title.height(), QFontMetrics(part.font()).ascent());
    EXPECT_FALSE(title.intersects(frame));
    EXPECT_EQ(frame.bottom(), part.rect().bottom());
    EXPECT_TRUE(frame.contains(
        style().subControlRect(QStyle::CC_GroupBox, &option, QStyle::SC_GroupBoxContents, &part)));
}

TEST(FlatStyleTests, anAlertHasItsTextsOnItsButtonsAndASignOfOurOwn) {
    QMessageBox alert(QMessageBox::Warning, QStringLiteral("Error"), QStringLiteral("No input"),
                      QMessageBox::Ok | QMessageBox::Cancel);
    for (const QAbstractButton* button : alert.buttons()) {
        EXPECT_TRUE(button->icon().isNull());
    }
    const QImage sign = alert.iconPixmap().toImage();
    bool isOfTheTheme = false;
    for (int y = 0; y < sign.height(); ++y) {
        for (int x = 0; x < sign.width(); ++x) {
            isOfTheTheme |= sign.pixel(x, y) == Theme::peakHold.rgb();
        }
    }
    EXPECT_TRUE(isOfTheTheme);
}

TEST(FlatStyleTests, aDisabledTextHasNoShadow) {
    EXPECT_EQ(style().styleHint(QStyle::SH_EtchDisabledText), 0);
}

}  // namespace FlatStyleTests
}  // namespace TarvaneApp
