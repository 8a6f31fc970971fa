// The meter's panel in the main window: level or loudness, its controls, and the clock in place of
// both.

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QHelpEvent>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QTest>
#include <QToolTip>

#include "Displays/Readouts/ClipBadge.h"
#include "LiveDisplays/LiveClockReadoutView.h"
#include "LiveDisplays/LiveSPLReadoutView.h"
#include "Shell/ChannelControls/ChannelPickerMenu.h"
#include "Shell/ChannelControls/LoudnessControls.h"
#include "Shell/ChannelControls/MetricControlBar.h"
#include "Shell/ChannelControls/ReadoutUnitPicker.h"
#include "Shell/ChannelControls/SPLControlMenus.h"
#include "Shell/ChannelControls/SPLControls.h"
#include "Shell/Controls/MenuButton.h"
#include "Shell/Panels/RTAPanelView.h"
#include "Shell/Panels/SPLMeterPanelView.h"
#include "Shell/Windows/MainWindow.h"
#include "TarvaneApp/Engine/EngineFixture.h"
#include "TarvaneApp/Profiles/TestProfiles.h"

namespace TarvaneApp {
namespace SPLMeterPanelViewTests {

using TarvaneKit::LoudnessMetric;
using TarvaneKit::SignalColors::green;
using TarvaneKit::SignalColors::red;

constexpr double noValue = -std::numeric_limits<double>::infinity();

class SPLMeterPanelViewTests : public TarvaneTests::EngineFixture {
  protected:
    SPLMeterPanelViewTests() {
        window = std::make_unique<MainWindow>(*engine, profiles.store,
                                              AppCommands{.showSettings = [] {}, .quit = [] {}});
        window->show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(window.get()));
        settle();
    }
    ~SPLMeterPanelViewTests() override { window.reset(); }

    template <class Widget>
    Widget& the() {
        return *window->findChild<Widget*>();
    }
    LiveSPLReadoutView& live() { return the<LiveSPLReadoutView>(); }
    LiveClockReadoutView& clockView() { return the<LiveClockReadoutView>(); }
    QPushButton& resetButton() { return *live().findChild<QPushButton*>(); }

    static QStringList entries(const MenuButton& button) {
        QStringList texts;
        for (const QAction* action : button.menu()->actions()) {
            texts.append(action->text());
        }
        return texts;
    }
    void choose(MenuButton& button, const QString& entry) {
        for (QAction* action : button.menu()->actions()) {
            if (action->text() == entry) {
                action->trigger();
                settle();
                return;
            }
        }
        FAIL() << entry.toStdString() << " is not offered";
    }
    MenuButton& menu(const char* name) {
        for (auto* button : window->findChildren<MenuButton*>()) {
            if (button->accessibleName().startsWith(QLatin1String(name) + QLatin1String(": ")) &&
                button->isVisible()) {
                return *button;
            }
        }
        throw std::logic_error(name);
    }

    /// Seconds of a 1 kHz sine, and a tick. On one channel it reads its RMS level as loudness:
    /// 10 log10(2) under its peak (BS.1770-4: -3.01 LKFS for 0 dBFS).
    void play(int seconds, double amplitude) {
        if (!engine->isRunning()) {
            start();
        }
        for (int i = 0; i < 10 * seconds; ++i) {
            audio.feed("", {TarvaneTests::sine(1000.0, amplitude, 4800, i * 4800)});
            clock.advance(0.1);
        }
        tick();
        settle();
    }

