#include "Shell/ChannelControls/RTAOptionsView.h"

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QLabel>
#include <QMenu>
#include <QTest>

#include "Shell/ChannelControls/TargetCurveControls.h"
#include "Shell/Controls/ColorSwatches.h"
#include "Shell/Controls/MenuButton.h"
#include "Shell/Controls/SegmentedPicker.h"
#include "TarvaneApp/Engine/EngineFixture.h"

namespace TarvaneApp {
namespace RTAOptionsViewTests {

using TarvaneKit::OctaveFraction;
using TarvaneKit::RGBAColor;
using TarvaneKit::RingOutSensitivity;
using TarvaneKit::UUID;

class RTAOptionsViewTests : public TarvaneTests::EngineFixture {
  protected:
    RTAOptionsViewTests() : options(*engine, UUID::main()) {
        options.show();
        settle();
    }

    template <class Widget>
    Widget& named(const char* name, QWidget& among) {
        for (auto* widget : among.findChildren<Widget*>()) {
            if (widget->accessibleName().section(u':', 0, 0) == QLatin1String(name)) {
                return *widget;
            }
        }
        throw std::logic_error(name);
    }
    template <class Widget>
    Widget& named(const char* name) {
        return named<Widget>(name, options);
    }
    QCheckBox& box(const char* text) {
        for (auto* each : options.findChildren<QCheckBox*>()) {
            if (each->text() == QLatin1String(text)) {
                return *each;
            }
        }
        throw std::logic_error(text);
    }
    QAbstractButton& swatch(const char* row, const char* color) {
        return named<QAbstractButton>(color, named<ColorSwatches>(row));
    }
    static void pick(MenuButton& menu, const char* text) {
        for (QAction* item : menu.menu()->actions()) {
            if (item->text() == QLatin1String(text)) {
                item->trigger();
                return;
            }
        }
        throw std::logic_error(text);
    }

