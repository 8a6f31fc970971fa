#include "Shell/Windows/MainWindow.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QSet>
#include <QTest>
#include <QWindow>

#include "Displays/Contrast.h"
#include "LiveDisplays/LiveLevelHistoryGraph.h"
#include "LiveDisplays/LiveSPLReadoutView.h"
#include "LiveDisplays/LiveSpectrogramView.h"
#include "LiveDisplays/LiveSpectrumView.h"
#include "Shell/ChannelControls/ChannelPickerMenu.h"
#include "Shell/ChannelControls/ReadoutUnitPicker.h"
#include "Shell/Controls/CompactToggleButton.h"
#include "Shell/Controls/IconButton.h"
#include "Shell/Controls/SegmentedPicker.h"
#include "Shell/Controls/Spinner.h"
#include "Shell/Panels/ExportButton.h"
#include "Shell/Windows/IdlePrompt.h"
#include "Shell/Windows/MainToolbar.h"
#include "Shell/Windows/MeteredInputLabel.h"
#include "Support/DrawnContrast.h"
#include "TarvaneApp/Engine/EngineFixture.h"
#include "TarvaneApp/Profiles/TestProfiles.h"

namespace TarvaneApp {
namespace MainWindowTests {

using TarvaneKit::SignalColors::green;
using TarvaneKit::SignalColors::red;
using TarvaneKit::SignalColors::yellow;

class MainWindowTests : public TarvaneTests::EngineFixture {
  protected:
    MainWindowTests() {
        window =
            std::make_unique<MainWindow>(*engine, profiles.store,
                                         AppCommands{.showSettings = [this] { ++settingsShown; },
                                                     .exportLevelHistory = [this] { ++exports; },
                                                     .quit = [this] { ++quits; }});
        window->show();
        window->activateWindow();
        waitUntil([&] { return window->isActiveWindow(); });
        settle();
    }
    ~MainWindowTests() override { window.reset(); }

    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QWidget* focused = window->focusWidget();
        QTest::keyClick(focused != nullptr ? focused : window.get(), key, modifiers);
    }

    /// What a key sends that stays down.
    void hold(Qt::Key key, const QString& text) {
        QWidget* focused = window->focusWidget();
        for (int i = 0; i < 5; ++i) {
            QTest::simulateEvent(focused != nullptr ? focused : window.get(), true, key,
                                 Qt::NoModifier, text, true);
            settle();
        }
    }

    template <class Widget>
    Widget* named(const char* accessibleName) {
        for (Widget* widget : window->findChildren<Widget*>()) {
            if (widget->accessibleName() == QLatin1String(accessibleName)) {
                return widget;
            }
        }
        return nullptr;
    }

    void runWithSine(double amplitude) {
        if (!engine->isRunning()) {
            start();
        }
        for (int i = 0; i < 30; ++i) {
            audio.feed("", {TarvaneTests::sine(1000.0, amplitude, 4800, i * 4800)});
            clock.advance(0.1);
        }
        tick();
        settle();
    }

    LiveSPLReadoutView& readout() { return *window->findChild<LiveSPLReadoutView*>(); }