    QString helpAt(const QPoint& place) {
        // A tip that is taken away keeps its text for a moment: what comes back must be new.
        QToolTip::showText(live().mapToGlobal(place), QStringLiteral("no help"), &live());
        QHelpEvent event(QEvent::ToolTip, place, live().mapToGlobal(place));
        QApplication::sendEvent(&live(), &event);
        return QToolTip::text();
    }
    /// In the middle of a drawn part and a pixel within each of its corners.
    void expectHelp(const char* name, const QString& help) {
        const QRect place = part(name).place.adjusted(1, 1, -1, -1);
        for (const QPoint& point : {place.center(), place.topLeft(), place.topRight(),
                                    place.bottomLeft(), place.bottomRight()}) {
            EXPECT_EQ(helpAt(point), help) << name << " at " << point.x() << ", " << point.y();
        }
    }
    /// What stands out of the plate in a part's place.
    QRect drawnIn(const char* name) {
        const QRect place = part(name).place;
        const QImage image = live().grab(place).toImage().convertToFormat(QImage::Format_RGB32);
        QRect drawn;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (qGray(image.pixel(x, y)) > 60) {
                    drawn |= QRect(place.x() + x, place.y() + y, 1, 1);
                }
            }
        }
        return drawn;
    }
    SpokenPart part(const char* name) {
        const auto parts = live().spokenParts();
        // The first part is the readout itself, and may be called as one of the others.
        for (std::size_t i = 1; i < parts.size(); ++i) {
            if (parts[i].name == QLatin1String(name)) {
                return parts[i];
            }
        }
        throw std::logic_error(name);
    }

    TarvaneTests::TestProfiles profiles{store, clock};
    std::unique_ptr<MainWindow> window;
};

TEST_F(SPLMeterPanelViewTests, aChannelIsSwitchedToLoudnessAndBack) {
    auto& unit = the<ReadoutUnitPicker>();
    EXPECT_EQ(entries(unit), (QStringList{"dBFS", "LUFS"}));
    EXPECT_TRUE(the<SPLControls>().isVisible());
    EXPECT_FALSE(the<LoudnessControls>().isVisible());

    choose(unit, "LUFS");
    EXPECT_TRUE(engine->mainInputMeasuresLoudness());
    EXPECT_EQ(unit.text(), QStringLiteral("LUFS"));
    EXPECT_FALSE(the<SPLControls>().isVisible());
    EXPECT_TRUE(the<LoudnessControls>().isVisible());
    play(4, 0.1);
    ASSERT_NE(live().loudness(), nullptr);
    EXPECT_NEAR(live().loudness()->readings.shortTerm, -23.01, 0.1);
    EXPECT_EQ(live().loudness()->labelText(), QStringLiteral("Short-Term  (LUFS)"));
    EXPECT_EQ(live().loudness()->color, green) << "-23 is on the target of EBU R128";

    choose(unit, "dBFS");
    EXPECT_FALSE(engine->mainInputMeasuresLoudness());
    EXPECT_TRUE(engine->splReadoutShowsDBFS());
    EXPECT_EQ(live().loudness(), nullptr);
    EXPECT_TRUE(the<SPLControls>().isVisible());
    EXPECT_FALSE(the<LoudnessControls>().isVisible());
    EXPECT_EQ(live().readout().metricLabel, QStringLiteral("SPL A Fast"));
}

TEST_F(SPLMeterPanelViewTests, aCalibratedChannelIsOfferedAllThreeUnits) {
    TarvaneKit::CalibrationProfile profile;
    profile.reference = TarvaneKit::ReferenceCalibration{};
    profile.reference->offsetDB = 120.0;
    engine->calibration.set(profile);
    auto& unit = the<ReadoutUnitPicker>();
    EXPECT_EQ(entries(unit), (QStringList{"SPL", "dBFS", "LUFS"}));
    for (const char* choice : {"LUFS", "dBFS", "LUFS", "SPL"}) {
        choose(unit, choice);
        EXPECT_EQ(unit.text(), QLatin1String(choice));
    }
    EXPECT_FALSE(engine->mainInputMeasuresLoudness());
    EXPECT_FALSE(engine->splReadoutShowsDBFS());
}

TEST_F(SPLMeterPanelViewTests, theAnalyzersHeaderOffersLoudnessForItsOwnChannel) {
    const ChannelConfig stage = addChannel("Stage", "desk", 2);
    engine->rtaChannelID.set(stage.id);
    auto& unit = *the<RTAPanelView>().findChild<ReadoutUnitPicker*>();
    choose(unit, "LUFS");
    EXPECT_TRUE(engine->channelInfo(stage.id)->measuresLoudness);
    EXPECT_FALSE(engine->mainInputMeasuresLoudness());
    EXPECT_EQ(live().loudness(), nullptr);
    engine->splMeterChannelID.set(stage.id);
    settle();
    EXPECT_NE(live().loudness(), nullptr);
    EXPECT_TRUE(the<LoudnessControls>().isVisible());
}

