#include <gtest/gtest.h>

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>

#include "Shell/Preferences/AudioSettingsView.h"
#include "Shell/Preferences/DeviceSourcePicker.h"
#include "Shell/Preferences/InputChannelPicker.h"
#include "Shell/Preferences/PreferencesWindow.h"
#include "TarvaneApp/Engine/EngineFixture.h"
#include "TarvaneApp/Profiles/TestProfiles.h"

namespace TarvaneApp {
namespace {

class PreferencesTests : public TarvaneTests::EngineFixture {
  protected:
    PreferencesTests() {
        window = std::make_unique<PreferencesWindow>(*engine, profiles.store, store);
        window->show();
        settle();
    }
    ~PreferencesTests() override { window.reset(); }

    QStringList entries(const QComboBox& combo) {
        QStringList texts;
        for (int i = 0; i < combo.count(); ++i) {
            texts.append(combo.itemText(i));
        }
        return texts;
    }
    void pick(QComboBox& combo, const char* text) {
        const int index = combo.findText(QLatin1String(text));
        ASSERT_GE(index, 0);
        combo.setCurrentIndex(index);
        Q_EMIT combo.activated(index);
    }
    QPushButton* button(const char* text) {
        for (QPushButton* button : window->findChildren<QPushButton*>()) {
            if (button->text() == QLatin1String(text)) {
                return button;
            }
        }
        return nullptr;
    }
    DeviceSourcePicker& devices() { return *window->findChild<DeviceSourcePicker*>(); }
    InputChannelPicker& input() { return *window->findChildren<InputChannelPicker*>()[0]; }
    InputChannelPicker& rightInput() { return *window->findChildren<InputChannelPicker*>()[1]; }

    TarvaneTests::TestProfiles profiles{store, clock};
    std::unique_ptr<PreferencesWindow> window;
};

TEST_F(PreferencesTests, listTheDevicesBetweenTheDefaultAndTheSystemOutput) {
    EXPECT_EQ(entries(devices()), (QStringList{"Default Input", "Measurement Mic", "Desk",
                                               "System Output (what the Mac is playing)"}));
    EXPECT_EQ(devices().currentText(), QStringLiteral("Default Input"));
}

TEST_F(PreferencesTests, devicesOfOneNameAreToldApartAndPickedByTheirUIDs) {
    audio.plugIn({.id = 101, .uid = "usb-Mic_A17-00", .name = "USB Mic", .channelCount = 1});
    audio.plugIn({.id = 102, .uid = "usb-Mic_B02-00", .name = "USB Mic", .channelCount = 1});
    engine->refreshDevices();
    settle();
    EXPECT_TRUE(entries(devices()).contains("USB Mic (A17)"));
    pick(devices(), "USB Mic (B02)");
    EXPECT_EQ(engine->selectedDeviceUID(), "usb-Mic_B02-00");
    EXPECT_EQ(devices().currentText(), QStringLiteral("USB Mic (B02)"));
}

TEST_F(PreferencesTests, pickingADeviceSelectsItAndListsItsInputs) {
    pick(devices(), "Desk");
    EXPECT_EQ(engine->selectedDeviceUID(), "desk");
    EXPECT_EQ(entries(input()).size(), 8);
    pick(input(), "Input 5");
    EXPECT_EQ(engine->selectedChannelIndex(), 4);
    pick(devices(), "Default Input");
    EXPECT_FALSE(engine->selectedDeviceUID().has_value());
    EXPECT_EQ(engine->selectedChannelIndex(), 0);
}

TEST_F(PreferencesTests, aStoredDeviceThatIsGoneIsUnavailable) {
    engine->selectedDeviceUID.set("gone");
    EXPECT_EQ(devices().currentText(), QStringLiteral("Unavailable Device"));
}

TEST_F(PreferencesTests, aPluggedInDeviceAppearsAndRefreshLooksAgain) {
    audio.plugIn({.id = 50, .uid = "usb", .name = "USB Mic", .channelCount = 1});
    button("Refresh Devices")->click();
    EXPECT_TRUE(entries(devices()).contains(QStringLiteral("USB Mic")));
}

TEST_F(PreferencesTests, theRightChannelIsOfferedOnlyForAPair) {
    auto* pair = window->findChild<AudioSettingsView*>()->findChild<QCheckBox*>();
    EXPECT_EQ(pair->text(), QStringLiteral("Stereo pair"));
    EXPECT_FALSE(rightInput().isVisible());
    pick(devices(), "Desk");
    pair->click();
    EXPECT_TRUE(engine->mainInputIsStereo());
    EXPECT_TRUE(rightInput().isVisible());
    pick(rightInput(), "Input 4");
    EXPECT_EQ(engine->mainInputRightChannelIndex(), 3);
}

TEST_F(PreferencesTests, aSourceChangedWhileRunningOffersARestart) {
    QPushButton* restart = button("Restart Now");
    EXPECT_FALSE(restart->isVisible());
    start();
    pick(devices(), "Desk");
    EXPECT_TRUE(restart->isVisible());
    restart->click();
    waitUntil([&] { return engine->isRunning(); });
    EXPECT_FALSE(restart->isVisible());
    EXPECT_EQ(audio.madeUIDs(), (std::vector<std::string>{"", "desk"}));
}

TEST_F(PreferencesTests, theLeqFormWritesTheSettingsAndApplyStartsOver) {
    window->findChild<QTabWidget*>()->setCurrentIndex(2);
    QList<QComboBox*> pickers;
    for (QComboBox* combo : window->findChildren<QComboBox*>()) {
        if (combo->isVisible()) {
            pickers.append(combo);
        }
    }
    ASSERT_EQ(pickers.size(), 2);
    EXPECT_EQ(entries(*pickers[0]), (QStringList{"A", "C", "Z"}));
    EXPECT_EQ(entries(*pickers[1]),
              (QStringList{"1 sec", "10 sec", "1 min", "15 min", "1 hour", "8 hours", "24 hours"}));
    EXPECT_EQ(pickers[1]->currentText(), QStringLiteral("1 min"));
    pick(*pickers[0], "C");
    pick(*pickers[1], "10 sec");
    EXPECT_EQ(engine->leqWeighting(), TarvaneKit::Weighting::c);
    EXPECT_EQ(engine->leqIntegrationSeconds(), 10.0);

    engine->metricMode.set(MetricMode::leq);
    start();
    audio.feed("", {TarvaneTests::sine(1000.0, 0.1, 48000)});
    button("Apply")->click();
    audio.feed("", {TarvaneTests::sine(1000.0, 0.1, 24000)});
    tick();
    // Half a second since Apply, of ten.
    EXPECT_NEAR(engine->meterChannel(TarvaneKit::UUID::main()).live.leqElapsedFraction, 0.05, 1e-9);
}

TEST_F(PreferencesTests, aStoredLeqTimeThatNoPresetHasIsShown) {
    window->findChild<QTabWidget*>()->setCurrentIndex(2);
    engine->leqIntegrationSeconds.set(42.0);
    bool found = false;
    for (const QComboBox* combo : window->findChildren<QComboBox*>()) {
        found = found || combo->currentText() == QStringLiteral("42 sec");
    }
    EXPECT_TRUE(found);
}

}  // namespace
}  // namespace TarvaneApp