    TarvaneTests::TestProfiles profiles{store, clock};
    std::unique_ptr<MainWindow> window;
    int settingsShown = 0;
    int exports = 0;
    int quits = 0;
};

TEST_F(MainWindowTests, theSessionIsExportedByKeyAndByTheHistorysButton) {
    press(Qt::Key_E, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(exports, 1);
    auto* button = window->findChild<ExportButton*>();
    ASSERT_NE(button, nullptr);
    EXPECT_EQ(button->toolTip(), QStringLiteral("Export Level History… (Ctrl+Shift+E)"));
    button->click();
    EXPECT_EQ(exports, 2);
}

TEST_F(MainWindowTests, isCalledTarvaneAndIsNeverSmallerThanItsContentNeeds) {
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Tarvane"));
    EXPECT_EQ(window->minimumSize(), QSize(900, 770));
    EXPECT_LE(window->minimumSizeHint().width(), 900);
    EXPECT_LE(window->minimumSizeHint().height(), 770);
    engine->applyLayoutPreset(LayoutPreset::splMeterOnly);
    settle();
    EXPECT_EQ(window->minimumSize(), QSize(900, 260));
    EXPECT_LE(window->minimumSizeHint().height(), 260);
}

TEST_F(MainWindowTests, firstItIsAsLargeAsTheModulesLikeIt) {
    EXPECT_EQ(window->size(), QSize(1200, 920));
}

// 38 pixels of the laptop's 738 are for the title bar.
TEST_F(MainWindowTests, onALowScreenTheWindowFitsAndTheModulesMakeDo) {
    ASSERT_EQ(QGuiApplication::screens().size(), 2);
    window->windowHandle()->setScreen(QGuiApplication::screens()[1]);
    settle();
    EXPECT_EQ(window->minimumSize(), QSize(900, 700));
    window->resize(1366, 700);
    settle();
    EXPECT_EQ(window->size(), QSize(1366, 700));
    EXPECT_TRUE(window->findChild<LiveSPLReadoutView*>()->isVisible());
    EXPECT_TRUE(window->findChild<LiveSpectrumView*>()->isVisible());
    EXPECT_TRUE(window->findChild<LiveSpectrogramView*>()->isVisible());
    EXPECT_TRUE(window->findChild<LiveLevelHistoryGraph*>()->isVisible());
    window->windowHandle()->setScreen(QGuiApplication::screens()[0]);
    settle();
    EXPECT_EQ(window->minimumSize(), QSize(900, 770));
}

TEST_F(MainWindowTests, anIdleWindowSaysHowToStartUntilTheFirstStart) {
    const auto* prompt = window->findChild<IdlePrompt*>();
    ASSERT_TRUE(prompt->isVisible());
    const auto texts = [&] {
        QStringList shown;
        for (const QLabel* label : prompt->findChildren<QLabel*>()) {
            shown.append(label->text());
        }
        return shown.join(u'|');
    };
    EXPECT_EQ(texts(), QStringLiteral("Press Space to start|Measurement Mic (default)"));
    const auto* graph = window->findChild<LiveSpectrumView*>();
    EXPECT_TRUE(QRect(graph->mapTo(window.get(), QPoint()), graph->size())
                    .contains(QRect(prompt->mapTo(window.get(), QPoint()), prompt->size())));
    audio.setDefaultInput(std::nullopt);
    engine->refreshDevices();
    EXPECT_TRUE(texts().startsWith(QStringLiteral("No input device|Connect one")));
    audio.setDefaultInput(41);
    engine->refreshDevices();
    EXPECT_EQ(texts(), QStringLiteral("Press Space to start|Desk (default)"));
    // Where there are no graphs it is over what there is.
    engine->applyLayoutPreset(LayoutPreset::splMeterOnly);
    settle();
    EXPECT_TRUE(prompt->isVisible());
    EXPECT_TRUE(prompt->geometry().intersects(
        QRect(readout().mapTo(prompt->parentWidget(), QPoint()), readout().size())));
    press(Qt::Key_Space);
    EXPECT_FALSE(prompt->isVisible());
    waitUntil([&] { return engine->isRunning(); });
    press(Qt::Key_Space);
    EXPECT_FALSE(prompt->isVisible());  // the session's levels stay to be read
}

TEST_F(MainWindowTests, aStartThatFailsLeavesTheWindowSayingHowToStart) {
    audio.behaviour("").startError = TarvaneKit::AudioIOError::noInputAvailable();
    start();
    EXPECT_TRUE(window->findChild<IdlePrompt*>()->isVisible());
}

TEST_F(MainWindowTests, spaceStartsAndStops) {
    press(Qt::Key_Space);
    EXPECT_TRUE(engine->isStarting());
    waitUntil([&] { return engine->isRunning(); });
    press(Qt::Key_Space);
    EXPECT_FALSE(engine->isRunning());
}

TEST_F(MainWindowTests, spaceStartsWhicheverButtonHasTheFocus) {
    auto* button = named<CompactToggleButton>("C weighting");
    button->setFocus();
    press(Qt::Key_Space);
    EXPECT_TRUE(engine->isStarting());
    EXPECT_EQ(engine->splWeighting(), TarvaneKit::Weighting::a);
    waitUntil([&] { return engine->isRunning(); });
}

TEST_F(MainWindowTests, spaceWhileStartingCancels) {
    audio.behaviour("").opensSlowly = true;
    press(Qt::Key_Space);
    EXPECT_TRUE(engine->isStarting());
    press(Qt::Key_Space);
    EXPECT_FALSE(engine->isStarting());
    audio.open("");
    press(Qt::Key_Space);
    waitUntil([&] { return engine->isRunning(); });
    EXPECT_EQ(audio.runningCount(), 1);
}

TEST_F(MainWindowTests, aKeyThatStaysDownCountsOnce) {
    press(Qt::Key_Space);
    waitUntil([&] { return engine->isRunning(); });
    hold(Qt::Key_Space, QStringLiteral(" "));
    ASSERT_TRUE(engine->isRunning());
    press(Qt::Key_P);
    hold(Qt::Key_P, QStringLiteral("p"));
    EXPECT_TRUE(engine->isPaused());
    press(Qt::Key_P);
    hold(Qt::Key_P, QStringLiteral("p"));
    EXPECT_FALSE(engine->isPaused());
    EXPECT_TRUE(engine->isRunning());
}

TEST_F(MainWindowTests, pDoesNothingWhileStopped) {
    press(Qt::Key_P);
    EXPECT_FALSE(engine->isPaused());
    EXPECT_FALSE(named<IconButton>("Pause")->isVisible());
}

TEST_F(MainWindowTests, pPausesAndResumes) {
    start();
    EXPECT_TRUE(named<IconButton>("Pause")->isVisible());
    EXPECT_EQ(named<IconButton>("Pause")->toolTip(),
              QStringLiteral("Pause metering without clearing (P)"));
    press(Qt::Key_P);
    EXPECT_TRUE(engine->isPaused());
    EXPECT_EQ(named<IconButton>("Resume")->toolTip(), QStringLiteral("Resume metering (P)"));
    press(Qt::Key_P);
    EXPECT_FALSE(engine->isPaused());
    EXPECT_TRUE(engine->isRunning());
}

TEST_F(MainWindowTests, theNoteIsThereWhilePaused) {
    const auto visible = [&] {
        for (const QLabel* label : window->findChildren<QLabel*>()) {
            if (label->text() == QStringLiteral("PAUSED")) {
                return label->isVisible();
            }
        }
        return false;
    };
    start();
    EXPECT_FALSE(visible());
    engine->pause();
    EXPECT_TRUE(visible());
    engine->stop();
    EXPECT_FALSE(visible());
}

TEST_F(MainWindowTests, aTextFieldTakesSpaceAndPAsText) {
    QLineEdit field(window->centralWidget());
    field.show();
    field.setFocus();
    start();
    press(Qt::Key_Space);
    press(Qt::Key_P);
    EXPECT_EQ(field.text(), QStringLiteral(" p"));
    EXPECT_TRUE(engine->isRunning());
    EXPECT_FALSE(engine->isPaused());
}

TEST_F(MainWindowTests, theSpinnerTurnsOnlyWhileStarting) {
    auto* spinner = window->findChild<MainToolbar*>()->findChild<Spinner*>();
    EXPECT_FALSE(spinner->isVisible());
    EXPECT_FALSE(spinner->findChild<QTimer*>() != nullptr &&
                 spinner->findChild<QTimer*>()->isActive());
    audio.behaviour("").opensSlowly = true;
    press(Qt::Key_Space);
    EXPECT_TRUE(spinner->isVisible());
    audio.open("");
    waitUntil([&] { return engine->isRunning(); });
    EXPECT_FALSE(spinner->isVisible());
}

TEST_F(MainWindowTests, theToolbarNamesTheInputDevice) {
    const auto& input = *window->findChild<MeteredInputLabel*>();
    EXPECT_EQ(input.text(), QStringLiteral("Measurement Mic (default)"));
    EXPECT_EQ(input.state(), InputState::idle);
    engine->selectedDeviceUID.set("desk");
    EXPECT_EQ(input.text(), QStringLiteral("Desk"));
    engine->selectedDeviceUID.set(TarvaneKit::systemOutputUID);
    EXPECT_EQ(input.text(), QStringLiteral("System Output (the default output)"));
    EXPECT_EQ(input.state(), InputState::idle);
    engine->selectedDeviceUID.set("gone");
    EXPECT_EQ(input.text(),
              QStringLiteral("Measurement Mic (default; the chosen device isn't connected)"));
    EXPECT_EQ(input.state(), InputState::lost);
    audio.setDefaultInput(std::nullopt);
    engine->refreshDevices();
    EXPECT_EQ(input.text(), QStringLiteral("No input device"));
    EXPECT_EQ(input.state(), InputState::lost);
}

TEST_F(MainWindowTests, theToolbarsDotShowsTheStateOfTheInput) {
    const auto& input = *window->findChild<MeteredInputLabel*>();
    start();
    EXPECT_EQ(input.state(), InputState::running);
    // A choice made while metering is not what is metered.
    engine->selectedDeviceUID.set("gone");
    EXPECT_EQ(input.text(), QStringLiteral("Measurement Mic (default)"));
    EXPECT_EQ(input.state(), InputState::running);
    press(Qt::Key_P);
    EXPECT_EQ(input.state(), InputState::paused);
    press(Qt::Key_P);
    EXPECT_EQ(input.state(), InputState::running);
    press(Qt::Key_Space);
    EXPECT_EQ(input.state(), InputState::lost);
    engine->selectedDeviceUID.set(std::nullopt);
    EXPECT_EQ(input.state(), InputState::idle);
    // On a device that stands in for the chosen one a run is a run.
    engine->selectedDeviceUID.set("gone");
    start();
    EXPECT_EQ(input.text(),
              QStringLiteral("Measurement Mic (default; the chosen device isn't connected)"));
    EXPECT_EQ(input.state(), InputState::running);
}

TEST_F(MainWindowTests, f10OpensTheMenuBarAndTheArrowsGoThroughIt) {
    window->findChild<CompactToggleButton*>()->setFocus();
    press(Qt::Key_F10);
    const QMenu* open = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_NE(open, nullptr);
    EXPECT_EQ(open, window->menuBar()->actions().front()->menu());
    QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Right);
    EXPECT_EQ(QApplication::activePopupWidget(), window->menuBar()->actions()[1]->menu());
    QApplication::activePopupWidget()->close();
}

TEST_F(MainWindowTests, theControlBarWritesTheSettings) {
    named<CompactToggleButton>("C weighting")->click();
    EXPECT_EQ(engine->splWeighting(), TarvaneKit::Weighting::c);
    named<CompactToggleButton>("Slow time weighting")->click();
    EXPECT_EQ(engine->splTimeWeighting(), TarvaneKit::TimeWeighting::slow);
    EXPECT_TRUE(named<CompactToggleButton>("Slow time weighting")->isSelected());
    EXPECT_FALSE(named<CompactToggleButton>("Fast time weighting")->isSelected());

    auto* mode = window->findChild<SegmentedPicker*>();
    for (auto* segment : mode->findChildren<QAbstractButton*>()) {
        if (segment->text() == QStringLiteral("Peak")) {
            segment->click();
        }
    }
    EXPECT_EQ(engine->metricMode(), MetricMode::peak);
    EXPECT_FALSE(named<CompactToggleButton>("C weighting")->isVisible());
    EXPECT_TRUE(named<CompactToggleButton>("C peak weighting")->isSelected());
    named<CompactToggleButton>("Z peak weighting")->click();
    EXPECT_EQ(engine->peakWeighting(), TarvaneKit::Weighting::z);
}

TEST_F(MainWindowTests, anAssistiveProgramSelectsAndCantSwitchOff) {
    const auto toggle = [&](const char* name) {
        QAccessible::queryAccessibleInterface(named<CompactToggleButton>(name))
            ->actionInterface()
            ->doAction(QAccessibleActionInterface::toggleAction());
    };
    toggle("C weighting");
    EXPECT_EQ(engine->splWeighting(), TarvaneKit::Weighting::c);
    toggle("C weighting");
    EXPECT_EQ(engine->splWeighting(), TarvaneKit::Weighting::c);
    EXPECT_TRUE(named<CompactToggleButton>("C weighting")->isSelected());
}

TEST_F(MainWindowTests, thePickedChoicesAreLegible) {
    // Within the plate's rounded corners.
    const auto contrast = [](QWidget& widget) {
        return TarvaneTests::drawnContrast(
            QRectF(widget.rect()).adjusted(5.0, 5.0, -5.0, -5.0),
            [&](QPainter& painter) { widget.render(&painter, {}, {}, QWidget::DrawChildren); });
    };
    for (const char* name : {"A weighting", "C weighting"}) {
        EXPECT_GE(contrast(*named<CompactToggleButton>(name)), Contrast::text) << name;
    }
    for (auto* segment : window->findChild<SegmentedPicker*>()->findChildren<QAbstractButton*>()) {
        EXPECT_GE(contrast(*segment), Contrast::text) << segment->text().toStdString();
    }
}

TEST_F(MainWindowTests, theControlBarFollowsTheSettings) {
    engine->metricMode.set(MetricMode::leq);
    engine->leqIntegrationSeconds.set(900.0);
    EXPECT_EQ(window->findChild<SegmentedPicker*>()->selectedIndex(), 2);
    bool shown = false;
    for (const QLabel* label : window->findChildren<QLabel*>()) {
        shown = shown ||
                (label->isVisible() &&
                 label->text() == QStringLiteral("A-weighted, 15 min · configured in Settings"));
    }
    EXPECT_TRUE(shown);
}

TEST_F(MainWindowTests, splIsOfferedOnlyToACalibratedChannel) {
    auto* picker = window->findChild<ReadoutUnitPicker*>();
    ASSERT_EQ(picker->menu()->actions().size(), 2);
    EXPECT_EQ(picker->text(), QStringLiteral("dBFS"));
    TarvaneKit::CalibrationProfile profile;
    profile.reference = TarvaneKit::ReferenceCalibration{};
    profile.reference->offsetDB = 120.0;
    engine->calibration.set(profile);
    ASSERT_EQ(picker->menu()->actions().size(), 3);
    EXPECT_EQ(picker->text(), QStringLiteral("SPL"));
    picker->menu()->actions()[1]->trigger();
    EXPECT_TRUE(engine->splReadoutShowsDBFS());
    EXPECT_EQ(picker->text(), QStringLiteral("dBFS"));
    picker->menu()->actions()[0]->trigger();
    EXPECT_FALSE(engine->splReadoutShowsDBFS());
}

TEST_F(MainWindowTests, theChannelPickerIsThereOnlyWithSeveralChannels) {
    auto* picker = window->findChild<ChannelPickerMenu*>();
    EXPECT_FALSE(picker->isVisible());
    const ChannelConfig extra = addChannel("Stage", "desk", 2);
    EXPECT_TRUE(picker->isVisible());
    picker->menu()->actions()[1]->trigger();
    EXPECT_EQ(engine->splMeterChannelID(), extra.id);
    EXPECT_EQ(picker->text(), QStringLiteral("Stage"));
}

TEST_F(MainWindowTests, aChannelRemovedWhileShownGivesWayToTheMainInput) {
    const ChannelConfig extra = addChannel("Stage", "desk", 2);
    engine->splMeterChannelID.set(extra.id);
    engine->updateDisplay(extra.id, [](auto& display) { display.metricMode = MetricMode::peak; });
    settle();
    EXPECT_EQ(readout().readout().metricLabel, QStringLiteral("Peak C"));
    engine->extraChannels.set({});
    settle();
    EXPECT_EQ(readout().readout().metricLabel, QStringLiteral("SPL A Fast"));
}

TEST_F(MainWindowTests, theErrorAlertShowsTheMessageAndClearsIt) {
    TarvaneTests::EngineInsides::tell(*engine, "Something went wrong.");
    auto boxes = window->findChildren<QMessageBox*>();
    ASSERT_EQ(boxes.size(), 1);
    EXPECT_TRUE(boxes[0]->isVisible());
    EXPECT_EQ(boxes[0]->windowTitle(), QStringLiteral("Error"));
    EXPECT_EQ(boxes[0]->text(), QStringLiteral("Something went wrong."));
    boxes[0]->accept();
    EXPECT_FALSE(engine->errorMessage().has_value());
}

TEST_F(MainWindowTests, aSecondErrorFollowsTheFirst) {
    const auto box = [&] {
        settle();
        const auto boxes = window->findChildren<QMessageBox*>();
        return boxes.size() == 1 ? boxes[0] : nullptr;
    };
    TarvaneTests::EngineInsides::tell(*engine, "One.");
    TarvaneTests::EngineInsides::tell(*engine, "Two.");
    ASSERT_TRUE(box());
    EXPECT_EQ(box()->text(), QStringLiteral("One."));
    box()->reject();
    ASSERT_TRUE(box());
    EXPECT_EQ(box()->text(), QStringLiteral("Two."));
    EXPECT_TRUE(box()->isVisible());
    box()->reject();
    EXPECT_FALSE(engine->errorMessage().has_value());
    EXPECT_FALSE(box());
    TarvaneTests::EngineInsides::tell(*engine, "Three.");
    ASSERT_TRUE(box());
    EXPECT_TRUE(box()->isVisible());
}

TEST_F(MainWindowTests, meteringGoesOnUnderTheAlert) {
    start();
    TarvaneTests::EngineInsides::tell(*engine, "Something went wrong.");
    runWithSine(0.1);
    EXPECT_EQ(readout().readout().spokenValue(), QStringLiteral("-23.0 dBFS"));
}

TEST_F(MainWindowTests, aFailedStartLeavesTheMeterStoppedWithTheAlert) {
    audio.behaviour("").startError = TarvaneKit::AudioIOError::noInputAvailable();
    press(Qt::Key_Space);
    waitUntil([&] { return !engine->isStarting(); });
    EXPECT_FALSE(engine->isRunning());
    EXPECT_EQ(window->findChild<QMessageBox*>()->text().toStdString(),
              TarvaneKit::AudioIOError::noInputAvailable().what());
    EXPECT_NE(named<IconButton>("Start"), nullptr);
}

TEST_F(MainWindowTests, tabReachesEveryControlAndReturnPressesIt) {
    start();
    QSet<QWidget*> wanted;
    for (QWidget* widget : window->findChildren<QWidget*>()) {
        if (widget->isVisible() && widget->isEnabled() &&
            (widget->focusPolicy() & Qt::TabFocus) != 0) {
            wanted.insert(widget);
        }
    }
    EXPECT_GE(wanted.size(), 12);
    QSet<QWidget*> reached;
    for (int i = 0; i < 60; ++i) {
        press(Qt::Key_Tab);
        reached.insert(window->focusWidget());
    }
    // Of a row of which one is picked Tab stops at the picked one, and arrows move within.
    for (QWidget* widget : wanted) {
        const bool isOtherSegment = qobject_cast<SegmentedPicker*>(widget->parentWidget()) &&
                                    !qobject_cast<QAbstractButton*>(widget)->isChecked();
        EXPECT_TRUE(reached.contains(widget) || isOtherSegment)
            << widget->metaObject()->className() << ' ' << widget->accessibleName().toStdString();
    }
    named<CompactToggleButton>("Z weighting")->setFocus();
    press(Qt::Key_Return);
    EXPECT_EQ(engine->splWeighting(), TarvaneKit::Weighting::z);
}

TEST_F(MainWindowTests, everyControlHasANameForAScreenReader) {
    start();
    for (QWidget* widget : window->findChildren<QWidget*>()) {
        if (!widget->isVisible() || (widget->focusPolicy() & Qt::TabFocus) == 0) {
            continue;
        }
        const QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(widget);
        ASSERT_NE(accessible, nullptr);
        EXPECT_FALSE(accessible->text(QAccessible::Name).isEmpty())
            << widget->metaObject()->className();
    }
}

TEST_F(MainWindowTests, aScreenReaderReadsTheLevels) {
    runWithSine(0.1);  // -20 dBFS peak is -23.01 dBFS RMS; A is 0 dB at 1 kHz (IEC 61672-1)
    QAccessibleInterface* meter = QAccessible::queryAccessibleInterface(&readout());
    EXPECT_EQ(meter->text(QAccessible::Name), QStringLiteral("SPL A Fast"));
    EXPECT_EQ(meter->text(QAccessible::Value), QStringLiteral("-23.0 dBFS"));
    ASSERT_NE(meter->textInterface(), nullptr);
    EXPECT_EQ(meter->textInterface()->text(0, -1), QStringLiteral("-23.0 dBFS"));
    EXPECT_EQ(meter->textInterface()->text(0, meter->textInterface()->characterCount()),
              QStringLiteral("-23.0 dBFS"));
    QMap<QString, QString> parts;
    for (int i = 0; i < meter->childCount(); ++i) {
        QAccessibleInterface* child = meter->child(i);
        EXPECT_EQ(meter->indexOfChild(child), i);
        parts[child->text(QAccessible::Name)] = child->text(QAccessible::Value);
    }
    EXPECT_EQ(parts[QStringLiteral("MAX")], QStringLiteral("-23.0 dBFS"));
    EXPECT_EQ(parts[QStringLiteral("Reading")], QStringLiteral("SPL A Fast  (dBFS, uncalibrated)"));
    EXPECT_EQ(parts[QStringLiteral("Peak dBFS")], QStringLiteral("-20.0 dBFS"));
    EXPECT_TRUE(parts.contains(QStringLiteral("Reset Min/Max")));
}

TEST_F(MainWindowTests, menusShowSettingsAndQuitAndSwitchTheLevelBar) {
    press(Qt::Key_Comma, Qt::ControlModifier);
    EXPECT_EQ(settingsShown, 1);
    press(Qt::Key_Q, Qt::ControlModifier);
    EXPECT_EQ(quits, 1);
    EXPECT_TRUE(readout().levelBar().has_value());
    for (QAction* action : window->findChildren<QAction*>()) {
        if (action->text() == QStringLiteral("Show Level Bar in SPL Meter")) {
            EXPECT_TRUE(action->isChecked());
            action->trigger();
        }
    }
    EXPECT_FALSE(engine->splMeterShowsLevelBar());
    settle();
    EXPECT_FALSE(readout().levelBar().has_value());
}

TEST_F(MainWindowTests, updatesAreLookedForOnlyWhereTheBuildKnowsAFeed) {
    const auto item = [](const MainWindow& in) -> QAction* {
        for (QAction* action : in.menuBar()->actions().front()->menu()->actions()) {
            if (action->text() == QStringLiteral("Check for Updates…")) {
                return action;
            }
        }
        return nullptr;
    };
    EXPECT_EQ(item(*window), nullptr);
    int checks = 0;
    const MainWindow withFeed(*engine, profiles.store,
                              AppCommands{.checkForUpdates = [&checks] { ++checks; }});
    ASSERT_NE(item(withFeed), nullptr);
    item(withFeed)->trigger();
    EXPECT_EQ(checks, 1);
}

// --- the live readout

TEST_F(MainWindowTests, theReadoutIsDrawnAnewOncePerPublicationAndOnlyWhenItChanged) {
    runWithSine(0.1);
    const int before = readout().repaintsOrdered();
    audio.feed("", {TarvaneTests::sine(1000.0, 0.01, 480)});
    tick();
    EXPECT_EQ(readout().repaintsOrdered(), before + 1);
    // Nothing was heard and no time went by: all reads the same.
    tick();
    tick();
    const int settled = readout().repaintsOrdered();
    tick();
    EXPECT_EQ(readout().repaintsOrdered(), settled);
}

TEST_F(MainWindowTests, theResetButtonClearsMinAndMax) {
    runWithSine(0.1);
    runWithSine(0.01);
    EXPECT_GT(readout().readout().maxValueDB, readout().readout().minValueDB + 10.0);
    engine->pause();
    readout().findChild<QPushButton*>()->click();
    settle();
    EXPECT_FALSE(std::isfinite(readout().readout().minValueDB));
    EXPECT_FALSE(std::isfinite(readout().readout().maxValueDB));
}

TEST_F(MainWindowTests, theLevelBarIsColouredByTheDigitalPeak) {
    runWithSine(0.2);  // -14.0 dBFS
    EXPECT_EQ(readout().levelBar()->color, green);
    runWithSine(0.3);  // -10.5 dBFS
    EXPECT_EQ(readout().levelBar()->color, yellow);
    runWithSine(0.75);  // -2.5 dBFS
    EXPECT_EQ(readout().levelBar()->color, red);
}

TEST_F(MainWindowTests, theLevelBarFollowsTheCalibration) {
    TarvaneKit::CalibrationProfile profile;
    profile.reference = TarvaneKit::ReferenceCalibration{};
    profile.reference->offsetDB = 120.0;
    engine->calibration.set(profile);
    runWithSine(0.1);
    EXPECT_EQ(readout().levelBar()->unitLabel, QStringLiteral("PEAK dB SPL"));
    EXPECT_EQ(readout().levelBar()->range, (LevelBarView::Range{60.0, 120.0}));
    EXPECT_NEAR(readout().levelBar()->valueDB, 100.0, 0.1);
    EXPECT_NEAR(readout().readout().valueDB, 97.0, 0.1);  // 120 - 20 - 10 log10(2)

    engine->splReadoutShowsDBFS.set(true);
    settle();
    EXPECT_EQ(readout().levelBar()->unitLabel, QStringLiteral("PEAK dBFS"));
    EXPECT_EQ(readout().levelBar()->range, (LevelBarView::Range{-60.0, 0.0}));
    EXPECT_NEAR(readout().readout().valueDB, -23.0, 0.1);
    EXPECT_NEAR(readout().readout().maxValueDB, -23.0, 0.1);
}

TEST_F(MainWindowTests, theLevelBarIsEmptyWhileStopped) {
    runWithSine(0.1);
    engine->stop();
    settle();
    EXPECT_EQ(readout().levelBar()->valueDB, -std::numeric_limits<double>::infinity());
    EXPECT_EQ(readout().levelBar()->markerDB, -std::numeric_limits<double>::infinity());
    EXPECT_EQ(readout().readout().spokenValue(), QStringLiteral("-23.0 dBFS"));
}

TEST_F(MainWindowTests, theLeqProgressIsShownOnlyForARunningLeq) {
    EXPECT_FALSE(readout().readout().leqElapsedFraction.has_value());
    engine->metricMode.set(MetricMode::leq);
    settle();
    EXPECT_FALSE(readout().readout().leqElapsedFraction.has_value());
    runWithSine(0.1);
    // 3 of 60 seconds
    EXPECT_NEAR(readout().readout().leqElapsedFraction.value_or(-1.0), 0.05, 1e-9);
}

TEST_F(MainWindowTests, aSilentSideShowsNoNumber) {
    audio.behaviour("").channelCount = 2;
    engine->mainInputIsStereo.set(true);
    start();
    for (int i = 0; i < 30; ++i) {
        audio.feed(
            "", {TarvaneTests::sine(1000.0, 0.1, 4800, i * 4800), std::vector<float>(4800, 0.0F)});
    }
    tick();
    settle();
    ASSERT_EQ(readout().readout().sideValuesDB.size(), 2U);
    EXPECT_NEAR(readout().readout().sideValuesDB[0], -23.0, 0.1);
    EXPECT_EQ(readout().readout().sideValuesDB[1], -std::numeric_limits<double>::infinity());
}

}  // namespace MainWindowTests
}  // namespace TarvaneApp