TEST_F(SPLMeterPanelViewTests, theLoudnessShownLargeIsChosenAmongAllReadings) {
    engine->mainInputMeasuresLoudness.set(true);
    play(4, 0.1);
    MenuButton& readout = menu("Loudness");
    EXPECT_EQ(readout.width(), 110);
    EXPECT_EQ(readout.toolTip(),
              QStringLiteral("Momentary (400 ms), Short-Term (3 s) or Integrated (since reset)"));
    EXPECT_EQ(entries(readout), (QStringList{"M", "S", "I", "LRA", "TP", "M Max", "S Max"}));
    EXPECT_EQ(readout.text(), QStringLiteral("S"));
    choose(readout, "TP");
    EXPECT_EQ(engine->loudnessReadout(), LoudnessMetric::truePeakMax);
    EXPECT_EQ(readout.text(), QStringLiteral("TP"));
    EXPECT_EQ(live().loudness()->labelText(), QStringLiteral("True Peak Max  (dBTP)"));
    EXPECT_EQ(live().loudness()->spokenValue(), QStringLiteral("-20.0 dBTP"));
    EXPECT_EQ(live().loudness()->color, green) << "under the ceiling of -1 dBTP";
    choose(readout, "M Max");
    EXPECT_EQ(live().loudness()->spokenValue(), QStringLiteral("-23.0 LUFS"));
}

TEST_F(SPLMeterPanelViewTests, aTargetIsChosenAndColoursWhatIsShownAtOnce) {
    engine->mainInputMeasuresLoudness.set(true);
    play(4, 0.1);
    engine->stop();
    MenuButton& target = menu("Loudness target");
    EXPECT_EQ(target.toolTip(), QStringLiteral("Edit targets in Preferences > Loudness"));
    EXPECT_EQ(entries(target), (QStringList{"EBU R128 (−23 LUFS)", "ATSC A/85 (−24 LKFS)",
                                            "Streaming (−14 LUFS)", "Podcast (−16 LUFS)"}));
    choose(target, "Streaming (−14 LUFS)");
    EXPECT_EQ(engine->loudnessTarget(), LoudnessTarget::presets()[2]);
    EXPECT_EQ(live().loudness()->color, TarvaneKit::SignalColors::yellow) << "9 LU under it";
    EXPECT_EQ(part("Target").value, QStringLiteral("-14.0 LUFS"));
    EXPECT_EQ(live().levelBar()->targetBand, (LevelBarView::Range{-15.0, -13.0}));

    LoudnessTarget own = engine->loudnessTarget();
    own.targetLUFS = -30.0;
    engine->loudnessTarget.set(own);
    settle();
    EXPECT_EQ(target.text(), QStringLiteral("Custom"));
    EXPECT_EQ(entries(target).size(), 5);
    EXPECT_EQ(live().loudness()->color, red);
    choose(target, "Custom");
    EXPECT_EQ(engine->loudnessTarget(), own);
}

TEST_F(SPLMeterPanelViewTests, resetIntegrationStartsANewMeasurement) {
    engine->mainInputMeasuresLoudness.set(true);
    play(4, 1.0);
    EXPECT_EQ(resetButton().text(), QStringLiteral("Reset Integration"));
    EXPECT_EQ(resetButton().toolTip(),
              QStringLiteral("Start a new measurement: clears Integrated, Loudness Range and True "
                             "Peak"));
    EXPECT_NEAR(live().loudness()->readings.integrated, -3.01, 0.1);
    EXPECT_EQ(live().loudness()->clipState, TarvaneKit::InputClipState::active);
    resetButton().click();
    clock.advance(0.1);
    tick();
    EXPECT_EQ(live().loudness()->readings.integrated, noValue);
    EXPECT_EQ(live().loudness()->readings.truePeakMax, noValue);
    EXPECT_EQ(live().loudness()->clipState, TarvaneKit::InputClipState::none);
    engine->mainInputMeasuresLoudness.set(false);
    settle();
    EXPECT_EQ(resetButton().text(), QStringLiteral("Reset Min/Max"));
    EXPECT_EQ(resetButton().toolTip(), QString());
}