    RTAOptionsView options;
};

TEST_F(RTAOptionsViewTests, aSwatchIsTheChannelsColour) {
    EXPECT_TRUE(swatch("Color", "Green").isChecked()) << "the main input's own";
    swatch("Color", "Violet").click();
    EXPECT_EQ(engine->rtaColor(), (RGBAColor{0.7, 0.55, 1.0, 1.0}));
    EXPECT_EQ(named<ColorSwatches>("Color").toolTip(),
              QStringLiteral("Trace color for this channel — any color in Preferences > Audio"));
    // Of the user's own making: no swatch has it.
    engine->rtaColor.set({0.1, 0.2, 0.3, 1.0});
    for (auto* each : named<ColorSwatches>("Color").findChildren<QAbstractButton*>()) {
        EXPECT_FALSE(each->isChecked());
    }
    swatch("Color", "Violet").click();
    EXPECT_EQ(engine->rtaColor(), (RGBAColor{0.7, 0.55, 1.0, 1.0}));
}

TEST_F(RTAOptionsViewTests, arrowKeysMoveAlongTheSwatches) {
    options.activateWindow();
    waitUntil([&] { return options.isActiveWindow(); });
    swatch("Color", "Green").setFocus();
    QTest::keyClick(&swatch("Color", "Green"), Qt::Key_Right);
    EXPECT_TRUE(swatch("Color", "Blue").hasFocus());
    EXPECT_EQ(engine->rtaColor(), (RGBAColor{0.3, 0.7, 1.0, 1.0}));
}

TEST_F(RTAOptionsViewTests, tabStopsOnceInARowAtWhatIsPicked) {
    const auto stops = [](QWidget& row) {
        QStringList names;
        for (auto* button : row.findChildren<QAbstractButton*>()) {
            if ((button->focusPolicy() & Qt::TabFocus) != 0) {
                names.append(button->text() + button->accessibleName());
            }
        }
        return names;
    };
    auto& view = named<SegmentedPicker>("View");
    auto& colors = named<ColorSwatches>("Color");
    EXPECT_EQ(stops(view), QStringList{"Both"});
    EXPECT_EQ(stops(colors), QStringList{"Green"});
    engine->viewMode.set(SpectrumViewMode::line);
    EXPECT_EQ(stops(view), QStringList{"Line"});
    swatch("Color", "Pink").click();
    EXPECT_EQ(stops(colors), QStringList{"Pink"});
    engine->rtaColor.set({0.1, 0.2, 0.3, 1.0});
    EXPECT_EQ(stops(colors), QStringList{"Green"}) << "nothing is picked: the first";
}

TEST_F(RTAOptionsViewTests, theViewIsBandsLineOrBoth) {
    auto& view = named<SegmentedPicker>("View");
    QStringList labels;
    for (auto* segment : view.findChildren<QAbstractButton*>()) {
        labels.append(segment->text());
    }
    EXPECT_EQ(labels, (QStringList{"Bands", "Line", "Both"}));
    EXPECT_EQ(view.selectedIndex(), 2);
    view.findChildren<QAbstractButton*>()[0]->click();
    EXPECT_EQ(engine->viewMode(), SpectrumViewMode::banded);
    engine->viewMode.set(SpectrumViewMode::line);
    EXPECT_EQ(view.selectedIndex(), 1);
}

TEST_F(RTAOptionsViewTests, bandsAreChosenByTheirShareOfAnOctave) {
    auto& bands = named<MenuButton>("Bands");
    EXPECT_EQ(bands.text(), QStringLiteral("1/3 Octave"));
    EXPECT_EQ(bands.menu()->actions().size(), 6);
    pick(bands, "1/24 Octave");
    EXPECT_EQ(engine->octaveFraction(), OctaveFraction::twentyFourthOctave);
    EXPECT_EQ(bands.text(), QStringLiteral("1/24 Octave"));
}

TEST_F(RTAOptionsViewTests, peakHoldHasAColourWhileItIsOn) {
    EXPECT_TRUE(box("Peak hold").isChecked());
    swatch("Peak hold color", "Red").click();
    EXPECT_EQ(engine->rtaPeakColor(), (RGBAColor{1.0, 0.3, 0.25, 1.0}));
    EXPECT_EQ(named<ColorSwatches>("Peak hold color").toolTip(),
              QStringLiteral("Peak hold color — any color in Preferences > Audio"));
    box("Peak hold").click();
    EXPECT_FALSE(engine->showPeakHold());
    EXPECT_FALSE(swatch("Peak hold color", "Red").isEnabled());
}

TEST_F(RTAOptionsViewTests, theRestIsWrittenToo) {
    EXPECT_TRUE(box("Octave-normalized display").isChecked());
    box("Octave-normalized display").click();
    EXPECT_FALSE(engine->octaveNormalizedSpectrumDisplay());
    EXPECT_EQ(box("Ring-Out").toolTip(), QStringLiteral("Feedback detection for this channel"));
    EXPECT_TRUE(box("Ring-Out").isChecked());
    box("Ring-Out").click();
    EXPECT_FALSE(engine->ringOutEnabled());
    auto& sensitivity = named<MenuButton>("Ring-Out sensitivity");
    EXPECT_EQ(sensitivity.text(), QStringLiteral("Normal"));
    pick(sensitivity, "High");
    EXPECT_EQ(engine->ringOutSensitivity(), RingOutSensitivity::high);
    EXPECT_NE(options.findChild<TargetCurveControls*>(), nullptr);
    const auto labels = options.findChildren<QLabel*>();
    EXPECT_TRUE(std::ranges::any_of(labels, [](const QLabel* label) {
        return label->text() ==
               QStringLiteral("Also in this channel's Display section in Preferences > Audio.");
    }));
}

TEST_F(RTAOptionsViewTests, anotherChannelsOptionsAreItsOwn) {
    const auto stage = addChannel("Stage", "desk", 2);
    RTAOptionsView of(*engine, stage.id);
    of.show();
    named<QAbstractButton>("Pink", named<ColorSwatches>("Color", of)).click();
    EXPECT_EQ(engine->channelInfo(stage.id)->color, (RGBAColor{1.0, 0.45, 0.75, 1.0}));
    pick(named<MenuButton>("Bands", of), "1/12 Octave");
    EXPECT_EQ(engine->display(stage.id).octaveFraction, OctaveFraction::twelfthOctave);
    EXPECT_EQ(engine->octaveFraction(), OctaveFraction::thirdOctave);
    // When it goes they are the main input's.
    engine->removeChannel(stage.id);
    EXPECT_EQ(named<MenuButton>("Bands", of).text(), QStringLiteral("1/3 Octave"));
    pick(named<MenuButton>("Bands", of), "1/6 Octave");
    EXPECT_EQ(engine->octaveFraction(), OctaveFraction::sixthOctave);
}

}  // namespace RTAOptionsViewTests
}  // namespace TarvaneApp
