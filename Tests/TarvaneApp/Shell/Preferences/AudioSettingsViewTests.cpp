#include "Shell/Preferences/AudioSettingsView.h"

#include <gtest/gtest.h>

#include <QLineEdit>
#include <QTest>

#include "Displays/Theme.h"
#include "Shell/Controls/ChannelColorDot.h"
#include "Shell/Controls/ElidedLabel.h"
#include "TarvaneApp/Shell/Preferences/AudioFormFixture.h"

namespace TarvaneApp {
namespace AudioSettingsViewTests {

using TarvaneKit::UUID;

class AudioSettingsViewTests : public TarvaneTests::AudioFormFixture {
  protected:
    QStringList sectionNames() {
        const auto* form = window->findChild<AudioSettingsView*>();
        QStringList names;
        for (auto* section : form->findChildren<ChannelSection*>()) {
            if (!section->isHidden()) {
                names.append(headerTexts(*section).value(0));
            }
        }
        return names;
    }
    static QStringList headerTexts(ChannelSection& section) {
        QStringList texts;
        for (const auto* label : section.header().findChildren<ElidedLabel*>()) {
            texts.append(label->text());
        }
        return texts;
    }
};

TEST_F(AudioSettingsViewTests, listsTheMainInputAndThenEveryExtraChannel) {
    EXPECT_EQ(sectionNames(), QStringList{"Main Input"});
    addChannel("Stage", "desk", 1);
    addChannel("Balcony", "desk", 2, 3);
    EXPECT_EQ(sectionNames(), (QStringList{"Main Input", "Stage", "Balcony"}));
    EXPECT_TRUE(says(*window,
                     "Each channel is any input of any device, including every channel of a "
                     "network audio card or multichannel interface, or the computer's own "
                     "output."));
}

TEST_F(AudioSettingsViewTests, aHeaderTellsColourNameAndInput) {
    const auto pair = addChannel("Balcony", "desk", 2, 3);
    auto& header = section(pair.id).header();
    EXPECT_EQ(headerTexts(section(pair.id)), (QStringList{"Balcony", "Desk (inputs 3+4, stereo)"}));
    EXPECT_EQ(header.findChild<ChannelColorDot*>()->color(), Theme::color(pair.color));
    EXPECT_EQ(header.accessibleName(), QStringLiteral("Expand Balcony"));
    engine->updateChannel(pair.id, [](ChannelConfig& channel) {
        channel.name = "Gallery";
        channel.isEnabled = false;
    });
    EXPECT_EQ(headerTexts(section(pair.id)).value(0), QStringLiteral("Gallery"));
    EXPECT_LT(header.findChild<ChannelColorDot*>()->color().alphaF(), 0.5);
    EXPECT_FALSE(header.findChild<ElidedLabel*>()->isEnabled());
}

TEST_F(AudioSettingsViewTests, foldsAreRememberedOverARelaunch) {
    const auto stage = addChannel("Stage", "desk", 1);
    EXPECT_TRUE(section().isExpanded());
    EXPECT_FALSE(section(stage.id).isExpanded());
    section().header().click();
    section(stage.id).header().click();
    relaunch();
    EXPECT_FALSE(section().isExpanded());
    EXPECT_TRUE(section(stage.id).isExpanded());
}

TEST_F(AudioSettingsViewTests, whatWasNeverUnfoldedHasNoWidgets) {
    const auto stage = addChannel("Stage", "desk", 1);
    EXPECT_EQ(section(stage.id).content(), nullptr);
    unfolded(stage.id);
    EXPECT_NE(section(stage.id).content(), nullptr);
}

TEST_F(AudioSettingsViewTests, aChannelsWidgetsSurviveTheChangesOfOthers) {
    const auto stage = addChannel("Stage", "desk", 1);
    const auto balcony = addChannel("Balcony", "desk", 2);
    QWidget* content = unfolded(balcony.id).content();
    auto& name = control<QLineEdit>(*content, "Name");
    name.setFocus();
    QTest::keyClicks(&name, QStringLiteral(" Lef"));
    engine->updateChannel(stage.id, [](ChannelConfig& channel) { channel.name = "Stage 2"; });
    addChannel("Third", "desk", 3);
    engine->removeChannel(stage.id);
    settle();
    EXPECT_EQ(section(balcony.id).content(), content);
    EXPECT_EQ(name.text(), QStringLiteral("Balcony Lef"));
    EXPECT_EQ(sectionNames(), (QStringList{"Main Input", "Balcony", "Third"}));
}

TEST_F(AudioSettingsViewTests, addChannelAddsOneUnfolded) {
    engine->selectedDeviceUID.set("desk");
    button(*window, "Add Channel").click();
    settle();
    ASSERT_EQ(engine->extraChannels().size(), 1U);
    const ChannelConfig added = engine->extraChannels()[0];
    EXPECT_EQ(added.deviceUID, "desk");
    EXPECT_TRUE(section(added.id).isExpanded());
    relaunch();
    EXPECT_TRUE(section(added.id).isExpanded());
}

TEST_F(AudioSettingsViewTests, removeChannelRemovesItWithoutAsking) {
    const auto stage = addChannel("Stage", "desk", 1);
    const auto balcony = addChannel("Balcony", "desk", 2);
    button(unfolded(stage.id), "Remove Channel").click();
    settle();
    ASSERT_EQ(engine->extraChannels().size(), 1U);
    EXPECT_EQ(engine->extraChannels()[0].id, balcony.id);
    EXPECT_EQ(sectionNames(), (QStringList{"Main Input", "Balcony"}));
    EXPECT_THROW(button(section(), "Remove Channel"), std::logic_error);
}

TEST_F(AudioSettingsViewTests, aChannelIsNamedAndSwitchedOff) {
    const auto stage = addChannel("Stage", "desk", 1);
    auto& form = unfolded(stage.id);
    auto& name = control<QLineEdit>(form, "Name");
    name.selectAll();
    QTest::keyClicks(&name, QStringLiteral("FOH"));
    QTest::keyClick(&name, Qt::Key_Return);
    EXPECT_EQ(engine->extraChannels()[0].name, "FOH");
    EXPECT_EQ(headerTexts(form).value(0), QStringLiteral("FOH"));
    toggle(form, "Enabled").click();
    EXPECT_FALSE(engine->extraChannels()[0].isEnabled);
}

TEST_F(AudioSettingsViewTests, aSourceChangedWhileRunningOffersARestart) {
    QPushButton& restart = button(*window, "Restart Now");
    EXPECT_FALSE(restart.isVisible());
    start();
    pick(picker(section(), "Device"), "Desk");
    EXPECT_TRUE(restart.isVisible());
    EXPECT_TRUE(says(*window, "Device or input changes take effect after a restart."));
    restart.click();
    waitUntil([&] { return engine->isRunning(); });
    EXPECT_FALSE(restart.isVisible());
    EXPECT_EQ(audio.madeUIDs(), (std::vector<std::string>{"", "desk"}));
}

// --- the source

TEST_F(AudioSettingsViewTests, devicesStandBetweenTheDefaultAndTheSystemOutput) {
    auto& device = picker(section(), "Device");
    EXPECT_EQ(entries(device), (QStringList{"Default Input", "Measurement Mic", "Desk",
                                            "System Output (what the computer is playing)"}));
    EXPECT_EQ(device.currentText(), QStringLiteral("Default Input"));
}

TEST_F(AudioSettingsViewTests, devicesOfOneNameAreToldApartAndPickedByTheirUIDs) {
    audio.plugIn({.id = 101, .uid = "usb-Mic_A17-00", .name = "USB Mic", .channelCount = 1});
    audio.plugIn({.id = 102, .uid = "usb-Mic_B02-00", .name = "USB Mic", .channelCount = 1});
    engine->refreshDevices();
    settle();
    auto& device = picker(section(), "Device");
    EXPECT_TRUE(entries(device).contains("USB Mic (A17)"));
    pick(device, "USB Mic (B02)");
    EXPECT_EQ(engine->selectedDeviceUID(), "usb-Mic_B02-00");
    EXPECT_EQ(device.currentText(), QStringLiteral("USB Mic (B02)"));
}

TEST_F(AudioSettingsViewTests, theSourceOfEveryChannelIsChosenAlike) {
    const auto stage = addChannel("Stage", "mic", 0);
    for (const UUID& id : {UUID::main(), stage.id}) {
        auto& form = unfolded(id);
        pick(picker(form, "Device"), "Desk");
        EXPECT_EQ(engine->channelInfo(id)->deviceUID, "desk");
        EXPECT_EQ(entries(picker(form, "Input")).size(), 8);
        pick(picker(form, "Input"), "Input 5");
        EXPECT_EQ(engine->channelInfo(id)->channelIndex, 4);
        EXPECT_EQ(row(form, "Right channel"), nullptr);
        toggle(form, "Stereo pair").click();
        pick(picker(form, "Right channel"), "Input 4");
        EXPECT_EQ(engine->channelInfo(id)->rightChannelIndex, 3);
        pick(picker(form, "Device"), "Default Input");
        EXPECT_FALSE(engine->channelInfo(id)->deviceUID);
        EXPECT_EQ(engine->channelInfo(id)->channelIndex, 0);
    }
}

TEST_F(AudioSettingsViewTests, aStoredDeviceThatIsGoneIsUnavailable) {
    const auto stage = addChannel("Stage", "gone", 0);
    EXPECT_EQ(picker(unfolded(stage.id), "Device").currentText(),
              QStringLiteral("Unavailable Device"));
    engine->selectedDeviceUID.set("gone");
    EXPECT_EQ(picker(section(), "Device").currentText(), QStringLiteral("Unavailable Device"));
    pick(picker(section(), "Device"), "Desk");
    EXPECT_FALSE(entries(picker(section(), "Device")).contains("Unavailable Device"));
}

TEST_F(AudioSettingsViewTests, aStoredInputThatTheDeviceDoesntHaveIsShown) {
    const auto stage = addChannel("Stage", "mic", 6);
    EXPECT_EQ(picker(unfolded(stage.id), "Input").currentText(), QStringLiteral("Input 7"));
}

TEST_F(AudioSettingsViewTests, refreshDevicesLooksAgain) {
    audio.plugIn({.id = 50, .uid = "usb", .name = "USB Mic", .channelCount = 1});
    button(section(), "Refresh Devices").click();
    EXPECT_TRUE(entries(picker(section(), "Device")).contains(QStringLiteral("USB Mic")));
}

// --- the signal

TEST_F(AudioSettingsViewTests, theSystemsOutputIsDigitalAndSaysSo) {
    const auto stage = addChannel("Stage", "mic", 0);
    for (const UUID& id : {UUID::main(), stage.id}) {
        auto& form = unfolded(id);
        EXPECT_FALSE(says(form, "Measures what this computer is playing"));
        pick(picker(form, "Device"), "System Output (what the computer is playing)");
        EXPECT_TRUE(says(form, "Measures what this computer is playing"));
        EXPECT_EQ(reading(form, "Source"), QStringLiteral("Digital (the computer's output)"));
        EXPECT_FALSE(isGroupShown(form, "Calibration"));
    }
}

TEST_F(AudioSettingsViewTests, aDigitalFeedHasNeitherGainNorCalibration) {
    const auto stage = addChannel("Stage", "desk", 0);
    for (const UUID& id : {UUID::main(), stage.id}) {
        auto& form = unfolded(id);
        pick(picker(form, "Source"), "Microphone");
        EXPECT_TRUE(isGroupShown(form, "Calibration"));
        EXPECT_TRUE(isGroupShown(form, "Input Gain"));
        EXPECT_TRUE(says(form, "A measurement mic:"));
        pick(picker(form, "Source"), "Digital feed");
        EXPECT_TRUE(engine->isDigitalSource(id));
        EXPECT_FALSE(isGroupShown(form, "Calibration"));
        EXPECT_FALSE(isGroupShown(form, "Mic Calibration File"));
        EXPECT_FALSE(isGroupShown(form, "Reference Tone Calibration (optional, more precise)"));
        EXPECT_FALSE(isGroupShown(form, "Input Gain"));
        EXPECT_TRUE(says(form, "A console bus, network audio, loopback or playback feed:"));
    }
}

TEST_F(AudioSettingsViewTests, theReadoutIsChosenAndExplained) {
    auto& form = section();
    EXPECT_EQ(entries(picker(form, "Readout")), (QStringList{"dBFS", "LUFS"}));
    EXPECT_TRUE(says(form,
                     "dBFS: level relative to digital full scale, with the dBFS traffic-light "
                     "thresholds. Calibrate below to read in dB SPL. Also switchable in the SPL "
                     "meter's toolbar."));
    pick(picker(form, "Readout"), "LUFS");
    EXPECT_TRUE(engine->mainInputMeasuresLoudness());
    EXPECT_TRUE(says(form, "LUFS: program loudness"));
    auto profile = engine->calibration();
    profile.reference.emplace();
    engine->calibration.set(profile);
    EXPECT_EQ(entries(picker(form, "Readout")), (QStringList{"SPL", "dBFS", "LUFS"}));
    pick(picker(form, "Readout"), "SPL");
    EXPECT_EQ(engine->readoutUnit(UUID::main()), ReadoutUnit::spl);
    EXPECT_TRUE(says(form,
                     "dB SPL: calibrated sound pressure level, with the SPL traffic-light "
                     "thresholds. Also switchable in the SPL meter's toolbar."));
    engine->mainInputIsDigital.set(true);
    EXPECT_TRUE(says(form,
                     "dBFS: level relative to digital full scale, with the dBFS traffic-light "
                     "thresholds. Also switchable"));
}

// --- ring-out, display, window

TEST_F(AudioSettingsViewTests, ringOutIsSetPerChannel) {
    const auto stage = addChannel("Stage", "desk", 0);
    for (const UUID& id : {UUID::main(), stage.id}) {
        auto& form = unfolded(id);
        const bool before = engine->channelInfo(id)->ringOutEnabled;
        toggle(form, "Ring-Out alerts").click();
        EXPECT_EQ(engine->channelInfo(id)->ringOutEnabled, !before);
        EXPECT_EQ(picker(form, "Sensitivity").isEnabled(), !before);
        EXPECT_EQ(entries(picker(form, "Sensitivity")), (QStringList{"Low", "Normal", "High"}));
        pick(picker(form, "Sensitivity"), "High");
        EXPECT_EQ(engine->display(id).ringOutSensitivity, TarvaneKit::RingOutSensitivity::high);
    }
}

TEST_F(AudioSettingsViewTests, theDisplayIsSetPerChannel) {
    const auto stage = addChannel("Stage", "desk", 0);
    for (const UUID& id : {UUID::main(), stage.id}) {
        auto& form = unfolded(id);
        EXPECT_EQ(entries(picker(form, "RTA view")), (QStringList{"Banded", "Line", "Both"}));
        pick(picker(form, "RTA view"), "Line");
        EXPECT_EQ(engine->display(id).viewMode, SpectrumViewMode::line);
        EXPECT_EQ(
            entries(picker(form, "Band resolution")).size(),
            static_cast<qsizetype>(TarvaneKit::allCases<TarvaneKit::OctaveFraction>().size()));
        const bool wasNormalized = engine->display(id).octaveNormalized;
        toggle(form, "Octave-normalized display").click();
        EXPECT_EQ(engine->display(id).octaveNormalized, !wasNormalized);
        EXPECT_TRUE(says(form, "Reference level"));
    }
}

TEST_F(AudioSettingsViewTests, withoutPeakHoldItsColourIsDimmedAndInactive) {
    auto& form = section();
    const char* help = "Turn on Show peak hold to change its color";
    EXPECT_TRUE(row(form, "Peak hold color")->isEnabled());
    EXPECT_FALSE(says(form, help));
    toggle(form, "Show peak hold").click();
    EXPECT_FALSE(engine->showPeakHold());
    EXPECT_FALSE(row(form, "Peak hold color")->isEnabled());
    EXPECT_TRUE(says(form, help));
}

TEST_F(AudioSettingsViewTests, theChannelsWindowIsArrangedAndOpened) {
    const auto stage = addChannel("Stage", "desk", 0);
    for (const UUID& id : {UUID::main(), stage.id}) {
        auto& form = unfolded(id);
        toggle(form, "RTA").click();
        EXPECT_FALSE(engine->windowLayout(id).showsRTA);
        pick(picker(form, "Graph Order"), "Spectrogram First");
        EXPECT_EQ(engine->windowLayout(id).graphOrder, GraphOrder::spectrogramFirst);
        pick(picker(form, "Graph Order"), "Same as Main Window");
        EXPECT_FALSE(engine->windowLayout(id).graphOrder);
        pick(picker(form, "Level History Position"), "Below Graphs");
        EXPECT_EQ(engine->windowLayout(id).levelHistoryPosition, LevelHistoryPosition::belowGraphs);
        button(form, "Reset Layout").click();
        EXPECT_EQ(engine->windowLayout(id), ChannelWindowLayout{});
        EXPECT_TRUE(toggle(form, "RTA").isChecked());
        button(form, "Open in Window").click();
        EXPECT_EQ(openedChannelWindows.back(), id);
    }
}

TEST_F(AudioSettingsViewTests, theLastModuleOfAChannelsWindowStays) {
    auto& form = section();
    for (const char* module : {"SPL", "RTA", "Spectrogram"}) {
        toggle(form, module).click();
    }
    toggle(form, "History").click();
    EXPECT_TRUE(toggle(form, "History").isChecked());
    EXPECT_EQ(engine->windowLayout(UUID::main()).visibleModuleCount(), 1);
}

}  // namespace AudioSettingsViewTests
}  // namespace TarvaneApp