// A reading under another's name would be wrong, and no tick comes to right it.
TEST_F(SPLMeterPanelViewTests, aSwitchWhilePausedShowsTheOtherReadingAtOnce) {
    play(4, 0.1);
    engine->mainInputMeasuresLoudness.set(true);
    play(4, 0.01);
    engine->pause();
    engine->mainInputMeasuresLoudness.set(false);
    settle();
    EXPECT_NEAR(live().readout().valueDB, -43.01, 0.1);
    EXPECT_NEAR(live().readout().minValueDB, -43.01, 0.1) << "of the level, not of the loudness";
    EXPECT_NEAR(live().readout().maxValueDB, -43.01, 0.1);
}

TEST_F(SPLMeterPanelViewTests, theLoudnessBarShowsMomentaryAndShortTermOnTheTarget) {
    engine->mainInputMeasuresLoudness.set(true);
    settle();
    EXPECT_EQ(live().levelBar()->valueDB, noValue);
    EXPECT_EQ(live().levelBar()->markerDB, noValue);
    play(4, 0.1);
    const LevelBarView& bar = *live().levelBar();
    EXPECT_EQ(bar.valueDB, live().loudness()->readings.momentary);
    EXPECT_EQ(bar.markerDB, live().loudness()->readings.shortTerm);
    EXPECT_EQ(bar.range, (LevelBarView::Range{-60.0, 0.0}));
    EXPECT_EQ(bar.color, green);
    EXPECT_EQ(bar.unitLabel, QStringLiteral("LUFS"));
    EXPECT_EQ(bar.targetBand, (LevelBarView::Range{-24.0, -22.0}));
    EXPECT_EQ(bar.legend, QStringLiteral("BAR MOMENTARY · LINE SHORT-TERM"));
    engine->splMeterShowsLevelBar.set(false);
    settle();
    EXPECT_FALSE(live().levelBar().has_value());
}

TEST_F(SPLMeterPanelViewTests, aScreenReaderReadsTheLoudness) {
    engine->mainInputMeasuresLoudness.set(true);
    play(4, 0.1);
    QAccessibleInterface* meter = QAccessible::queryAccessibleInterface(&live());
    EXPECT_EQ(meter->text(QAccessible::Name), QStringLiteral("Short-Term"));
    EXPECT_EQ(meter->text(QAccessible::Value), QStringLiteral("-23.0 LUFS"));
    EXPECT_EQ(part("Target").value, QStringLiteral("-23.0 LUFS"));
    EXPECT_EQ(part("True peak").value, QStringLiteral("-20.0 dBTP"));
    EXPECT_EQ(part("Momentary").value, QStringLiteral("-23.0 LUFS"));
    EXPECT_EQ(part("Integrated").value, QStringLiteral("-23.0 LUFS"));
    EXPECT_EQ(part("LUFS").value, QStringLiteral("-23.0 LUFS"));
    EXPECT_TRUE(part("MIN").place.isEmpty()) << "there is none of a loudness";
    const std::size_t count = live().spokenParts().size();
    engine->mainInputMeasuresLoudness.set(false);
    settle();
    EXPECT_EQ(live().spokenParts().size(), count);
    EXPECT_TRUE(part("Target").place.isEmpty());
    EXPECT_FALSE(part("MIN").place.isEmpty());
}

TEST_F(SPLMeterPanelViewTests, everyDrawnLoudnessSaysWhatItIsUnderThePointer) {
    engine->mainInputMeasuresLoudness.set(true);
    settle();
    expectHelp("Target", QStringLiteral("EBU R128 (−23 LUFS): on target within ±1 LU"));
    expectHelp("True peak",
               QStringLiteral("Highest true peak since the last reset (ceiling -1.0 dBTP)"));
    for (const char* name : {"Momentary", "Short-Term", "Integrated", "Loudness Range"}) {
        expectHelp(name, QLatin1String(name));
    }
}

TEST_F(SPLMeterPanelViewTests, theSidesAndTheClipBadgeSayWhatTheyAreUnderThePointer) {
    engine->selectedDeviceUID.set("desk");
    engine->mainInputIsStereo.set(true);
    start();
    for (int i = 0; i < 10; ++i) {
        const auto samples = TarvaneTests::sine(1000.0, 1.0, 4800, i * 4800);
        audio.feed("desk", {samples, samples});
        clock.advance(0.1);
    }
    tick();
    settle();
    expectHelp("L", QStringLiteral("Left and right sides; the large value combines both"));
    expectHelp("Input clipping", ClipBadge{TarvaneKit::InputClipState::active}.help());
    // Both are drawn in the middle of where they say they are.
    for (const char* name : {"L", "Input clipping"}) {
        EXPECT_NEAR(drawnIn(name).center().x(), part(name).place.center().x(), 4) << name;
    }
}

