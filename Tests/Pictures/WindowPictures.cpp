// Writes pictures of the windows in every state, for people to look at: run it with the folder
// to write to, on any Qt platform, with QT_SCALE_FACTOR for other scales.

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPainter>
#include <QPixmap>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QSlider>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>
#include <QToolTip>
#include <array>
#include <cmath>
#include <iostream>
#include <numbers>

#include "Calibration/MicCalFile.h"
#include "Displays/Theme.h"
#include "Engine/LiveMeterData.h"
#include "Engine/MeterEngine.h"
#include "LiveDisplays/LiveLevelHistoryGraph.h"
#include "Records/ChannelColors.h"
#include "Shell/ChannelControls/ChannelOverlayMenu.h"
#include "Shell/Controls/IconButton.h"
#include "Shell/Controls/IconMenuButton.h"
#include "Shell/Controls/PopoverPresentationState.h"
#include "Shell/Help/AboutWindowView.h"
#include "Shell/Help/HelpBook.h"
#include "Shell/Help/HelpWindowView.h"
#include "Shell/Help/ReleaseNotesWindowView.h"
#include "Shell/Panels/LevelHistoryChannelMenu.h"
#include "Shell/Panels/LevelHistoryPanelView.h"
#include "Shell/Panels/RTAOverlayMenu.h"
#include "Shell/Panels/RTAPanelView.h"
#include "Shell/Panels/SPLMeterPanelView.h"
#include "Shell/Panels/SpectrogramPanelView.h"
#include "Shell/Preferences/AudioSettingsView.h"
#include "Shell/Preferences/ChannelSection.h"
#include "Shell/Preferences/PreferencesWindow.h"
#include "Shell/TarvaneApplication.h"
#include "Shell/Windows/ChannelWindowLayoutControls.h"
#include "Shell/Windows/ChannelWindowLayoutMenu.h"
#include "Shell/Windows/ChannelWindowView.h"
#include "Shell/Windows/MainWindow.h"
#include "Shell/Windows/StageWindow.h"
#include "Shell/Windows/StandaloneModuleWindow.h"
#include "Shell/Windows/TrayIcon.h"
#include "Support/FakeAudioSystem.h"
#include "Support/ManualTime.h"
#include "Support/MemoryStore.h"
#include "TarvaneApp/Profiles/TestProfiles.h"

namespace {

using TarvaneApp::MeterEngine;

class Stage {
  public:
    explicit Stage(QString folder) : folder_(std::move(folder)) {
        audio.plugIn({.id = 7, .uid = "mic", .name = "Measurement Microphone", .channelCount = 2});
        audio.setDefaultInput(7);
        audio.behaviour("").channelCount = 2;
        window.show();
        settle();
    }

    static void settle() {
        for (int i = 0; i < 5; ++i) {
            QTest::qWait(10);
        }
    }

    void start() {
        engine.start();
        while (engine.isStarting()) {
            settle();
        }
    }

    // `seconds` of a 1 kHz sine of that amplitude.
    void play(double seconds, double amplitude) {
        std::vector<float> block(480);
        for (int n = 0; n < static_cast<int>(seconds * 100.0); ++n) {
            for (std::size_t i = 0; i < block.size(); ++i) {
                block[i] = static_cast<float>(
                    amplitude * std::sin(2.0 * std::numbers::pi * static_cast<double>(i) / 48.0));
            }
            audio.feed("", {block, block});
            clock.advance(0.01);
            if (n % 5 == 0) {
                timer.fire();
                QTest::qWait(2);
            }
        }
        settle();
    }

    void shoot(const QString& name, QWidget& widget) const {
        settle();
        save(name, widget);
    }

    // As it is now: a tooltip goes with the next event.
    void save(const QString& name, QWidget& widget) const {
        const QString path = QDir(folder_).filePath(name + QStringLiteral(".png"));
        if (!widget.grab().save(path)) {
            std::cerr << "can't write " << path.toStdString() << '\n';
        }
    }

    void shootSizes(const QString& state) {
        for (const QSize size : {QSize(900, 260), QSize(900, 430), QSize(1280, 720),
                                 QSize(1920, 1080), QSize(3840, 2160)}) {
            window.resize(size);
            shoot(QStringLiteral("%1-%2x%3").arg(state).arg(size.width()).arg(size.height()),
                  window);
        }
        window.resize(1000, 460);
    }

    TarvaneTests::FakeAudioSystem audio;
    TarvaneTests::MemoryStore store;
    TarvaneTests::ManualClock clock;
    TarvaneTests::ManualTickTimer timer;
    MeterEngine engine{{.audio = audio, .store = store, .clock = clock, .tickTimer = timer}};
    TarvaneTests::TestProfiles profiles{store, clock};
    TarvaneApp::PreferencesWindow::Environment preferences() {
        return {.engine = engine,
                .profiles = profiles.store,
                .store = store,
                .openChannelWindow = [](const auto&) {}};
    }
    TarvaneApp::MainWindow window{engine, profiles.store, {.showSettings = [] {}, .quit = [] {}}};