TEST_F(SPLMeterPanelViewTests, loudnessIsDrawnAnewOncePerPublicationAndOnlyWhereItChanged) {
    engine->mainInputMeasuresLoudness.set(true);
    play(4, 0.1);
    const int before = live().repaintsOrdered();
    play(1, 0.05);
    EXPECT_EQ(live().repaintsOrdered(), before + 1);
    tick();
    const int settled = live().repaintsOrdered();
    tick();
    EXPECT_EQ(live().repaintsOrdered(), settled);
}

TEST_F(SPLMeterPanelViewTests, beforeAStartEveryValueIsADash) {
    EXPECT_EQ(part("MIN").value, QStringLiteral("—"));
    EXPECT_EQ(part("MAX").value, QStringLiteral("—"));
    EXPECT_EQ(live().readout().spokenValue(), QStringLiteral("—"));
    engine->mainInputMeasuresLoudness.set(true);
    settle();
    EXPECT_EQ(live().loudness()->spokenValue(), QStringLiteral("—"));
    EXPECT_EQ(part("True peak").value, QStringLiteral("—"));
}

TEST_F(SPLMeterPanelViewTests, aMonoChannelHasNoSides) {
    play(1, 0.1);
    EXPECT_TRUE(live().readout().sideValuesDB.empty());
    EXPECT_TRUE(part("L").place.isEmpty());
    EXPECT_TRUE(part("R").value.isEmpty());
}

TEST_F(SPLMeterPanelViewTests, anUncalibratedChannelSaysSoWhateverItsUnit) {
    for (const bool showsDBFS : {false, true}) {
        engine->splReadoutShowsDBFS.set(showsDBFS);
        settle();
        EXPECT_EQ(part("Reading").value, QStringLiteral("SPL A Fast  (dBFS, uncalibrated)"));
    }
}

// --- little room

// The smallest window of a meter.
TEST_F(SPLMeterPanelViewTests, everythingFitsIntoTheSmallestWindowOfAMeter) {
    audio.behaviour("").channelCount = 2;
    engine->mainInputIsStereo.set(true);
    engine->metricMode.set(MetricMode::leq);
    start();
    SPLMeterPanelView panel(*engine, std::nullopt);
    panel.resize(320, 200);
    panel.show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&panel));
    auto& readout = *panel.findChild<LiveSPLReadoutView*>();
    for (const bool isLoudness : {false, true}) {
        engine->mainInputMeasuresLoudness.set(isLoudness);
        settle();
        audio.feed("",
                   {TarvaneTests::sine(1000.0, 1.0, 480), TarvaneTests::sine(1000.0, 1.0, 480)});
        tick();
        settle();
        std::vector<QRect> places;
        const auto parts = readout.spokenParts();
        for (std::size_t i = 1; i < parts.size(); ++i) {
            const bool isSecondSide = parts[i].name == QStringLiteral("R");  // in the line of "L"
            if (!parts[i].place.isEmpty() && !isSecondSide) {
                places.push_back(parts[i].place);
            }
        }
        if (const auto* button = readout.findChild<QPushButton*>(); button->isVisible()) {
            places.push_back(button->geometry());
        }
        for (std::size_t i = 0; i < places.size(); ++i) {
            EXPECT_TRUE(readout.rect().contains(places[i]));
            for (std::size_t j = i + 1; j < places.size(); ++j) {
                // A pixel more for the outward rounding of either.
                EXPECT_FALSE(places[i].adjusted(1, 1, -1, -1).intersects(places[j]))
                    << i << " and " << j << (isLoudness ? " of loudness" : " of level");
            }
        }
    }
}

class NarrowControlBarTests : public TarvaneTests::EngineFixture {
  protected:
    NarrowControlBarTests() : bar(std::make_unique<MetricControlBar>(*engine, std::nullopt)) {
        bar->show();
        narrow();
    }
    ~NarrowControlBarTests() override { bar.reset(); }

    void resizeTo(int width) {
        bar->setFixedWidth(width);
        settle();
        waitUntil([&] { return bar->width() == width; });
        settle();
    }
    void narrow() { resizeTo(320); }
    void expectAllInside() {
        for (const QWidget* control : bar->findChildren<QWidget*>()) {
            if (control->isVisible()) {
                EXPECT_TRUE(bar->rect().contains(
                    QRect(control->mapTo(bar.get(), QPoint()), control->size())))
                    << control->metaObject()->className();
            }
        }
    }
    template <class Widget>
    Widget& the() {
        return *bar->findChild<Widget*>();
    }

    std::unique_ptr<MetricControlBar> bar;
};

TEST_F(NarrowControlBarTests, menusTakeTheButtonsPlace) {
    EXPECT_LE(bar->minimumSizeHint().width(), 320);
    EXPECT_TRUE(the<SPLControlMenus>().isVisible());
    EXPECT_FALSE(the<SPLControls>().isVisible());
    expectAllInside();
    resizeTo(900);
    EXPECT_FALSE(the<SPLControlMenus>().isVisible());
    EXPECT_TRUE(the<SPLControls>().isVisible());
    expectAllInside();
}

// A change of the arrangement orders a layout, and a layout the arrangement: that has to end.
TEST_F(NarrowControlBarTests, theArrangementComesToRest) {
    class LayoutCount final : public QObject {
      public:
        int count = 0;
        bool eventFilter(QObject*, QEvent* event) override {
            count += event->type() == QEvent::LayoutRequest ? 1 : 0;
            return false;
        }
    };
    LayoutCount layouts;
    bar->installEventFilter(&layouts);
    for (const bool isLoudness : {false, true}) {
        engine->mainInputMeasuresLoudness.set(isLoudness);
        for (const int width : {320, 900, 320}) {
            resizeTo(width);
            for (int i = 0; i < 5; ++i) {
                settle();
            }
            layouts.count = 0;
            for (int i = 0; i < 5; ++i) {
                settle();
            }
            EXPECT_EQ(layouts.count, 0);
        }
    }
}

TEST_F(NarrowControlBarTests, theMenusWriteTheSettings) {
    const auto menus = the<SPLControlMenus>().findChildren<MenuButton*>();
    ASSERT_EQ(menus.size(), 3);
    menus[1]->menu()->actions().at(1)->trigger();
    EXPECT_EQ(engine->splWeighting(), TarvaneKit::Weighting::c);
    menus[2]->menu()->actions().at(1)->trigger();
    EXPECT_EQ(engine->splTimeWeighting(), TarvaneKit::TimeWeighting::slow);
    menus[0]->menu()->actions().at(1)->trigger();
    EXPECT_EQ(engine->metricMode(), MetricMode::peak);
    EXPECT_FALSE(menus[2]->isVisible());
    menus[1]->menu()->actions().at(2)->trigger();
    EXPECT_EQ(engine->peakWeighting(), TarvaneKit::Weighting::z);
    EXPECT_EQ(engine->splWeighting(), TarvaneKit::Weighting::c);
    menus[0]->menu()->actions().at(2)->trigger();
    EXPECT_FALSE(menus[1]->isVisible());
    settle();
    expectAllInside();
}

TEST_F(NarrowControlBarTests, loudnessAndALongNameFitToo) {
    addChannel("Loudspeaker behind the organ, left", "desk", 2);
    settle();
    expectAllInside();
    engine->mainInputMeasuresLoudness.set(true);
    settle();
    EXPECT_TRUE(the<LoudnessControls>().isVisible());
    expectAllInside();
    resizeTo(900);
    EXPECT_TRUE(the<LoudnessControls>().findChild<QLabel*>()->isVisible());
    expectAllInside();
}