  private:
    QString folder_;
};

TarvaneKit::CalibrationProfile calibrated() {
    TarvaneKit::CalibrationProfile profile;
    profile.reference = TarvaneKit::ReferenceCalibration{.offsetDB = 124.3,
                                                         .referenceDeviceUID = {},
                                                         .referenceDeviceName = {},
                                                         .calibratedAt = {},
                                                         .inputGainDB = {}};
    return profile;
}

// The meter alone and among the graphs, measuring loudness.
void shootLoudness(Stage& stage) {
    using TarvaneApp::LayoutPreset;
    stage.engine.mainInputMeasuresLoudness.set(true);
    stage.engine.applyLayoutPreset(LayoutPreset::splMeterOnly);
    stage.shootSizes("loudness-empty");
    stage.play(4.0, 0.1);
    stage.shootSizes("loudness");
    stage.engine.loudnessTarget.set(TarvaneApp::LoudnessTarget::presets()[1]);
    stage.play(0.5, 1.0);
    stage.shootSizes("loudness-over");
    stage.engine.applyLayoutPreset(LayoutPreset::allInMainWindow);
    stage.shootSizes("loudness-all");
    stage.engine.splReadoutShowsClock.set(true);
    stage.shootSizes("clock-all");
    stage.engine.applyLayoutPreset(LayoutPreset::splMeterOnly);
    stage.shootSizes("clock");
    stage.engine.splReadoutShowsClock.set(false);
    TarvaneApp::SPLMeterPanelView panel(stage.engine, std::nullopt);
    for (const bool isLoudness : {true, false}) {
        stage.engine.mainInputMeasuresLoudness.set(isLoudness);
        for (const QSize size : {QSize(320, 200), QSize(360, 240), QSize(480, 260)}) {
            panel.resize(size);
            panel.show();
            stage.shoot(QStringLiteral("meter-%1-%2")
                            .arg(isLoudness ? QStringLiteral("loudness") : QStringLiteral("level"))
                            .arg(size.width()),
                        panel);
        }
    }
    stage.engine.applyLayoutPreset(LayoutPreset::allInMainWindow);
    stage.engine.loudnessTarget.set(TarvaneApp::LoudnessTarget::presets()[0]);
}

void shootAll(Stage& stage) {
    using TarvaneApp::MetricMode;
    stage.shootSizes("idle");
    stage.audio.behaviour("").opensSlowly = true;
    stage.engine.start();
    stage.shoot("starting", stage.window);
    stage.audio.open("");
    while (stage.engine.isStarting()) {
        Stage::settle();
    }
    stage.play(1.0, 0.1);
    stage.play(1.5, 0.03);
    stage.shootSizes("running-dbfs");
    stage.engine.calibration.set(calibrated());
    stage.play(0.5, 0.03);
    stage.engine.resetMinMax();
    stage.play(1.5, 0.12);
    stage.shootSizes("running-spl");
    stage.engine.pause();
    stage.shoot("paused", stage.window);
    stage.engine.resume();
    stage.play(0.3, 1.0);
    stage.shootSizes("clipping");
    stage.play(2.5, 0.12);
    stage.shoot("latched", stage.window);
    stage.engine.updateDisplay(TarvaneKit::UUID::main(),
                               [](auto& display) { display.metricMode = MetricMode::leq; });
    stage.play(3.0, 0.12);
    stage.shoot("leq", stage.window);
    stage.engine.updateDisplay(TarvaneKit::UUID::main(),
                               [](auto& display) { display.metricMode = MetricMode::peak; });
    stage.engine.mainInputIsStereo.set(true);
    stage.engine.stop();
    stage.start();
    stage.play(1.0, 0.12);
    stage.shootSizes("stereo-peak");
    shootLoudness(stage);
    stage.engine.stop();
    stage.audio.behaviour("").startError = TarvaneKit::AudioIOError::noInputAvailable();
    stage.start();
    Stage::settle();
    if (auto* box = stage.window.findChild<QMessageBox*>()) {
        stage.shoot("failed-alert", *box);
        box->accept();
    }
    stage.shoot("failed", stage.window);
    stage.audio.behaviour("").startError = std::nullopt;
    QTest::keyClick(&stage.window, Qt::Key_Tab);
    stage.shoot("focus-1", stage.window);
    QTest::keyClick(&stage.window, Qt::Key_Tab);
    stage.shoot("focus-2", stage.window);
}

// Every tab of the settings in a window as it first opens, in the smallest and in a wide one.
void shootPreferences(Stage& stage) {
    using namespace TarvaneApp;
    PreferencesWindow preferences(stage.preferences());
    preferences.show();
    auto& tabs = *preferences.findChild<QTabWidget*>();
    const auto shootTab = [&](int tab, const QString& state) {
        tabs.setCurrentIndex(tab);
        const QString name = QStringLiteral("preferences-") + tabs.tabText(tab).toLower() + state;
        for (const QSize size : {QSize(520, 360), QSize(660, 540), QSize(1400, 1000)}) {
            preferences.resize(size);
            stage.shoot(QStringLiteral("%1-%2").arg(name).arg(size.width()), preferences);
        }
    };
    for (int tab = 1; tab < tabs.count(); ++tab) {
        shootTab(tab, {});
    }
    stage.engine.spectrogramColorPresets.set(
        {{"Dark Room", defaultSpectrogramColorStops()},
         {"A ramp with a name that is far too long for its place in a narrow window",
          {defaultSpectrogramColorStops()[2], defaultSpectrogramColorStops()[6]}}});
    stage.engine.spectrogramColorStops.set({defaultSpectrogramColorStops()[1]});
    shootTab(1, QStringLiteral("-presets"));
    stage.engine.spectrogramColorStops.set(defaultSpectrogramColorStops());
    LoudnessTarget target = LoudnessTarget::presets()[0];
    target.toleranceLU = 2.5;
    stage.engine.loudnessTarget.set(target.namedByItsNumbers());
    shootTab(3, QStringLiteral("-custom"));
    shootTab(4, QStringLiteral("-custom"));
    preferences.resize(660, 540);
    preferences.activateWindow();
    tabs.tabBar()->setFocus();
    stage.shoot(QStringLiteral("preferences-focus-tab"), preferences);
    QTest::keyClick(tabs.tabBar(), Qt::Key_Tab);
    stage.shoot(QStringLiteral("preferences-focus-row"), preferences);
}

void shootSizesOf(Stage& stage, QWidget& window, const QString& name,
                  std::initializer_list<QSize> sizes) {
    for (const QSize size : sizes) {
        window.resize(size);
        stage.play(0.1, 0.12);
        stage.shoot(QStringLiteral("%1-%2x%3").arg(name).arg(size.width()).arg(size.height()),
                    window);
    }
}

// Modules and channels in windows of their own, and the menus that lead there.
void shootWindows(Stage& stage) {
    using namespace TarvaneApp;
    stage.window.resize(1200, 820);
    stage.engine.selectedDeviceUID.set(std::nullopt);
    stage.engine.mainInputIsStereo.set(false);
    stage.engine.mainInputIsDigital.set(false);
    TarvaneApp::ChannelConfig channel;
    channel.name = "Balcony Left";
    channel.channelIndex = 1;
    channel.color = {0.35, 0.75, 1.0, 0.95};
    stage.engine.extraChannels.set({channel});
    {
        ChannelWindowView stopped(stage.engine, channel.id);
        stopped.show();
        stage.shoot(QStringLiteral("channel-stopped"), stopped);
    }
    stage.start();
    stage.play(2.0, 0.12);
    stage.play(2.0, 0.05);
    stage.play(1.0, 0.3);
    stage.shoot(QStringLiteral("main-with-channels"), stage.window);
    for (auto* button : stage.window.findChildren<IconMenuButton*>()) {
        if (button->isVisible()) {
            button->click();
            stage.shoot(QStringLiteral("menu-") + button->accessibleName(), button->menu());
            const auto submenus = button->menu().findChildren<QMenu*>();
            if (!submenus.isEmpty()) {
                submenus[1]->popup(QPoint(0, 0));
                stage.shoot(QStringLiteral("menu-") + button->accessibleName() + u'2',
                            *submenus[1]);
                submenus[1]->close();
            }
            button->menu().close();
        }
    }
    for (const StandaloneModule module : standaloneModules) {
        placement(stage.engine, module).set(ModulePlacement::separateWindow);
        auto* window = new StandaloneModuleWindow(module, stage.engine);
        window->show();
        shootSizesOf(stage, *window, sceneIdentifier(module),
                     {minimumWindowSize(module), QSize(700, 420), QSize(1920, 1080)});
        placement(stage.engine, module).set(ModulePlacement::mainWindow);
    }
    ChannelWindowView window(stage.engine, channel.id);
    window.setAttribute(Qt::WA_DeleteOnClose, false);
    window.show();
    shootSizesOf(stage, window, QStringLiteral("channel-all"),
                 {QSize(360, 200), QSize(480, 420), QSize(960, 820), QSize(1920, 1080)});
    stage.engine.updateWindowLayout(channel.id, [](ChannelWindowLayout& layout) {
        layout.graphOrientation = GraphOrientation::sideBySide;
        layout.levelHistoryPosition = LevelHistoryPosition::belowGraphs;
    });
    shootSizesOf(stage, window, QStringLiteral("channel-beside"),
                 {QSize(640, 480), QSize(1400, 900)});
    window.resize(960, 820);
    auto* menu = window.findChild<ChannelWindowLayoutMenu*>();
    menu->click();
    stage.shoot(QStringLiteral("channel-layout-controls"),
                *menu->findChild<ChannelWindowLayoutControls*>()->window());
    menu->popover().setPresented(false);
    stage.engine.updateWindowLayout(channel.id, [](ChannelWindowLayout& layout) {
        layout.showsRTA = layout.showsSpectrogram = layout.showsLevelHistory = false;
    });
    const auto meterSizes = {QSize(360, 200), QSize(360, 640), QSize(480, 300), QSize(960, 620)};
    shootSizesOf(stage, window, QStringLiteral("channel-meter"), meterSizes);
    stage.engine.setMeasuresLoudness(true, channel.id);
    stage.play(1.0, 1.0);
    shootSizesOf(stage, window, QStringLiteral("channel-loudness"), meterSizes);
    stage.engine.setMeasuresLoudness(false, channel.id);
    stage.engine.stop();
    stage.engine.metricMode.set(MetricMode::leq);
    stage.engine.updateChannel(channel.id, [](ChannelConfig& config) {
        config.isStereo = true;
        config.channelIndex = 0;
    });
    stage.start();
    stage.play(3.0, 0.1);
    shootSizesOf(stage, window, QStringLiteral("channel-stereo-leq"), meterSizes);
    stage.engine.updateWindowLayout(channel.id, [](ChannelWindowLayout& layout) {
        layout.showsSPLMeter = false;
        layout.showsRTA = layout.showsSpectrogram = true;
    });
    shootSizesOf(stage, window, QStringLiteral("channel-graphs"),
                 {QSize(360, 200), QSize(640, 300)});
    stage.engine.updateWindowLayout(channel.id, [](ChannelWindowLayout& layout) {
        layout.graphOrientation = GraphOrientation::stacked;
    });
    shootSizesOf(stage, window, QStringLiteral("channel-graphs-stacked"),
                 {QSize(360, 200), QSize(640, 300), QSize(640, 340)});
    stage.engine.updateWindowLayout(channel.id, [](ChannelWindowLayout& layout) {
        layout.showsSpectrogram = false;
        layout.showsLevelHistory = true;
    });
    shootSizesOf(stage, window, QStringLiteral("channel-rta-history"), {QSize(800, 500)});
    stage.engine.removeChannel(channel.id);
    stage.shoot(QStringLiteral("channel-removed"), window);
}

// Under a button of a panel's header, opened as a user does.
void shootPopover(Stage& stage, QWidget& panel, const QString& name) {
    for (auto* button : panel.findChildren<TarvaneApp::IconButton*>()) {
        if (button->symbol() == QStringLiteral("slider.horizontal.3")) {
            button->click();
            if (QWidget* popover = QApplication::activePopupWidget()) {
                stage.shoot(name, *popover);
                QTest::keyClick(popover, Qt::Key_Tab);
                QTest::keyClick(popover, Qt::Key_Tab);
                stage.shoot(name + QStringLiteral("-focus"), *popover);
                popover->close();
            }
        }
    }
}

// The headers of the panels with all their controls, what opens under them, and the graphs with
// overlays and the keyboard's focus.
void shootPanels(Stage& stage) {
    using namespace TarvaneApp;
    const auto id = TarvaneKit::UUID::main();
    ChannelConfig stageMic;
    stageMic.name = "Stage Left";
    stageMic.color = channelColors[0];
    ChannelConfig balcony;
    balcony.name = "Balcony";
    balcony.channelIndex = 1;
    balcony.color = channelColors[1];
    stage.engine.extraChannels.set({stageMic, balcony});
    stage.engine.metricMode.set(MetricMode::spl);
    stage.engine.selectedDeviceUID.set(std::nullopt);
    stage.engine.mainInputIsStereo.set(false);
    stage.start();
    stage.engine.resetPeakHold();
    stage.play(8.0, 0.12);
    stage.play(8.0, 0.03);
    stage.engine.rtaOverlayChannelIDs.set({stageMic.id, balcony.id});
    stage.engine.levelHistoryOverlayChannelIDs.set({stageMic.id});
    for (const QSize size : {QSize(900, 770), QSize(1280, 900), QSize(1920, 1080)}) {
        stage.window.resize(size);
        stage.play(0.2, 0.05);
        stage.shoot(QStringLiteral("panels-%1").arg(size.width()), stage.window);
    }
    stage.window.resize(900, 770);
    stage.engine.graphOrientation.set(GraphOrientation::sideBySide);
    stage.play(0.2, 0.05);
    stage.shoot(QStringLiteral("panels-beside"), stage.window);
    stage.engine.graphOrientation.set(GraphOrientation::stacked);
    stage.window.resize(1200, 900);
    auto& rta = *stage.window.findChild<RTAPanelView*>();
    shootPopover(stage, rta, QStringLiteral("popover-rta"));
    stage.engine.updateDisplay(id, [](auto& display) {
        display.targetCurveName.reset();
        display.showsPeakHold = false;
    });
    stage.engine.setRingOutEnabled(false, id);
    shootPopover(stage, rta, QStringLiteral("popover-rta-off"));
    for (auto* menu : stage.window.findChildren<ChannelOverlayMenu*>()) {
        menu->click();
        const bool isRTA = qobject_cast<RTAOverlayMenu*>(menu) != nullptr;
        stage.shoot(QStringLiteral("menu-overlays-") +
                        (isRTA ? QStringLiteral("rta") : QStringLiteral("history")),
                    menu->menu());
        menu->menu().close();
    }
    auto* channels = stage.window.findChild<LevelHistoryChannelMenu*>();
    channels->menu()->popup(channels->mapToGlobal(QPoint(0, channels->height())));
    stage.shoot(QStringLiteral("menu-history-channel"), *channels->menu());
    channels->menu()->close();
    stage.engine.setMeasuresLoudness(true, id);
    stage.engine.levelHistoryShowsMomentary.set(true);
    stage.engine.stop();
    stage.start();
    stage.play(15.0, 0.1);
    for (const int width : {900, 1200}) {
        stage.window.resize(width, 900);
        stage.shoot(QStringLiteral("panels-loudness-%1").arg(width), stage.window);
    }
    auto* graph = stage.window.findChild<LiveLevelHistoryGraph*>();
    graph->showMoment(8.0);
    graph->setFocus();
    QTest::keyClick(graph, Qt::Key_Up);
    stage.shoot(QStringLiteral("panels-history-focus"), stage.window);
    for (const QSize size : {QSize(480, 200), QSize(360, 200), QSize(700, 300)}) {
        LevelHistoryPanelView history(stage.engine, std::nullopt);
        history.resize(size);
        history.show();
        stage.shoot(QStringLiteral("history-%1").arg(size.width()), history);
        RTAPanelView analyzer(stage.engine, std::nullopt, nullptr);
        analyzer.resize(size);
        analyzer.show();
        stage.shoot(QStringLiteral("rta-%1").arg(size.width()), analyzer);
        SpectrogramPanelView spectrogram(stage.engine, std::nullopt, nullptr);
        spectrogram.resize(size);
        spectrogram.show();
        shootPopover(stage, spectrogram, QStringLiteral("popover-spectrogram"));
        stage.shoot(QStringLiteral("spectrogram-%1").arg(size.width()), spectrogram);
    }
}

// The whole form at its natural height, and what of it is seen in windows of some sizes.
void shootAudioForm(Stage& stage, TarvaneApp::PreferencesWindow& preferences, const QString& name) {
    for (const QSize size : {QSize(520, 360), QSize(660, 540), QSize(1000, 700)}) {
        preferences.resize(size);
        stage.shoot(QStringLiteral("audio-%1-%2").arg(name).arg(size.width()), preferences);
        auto* form = preferences.findChild<TarvaneApp::AudioSettingsView*>();
        stage.shoot(QStringLiteral("audio-%1-whole-%2").arg(name).arg(size.width()), *form);
    }
}

TarvaneApp::ChannelSection& audioSection(TarvaneApp::PreferencesWindow& preferences,
                                         const TarvaneKit::UUID& id) {
    for (auto* section : preferences.findChildren<TarvaneApp::ChannelSection*>()) {
        if (section->channelID() == id) {
            return *section;
        }
    }
    return *preferences.findChild<TarvaneApp::ChannelSection*>();
}

// The audio tab of the settings window: every state of calibration, gain and source.
void shootAudio(Stage& stage) {
    using namespace TarvaneApp;
    const auto main = TarvaneKit::UUID::main();
    PreferencesWindow preferences(stage.preferences());
    preferences.show();
    stage.engine.refreshDevices();
    shootAudioForm(stage, preferences, QStringLiteral("first"));

    TarvaneTests::FakeControls controls;
    controls.masterGainDB = -6.0;
    stage.audio.setControls(7, controls);
    stage.engine.refreshDevices();
    TarvaneKit::CalibrationProfile profile;
    profile.micCalFile =
        TarvaneKit::MicCalFile::parse("\"Sens Factor =-30.5dB, SERNO: 7000123\"\n20 -1\n20000 2\n");
    stage.engine.calibration.set(profile);
    stage.engine.updateDisplay(main, [](auto& display) { display.showsPeakHold = false; });
    stage.start();
    stage.play(4.0, 0.12);
    shootAudioForm(stage, preferences, QStringLiteral("file"));
    stage.engine.calibrateReference(94.0, main);
    controls.masterGainDB = -9.0;
    stage.audio.setControls(7, controls);
    stage.play(1.0, 0.12);
    stage.play(0.3, 0.5);
    stage.engine.mainInputRightChannelIndex.set(1);
    shootAudioForm(stage, preferences, QStringLiteral("tone"));
    stage.play(0.5, 1.0);
    shootAudioForm(stage, preferences, QStringLiteral("clipping"));
    stage.engine.selectedDeviceUID.set("gone");
    shootAudioForm(stage, preferences, QStringLiteral("unavailable"));
    stage.engine.selectedDeviceUID.set(TarvaneKit::systemOutputUID);
    shootAudioForm(stage, preferences, QStringLiteral("system-output"));
    stage.engine.selectedDeviceUID.set(std::nullopt);
    stage.engine.mainInputIsStereo.set(false);
    stage.engine.setDigitalSource(true, main);
    shootAudioForm(stage, preferences, QStringLiteral("digital"));
    stage.engine.setDigitalSource(false, main);

    audioSection(preferences, main).setExpanded(false);
    std::vector<ChannelConfig> channels;
    for (const char* name : {"Stage Left", "Stage Right", "Front of House", "Balcony",
                             "Under Balcony Delay, Row 24 to 31", "Console L+R", "Playback"}) {
        ChannelConfig channel;
        channel.name = name;
        channel.color = channelColors[channels.size() % channelColors.size()];
        channel.channelIndex = static_cast<int>(channels.size()) % 2;
        channel.isDigital = channels.size() > 4;
        channel.isEnabled = channels.size() != 3;
        channels.push_back(channel);
    }
    channels[1].calibration = stage.engine.calibration();
    channels[2].calibration = profile;
    channels[6].deviceUID = TarvaneKit::systemOutputUID;
    stage.engine.extraChannels.set(channels);
    shootAudioForm(stage, preferences, QStringLiteral("eight-folded"));
    for (const ChannelConfig& channel : channels) {
        audioSection(preferences, channel.id).setExpanded(true);
    }
    shootAudioForm(stage, preferences, QStringLiteral("eight-open"));
    stage.engine.stop();
    stage.engine.extraChannels.set({});
    stage.engine.calibration.set({});
}

// The help at several topics and sizes, with its search, what is new, and About.
void shootHelp(Stage& stage) {
    using namespace TarvaneApp;
    const QString site = QStringLiteral("https://example.org/tarvane");
    HelpWindowView help(stage.store, site);
    help.setAttribute(Qt::WA_DeleteOnClose, false);
    help.show();
    for (const HelpTopic& topic : allHelpTopics()) {
        help.resize(920, 1500);
        help.navigation().selection.set(topic.title);
        stage.shoot(
            QStringLiteral("help-") + QString::fromStdString(topic.title).replace(u' ', u'-'),
            help);
    }
    for (const char* title : {"Getting Started", "Keyboard Shortcuts"}) {
        help.navigation().selection.set(title);
        for (const QSize size : {QSize(640, 420), QSize(920, 680), QSize(1600, 900)}) {
            help.resize(size);
            stage.shoot(QStringLiteral("help-%1-%2").arg(QLatin1String(title)).arg(size.width()),
                        help);
        }
    }
    help.resize(920, 680);
    help.activateWindow();
    auto& search = *help.findChild<QLineEdit*>();
    search.setFocus();
    QTest::keyClicks(&search, QStringLiteral("gain"));
    stage.shoot(QStringLiteral("help-search"), help);
    QTest::keyClick(&search, Qt::Key_Tab);
    QTest::keyClick(help.focusWidget(), Qt::Key_Tab);
    stage.shoot(QStringLiteral("help-focus-page"), help);
    search.setText(QStringLiteral("cheese"));
    help.navigation().selection.set(std::nullopt);
    stage.shoot(QStringLiteral("help-nothing"), help);
    ReleaseNotesWindowView notes;
    notes.setAttribute(Qt::WA_DeleteOnClose, false);
    notes.show();
    for (const QSize size : {QSize(420, 360), QSize(620, 1100), QSize(1400, 700)}) {
        notes.resize(size);
        stage.shoot(QStringLiteral("help-release-notes-%1").arg(size.width()), notes);
    }
    AboutWindowView about({.version = QStringLiteral("1.3.1"),
                           .legalLine = legalLine(QStringLiteral("The Tarvane developers")),
                           .makerSite = site});
    about.setAttribute(Qt::WA_DeleteOnClose, false);
    about.show();
    stage.shoot(QStringLiteral("help-about"), about);
}

// What stands on the desktop beside the windows' own content: what to do first, what is metered,
// the level on a whole screen, the tray's signs.
void shootDesktop(Stage& stage) {
    using namespace TarvaneApp;
    stage.window.resize(1200, 820);
    stage.shoot(QStringLiteral("desktop-idle"), stage.window);
    stage.engine.selectedDeviceUID.set("gone");
    stage.shoot(QStringLiteral("desktop-chosen-device-gone"), stage.window);
    stage.window.resize(900, 820);
    stage.shoot(QStringLiteral("desktop-chosen-device-gone-900"), stage.window);
    stage.audio.setDefaultInput(std::nullopt);
    stage.engine.refreshDevices();
    stage.shoot(QStringLiteral("desktop-no-device"), stage.window);
    stage.engine.applyLayoutPreset(LayoutPreset::splMeterOnly);
    stage.window.resize(900, 300);
    stage.shoot(QStringLiteral("desktop-no-device-meter"), stage.window);
    stage.engine.applyLayoutPreset(LayoutPreset::allInMainWindow);
    stage.audio.setDefaultInput(7);
    stage.engine.selectedDeviceUID.set(std::nullopt);
    stage.engine.refreshDevices();
    ChannelConfig channel;
    channel.name = "Balcony";
    channel.color = channelColors[1];
    stage.engine.extraChannels.set({channel});
    stage.window.resize(1200, 820);
    stage.start();
    stage.play(1.0, 0.12);
    stage.shoot(QStringLiteral("desktop-running"), stage.window);
    StageWindow whole(stage.engine, channel.id);
    whole.setAttribute(Qt::WA_DeleteOnClose, false);
    whole.show();
    for (const QSize size : {QSize(1920, 1080), QSize(1080, 1920), QSize(800, 600)}) {
        whole.resize(size);
        stage.play(0.1, 0.12);
        stage.shoot(QStringLiteral("desktop-stage-%1").arg(size.width()), whole);
    }
    stage.engine.pause();
    stage.shoot(QStringLiteral("desktop-paused"), stage.window);
    stage.shoot(QStringLiteral("desktop-stage-paused"), whole);
    stage.engine.stop();
    stage.engine.extraChannels.set({});

    constexpr std::array kinds{TrayState::Kind::idle, TrayState::Kind::running,
                               TrayState::Kind::paused, TrayState::Kind::clip,
                               TrayState::Kind::ring};
    constexpr int cell = 72;
    QLabel board;
    QPixmap signs(cell * static_cast<int>(kinds.size()), 3 * cell);
    signs.fill(QColor(70, 74, 82));
    QPainter painter(&signs);
    for (std::size_t i = 0; i < kinds.size(); ++i) {
        int y = 4;
        for (const int size : {16, 22, 32, 64}) {
            painter.drawPixmap(cell * static_cast<int>(i) + 4, y,
                               TrayIcon::iconOf(kinds.at(i)).pixmap(size));
            y += size + 8;
        }
    }
    painter.end();
    board.setPixmap(signs);
    stage.shoot(QStringLiteral("desktop-tray"), board);
}

// The main window and the smallest channel window, as users have them on screens of all sizes.
void shootWindowSizes(Stage& stage) {
    using namespace TarvaneApp;
    ChannelConfig channel;
    channel.name = "Balcony Left";
    channel.color = channelColors[1];
    stage.engine.extraChannels.set({channel});
    stage.engine.updateDisplay(TarvaneKit::UUID::main(),
                               [](auto& display) { display.showsPeakHold = true; });
    stage.start();
    stage.play(6.0, 0.12);
    shootSizesOf(stage, stage.window, QStringLiteral("sizes-main"),
                 {QSize(900, 700), QSize(1400, 900), QSize(1920, 1080), QSize(3840, 2160)});
    ChannelWindowView window(stage.engine, channel.id);
    window.setAttribute(Qt::WA_DeleteOnClose, false);
    window.show();
    shootSizesOf(stage, window, QStringLiteral("sizes-channel"), {QSize(360, 200)});
    for (const int width : {320, 360, 480, 600, 700, 900}) {
        for (const bool isLoudness : {false, true}) {
            stage.engine.mainInputMeasuresLoudness.set(isLoudness);
            SPLMeterPanelView meter(stage.engine, std::nullopt);
            meter.resize(width, 220);
            meter.show();
            stage.shoot(QStringLiteral("sizes-meter-%1-%2")
                            .arg(isLoudness ? QStringLiteral("loudness") : QStringLiteral("level"))
                            .arg(width),
                        meter);
        }
    }
    stage.engine.mainInputMeasuresLoudness.set(false);
    stage.engine.stop();
    stage.engine.extraChannels.set({});
}

// The toolkit's controls in every state, beside each other.
void shootControls(Stage& stage) {
    QWidget board;
    auto* rows = new QFormLayout(&board);
    const auto add = [&](const QString& label, auto make) {
        auto* holder = new QWidget(&board);
        auto* row = new QHBoxLayout(holder);
        for (const char* state : {"", "hovered", "disabled"}) {
            QWidget* control = make(holder);
            control->setAttribute(Qt::WA_UnderMouse, QLatin1String(state) == "hovered");
            control->setEnabled(QLatin1String(state) != "disabled");
            row->addWidget(control);
        }
        rows->addRow(label, holder);
    };
    add(QStringLiteral("Button"), [](QWidget* parent) { return new QPushButton("Apply", parent); });
    add(QStringLiteral("Proposed"), [](QWidget* parent) {
        auto* button = new QPushButton(QStringLiteral("Save"), parent);
        button->setDefault(true);
        return button;
    });
    add(QStringLiteral("Flat"), [](QWidget* parent) {
        auto* button = new QPushButton(QStringLiteral("Reset Peak Hold"), parent);
        button->setFlat(true);
        return button;
    });
    add(QStringLiteral("Icon"), [](QWidget* parent) {
        auto* button = new TarvaneApp::IconButton(TarvaneApp::Theme::Symbol::options, parent);
        button->setSymbol(QStringLiteral("slider.horizontal.3"), TarvaneApp::Theme::axisText);
        return button;
    });
    add(QStringLiteral("Check box"), [](QWidget* parent) {
        auto* box = new QCheckBox(QStringLiteral("Stereo pair"), parent);
        box->setChecked(true);
        return box;
    });
    add(QStringLiteral("Radio button"), [](QWidget* parent) {
        auto* button = new QRadioButton(QStringLiteral("Left"), parent);
        button->setAutoExclusive(false);
        button->setChecked(true);
        return button;
    });
    add(QStringLiteral("Picker"), [](QWidget* parent) {
        auto* picker = new QComboBox(parent);
        picker->addItems({QStringLiteral("1/3 Octave"), QStringLiteral("1/6 Octave")});
        return picker;
    });
    add(QStringLiteral("Text"),
        [](QWidget* parent) { return new QLineEdit(QStringLiteral("Balcony"), parent); });
    add(QStringLiteral("Number"), [](QWidget* parent) { return new QDoubleSpinBox(parent); });
    add(QStringLiteral("Slider"), [](QWidget* parent) {
        auto* slider = new QSlider(Qt::Horizontal, parent);
        slider->setValue(40);
        return slider;
    });
    add(QStringLiteral("Scroll bar"), [](QWidget* parent) {
        auto* bar = new QScrollBar(Qt::Horizontal, parent);
        bar->setValue(40);
        return bar;
    });
    board.show();
    board.activateWindow();
    stage.shoot(QStringLiteral("controls"), board);
    for (auto* control : {static_cast<QWidget*>(board.findChild<QSlider*>()),
                          static_cast<QWidget*>(board.findChild<QLineEdit*>()),
                          static_cast<QWidget*>(board.findChild<QCheckBox*>()),
                          static_cast<QWidget*>(board.findChild<QRadioButton*>())}) {
        control->setFocus(Qt::TabFocusReason);
        stage.shoot(
            QStringLiteral("controls-focus-") + QLatin1String(control->metaObject()->className()),
            board);
    }
    board.findChild<QLineEdit*>()->setFocus();
    board.findChild<QLineEdit*>()->selectAll();
    stage.shoot(QStringLiteral("controls-selection"), board);
    auto* picker = board.findChild<QComboBox*>();
    picker->showPopup();
    stage.shoot(QStringLiteral("controls-list"), *QApplication::activePopupWidget());
    picker->hidePopup();
    QToolTip::showText(QPoint(10, 10),
                       QStringLiteral("Choose where each module goes and how the main window is "
                                      "arranged"),
                       &board);
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window->inherits("QTipLabel")) {
            stage.save(QStringLiteral("controls-tooltip"), *window);
            break;
        }
    }
    QToolTip::hideText();
    for (QAction* menu : stage.window.menuBar()->actions()) {
        menu->menu()->popup(QPoint(0, 0));
        menu->menu()->setActiveAction(menu->menu()->actions().front());
        stage.shoot(QStringLiteral("controls-menu-") + menu->text().remove(u'&'), *menu->menu());
        menu->menu()->close();
    }
}

}  // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    if (argc < 2) {
        std::cerr << "usage: TarvaneWindowPictures <folder> "
                     "[main|windows|panels|preferences|audio|help|desktop|sizes|controls…]\n";
        return 2;
    }
    const QStringList sets = QApplication::arguments().mid(2);
    TarvaneApp::TarvaneApplication::introduce();
    const QString folder = QString::fromLocal8Bit(argv[1]);
    QDir().mkpath(folder);
    Stage stage(folder);
    for (const auto& [name, shoot] :
         {std::pair("main", &shootAll), std::pair("windows", &shootWindows),
          std::pair("panels", &shootPanels), std::pair("preferences", &shootPreferences),
          std::pair("audio", &shootAudio), std::pair("help", &shootHelp),
          std::pair("desktop", &shootDesktop), std::pair("sizes", &shootWindowSizes),
          std::pair("controls", &shootControls)}) {
        if (sets.isEmpty() || sets.contains(QLatin1String(name))) {
            shoot(stage);
        }
    }
    return 0;
}