// Which unit, what and how it is weighted stays to be read; which channel its dot tells, too.
TEST_F(NarrowControlBarTests, theChannelsNameGivesWayAheadOfTheMenus) {
    addChannel("Loudspeaker behind the organ, left", "desk", 2);
    engine->splMeterChannelID.set(engine->extraChannels().back().id);
    const ChannelPickerMenu& picker = the<ChannelPickerMenu>();
    int widest = 0;
    for (int width = 320; width <= 960; width += 20) {
        resizeTo(width);
        for (const MenuButton* menu : bar->findChildren<MenuButton*>()) {
            if (menu->isVisible() && menu != &picker) {
                EXPECT_GE(menu->width(), menu->sizeHint().width())
                    << menu->text().toStdString() << " at " << width;
            }
        }
        EXPECT_GE(picker.width(), picker.minimumSizeHint().width());
        EXPECT_GE(picker.width(), widest) << "at " << width;
        widest = the<SPLControlMenus>().isVisible() ? picker.width() : 0;
        expectAllInside();
    }
    EXPECT_EQ(picker.width(), picker.sizeHint().width());
}

TEST_F(NarrowControlBarTests, theButtonsStandCloserBeforeTheyBecomeMenus) {
    const auto gap = [&] {
        const auto& picker = the<ReadoutUnitPicker>();
        const auto& controls = the<SPLControls>();
        return controls.x() - (picker.x() + picker.width());
    };
    resizeTo(960);
    ASSERT_TRUE(the<SPLControls>().isVisible());
    EXPECT_EQ(gap(), 41) << "20 pixels on each side of the divider";
    int width = 960;
    while (gap() == 41 && width > 320) {
        resizeTo(width -= 10);
    }
    EXPECT_TRUE(the<SPLControls>().isVisible());
    EXPECT_EQ(gap(), 25) << "12 pixels on each side";
    expectAllInside();
}

// --- the clock

TEST_F(SPLMeterPanelViewTests, theClockTakesTheMetersPlaceByTheMenuItsKeysOrTheSetting) {
    EXPECT_FALSE(clockView().isVisible());
    QAction* item = nullptr;
    for (QAction* action : window->findChildren<QAction*>()) {
        if (action->text() == QStringLiteral("Show Clock Instead of SPL Meter")) {
            item = action;
        }
    }
    ASSERT_NE(item, nullptr);
    EXPECT_TRUE(item->isCheckable());
    EXPECT_EQ(item->shortcut(), QKeySequence(QStringLiteral("Ctrl+Shift+C")));
    item->trigger();
    EXPECT_TRUE(engine->splReadoutShowsClock());
    EXPECT_TRUE(clockView().isVisible());
    EXPECT_FALSE(live().isVisible());
    EXPECT_FALSE(the<MetricControlBar>().isVisible());
    engine->splReadoutShowsClock.set(false);
    EXPECT_FALSE(item->isChecked());
    EXPECT_FALSE(clockView().isVisible());
    EXPECT_TRUE(live().isVisible());
    EXPECT_TRUE(the<MetricControlBar>().isVisible());
    window->activateWindow();
    waitUntil([&] { return window->isActiveWindow(); });
    QTest::keyClick(window.get(), Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_TRUE(engine->splReadoutShowsClock());
}

TEST_F(SPLMeterPanelViewTests, theClockGoesOnBySecondsWithoutMetering) {
    engine->splReadoutShowsClock.set(true);
    ASSERT_FALSE(engine->isRunning());
    const auto isNow = [&] {
        const QDateTime before = QDateTime::currentDateTime();
        const QString shown = clockView().view().timeText;
        return shown == ClockReadoutView::at(before).timeText;
    };
    waitUntil(isNow);
    const QString first = clockView().view().timeText;
    waitUntil([&] { return clockView().view().timeText != first && isNow(); });
    EXPECT_EQ(clockView().view().dateText,
              QLocale().toString(QDate::currentDate(), QLocale::LongFormat));
    QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(&clockView());
    EXPECT_EQ(spoken->text(QAccessible::Name), QStringLiteral("Clock"));
    EXPECT_EQ(spoken->text(QAccessible::Value), clockView().view().timeText);
}

TEST_F(SPLMeterPanelViewTests, aClockThatIsNotSeenDoesNotTick) {
    EXPECT_FALSE(clockView().isTicking());
    engine->splReadoutShowsClock.set(true);
    EXPECT_TRUE(clockView().isTicking());
    window->hide();
    EXPECT_FALSE(clockView().isTicking());
    window->show();
    EXPECT_TRUE(clockView().isTicking());
}

}  // namespace SPLMeterPanelViewTests
}  // namespace TarvaneApp
