#include "Shell/Preferences/ChannelCalibrationSections.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFileDialog>
#include <QLineEdit>
#include <QMimeData>
#include <QTest>
#include <QUrl>
#include <cmath>
#include <filesystem>

#include "Support/TemporaryFolder.h"
#include "TarvaneApp/Shell/Preferences/AudioFormFixture.h"

namespace TarvaneApp {
namespace ChannelCalibrationSectionsTests {

using TarvaneKit::UUID;

class ChannelCalibrationSectionsTests : public TarvaneTests::AudioFormFixture {
  protected:
    std::filesystem::path micFile(const char* name = "mic.txt",
                                  const char* contents =
                                      "\"Sens Factor =-30.5dB, SERNO: 7000123\"\n"
                                      "20 -1.0\n20000 2.0\n") {
        return folder.write(name, contents);
    }
    void drop(QWidget& onto, const std::filesystem::path& path) {
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(QString::fromStdString(path.string()))});
        QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&onto, &enter);
        ASSERT_TRUE(enter.isAccepted());
        QDropEvent event(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&onto, &event);
        settle();
    }
    // By the button and the system's dialog.
    void load(QWidget& form, const std::filesystem::path& path) {
        button(form, "Load Cal File…").click();
        auto* dialog = window->findChild<QFileDialog*>();
        ASSERT_NE(dialog, nullptr);
        Q_EMIT dialog->fileSelected(QString::fromStdString(path.string()));
        dialog->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        settle();
    }
    // A microphone on an extra channel of the default input.
    ChannelConfig addMic() {
        const auto channel = addChannel("Stage", std::nullopt, 0);
        engine->setDigitalSource(false, channel.id);
        return channel;
    }
    void type(QWidget& form, const char* label, const char* text) {
        auto& line = control<QLineEdit>(form, label);
        line.selectAll();
        line.del();
        QTest::keyClicks(&line, QString::fromUtf8(text));
    }
    void setReference(double offsetDB, const std::optional<std::string>& uid = {},
                      const std::optional<std::string>& name = {}) {
        auto profile = engine->calibration();
        profile.reference.emplace();
        profile.reference->offsetDB = offsetDB;
        profile.reference->referenceDeviceUID = uid;
        profile.reference->referenceDeviceName = name;
        engine->calibration.set(profile);
    }

    TarvaneTests::TemporaryFolder folder;
    // 1 kHz with its peaks at -20 dBFS: its level.
    const double toneDB = 20.0 * std::log10(0.1 / std::numbers::sqrt2);
};

TEST_F(ChannelCalibrationSectionsTests, theMainInputsStateIsToldInWords) {
    auto& form = section();
    EXPECT_EQ(reading(form, "Status"),
              QStringLiteral("Not calibrated — showing raw dBFS, not real SPL"));
    EXPECT_EQ(row(form, "Offset"), nullptr);
    engine->loadMicCalFile(micFile(), UUID::main());
    EXPECT_EQ(reading(form, "Status"), QStringLiteral("Calibrated from mic cal file"));
    EXPECT_EQ(row(form, "Offset"), nullptr);
    setReference(117.04, "mic", "Measurement Mic");
    EXPECT_EQ(reading(form, "Status"), QStringLiteral("Calibrated from reference tone"));
    EXPECT_EQ(reading(form, "Offset"), QStringLiteral("+117.0 dB"));
    EXPECT_EQ(reading(*group(form, "Calibration"), "Device"), QStringLiteral("Measurement Mic"));
    button(form, "Clear Reference Calibration").click();
    EXPECT_EQ(reading(form, "Status"), QStringLiteral("Calibrated from mic cal file"));
    EXPECT_EQ(row(*group(form, "Calibration"), "Device"), nullptr);
}

TEST_F(ChannelCalibrationSectionsTests, aScreenReaderReadsTheState) {
    auto* status = QAccessible::queryAccessibleInterface(&control<QLabel>(section(), "Status"));
    ASSERT_NE(status, nullptr);
    EXPECT_EQ(status->text(QAccessible::Name),
              QStringLiteral("Not calibrated — showing raw dBFS, not real SPL"));
}

TEST_F(ChannelCalibrationSectionsTests, anExtraChannelsStateIsToldInWords) {
    const auto stage = addMic();
    auto& form = unfolded(stage.id);
    EXPECT_EQ(reading(form, "Status"), QStringLiteral("None — showing dBFS"));
    engine->loadMicCalFile(micFile(), stage.id);
    // 94 - (-30.5) + 20 log10(2)
    EXPECT_EQ(reading(form, "Status"), QStringLiteral("Mic cal file, offset +130.5 dB"));
    engine->updateChannel(stage.id, [](ChannelConfig& channel) {
        channel.calibration->reference.emplace();
        channel.calibration->reference->offsetDB = -3.26;
    });
    EXPECT_EQ(reading(form, "Status"), QStringLiteral("Reference tone, offset -3.3 dB"));
    button(form, "Clear Reference").click();
    EXPECT_EQ(reading(form, "Status"), QStringLiteral("Mic cal file, offset +130.5 dB"));
}

TEST_F(ChannelCalibrationSectionsTests, aReferenceOfAnotherDeviceIsWarnedOf) {
    const char* warning = "The reference calibration was made on another device.";
    engine->selectedDeviceUID.set("mic");
    setReference(100.0, "mic");
    EXPECT_FALSE(says(section(), warning));
    setReference(100.0, "desk");
    EXPECT_TRUE(says(section(), warning));
}

TEST_F(ChannelCalibrationSectionsTests, aFileIsLoadedThroughTheDialogAndRemoved) {
    const auto stage = addMic();
    for (const UUID& id : {UUID::main(), stage.id}) {
        auto& form = unfolded(id);
        EXPECT_EQ(reading(form, "Mic cal file"), QStringLiteral("Not loaded"));
        EXPECT_EQ(row(form, "Sens Factor"), nullptr);
        EXPECT_FALSE(button(form, "Remove Cal File").isVisible());
        load(form, micFile());
        EXPECT_TRUE(engine->isCalibrated(id));
        EXPECT_EQ(reading(form, "Mic cal file"), QStringLiteral("Loaded"));
        EXPECT_EQ(reading(form, "Serial number"), QStringLiteral("7000123"));
        EXPECT_EQ(reading(form, "Sens Factor"), QStringLiteral("-30.5000 dB"));
        EXPECT_TRUE(says(form, "(usually 94; some mics use 100)"));
        EXPECT_TRUE(says(form,
                         "Loading a cal file with a Sens Factor applies SPL = Reference SPL "
                         "+ (measured dBFS − Sens Factor)"));
        button(form, "Remove Cal File").click();
        EXPECT_FALSE(engine->isCalibrated(id));
        EXPECT_EQ(reading(form, "Mic cal file"), QStringLiteral("Not loaded"));
    }
}

TEST_F(ChannelCalibrationSectionsTests, aFileCanBeDroppedOntoItsSection) {
    const auto stage = addMic();
    drop(*group(section(), "Mic Calibration File"), micFile());
    EXPECT_TRUE(engine->isCalibrated(UUID::main()));
    EXPECT_FALSE(engine->isCalibrated(stage.id));
    drop(*group(unfolded(stage.id), "Calibration"), micFile());
    EXPECT_TRUE(engine->isCalibrated(stage.id));
}

TEST_F(ChannelCalibrationSectionsTests, aFileThatDoesNotParseSaysWhatIsWrongBesideTheButton) {
    auto& form = section();
    load(form, micFile());
    load(form, micFile("notes.txt", "nothing of use\n"));
    const char* sentence =
        "notes.txt: The calibration file contained no valid frequency/magnitude data points.";
    EXPECT_TRUE(says(form, sentence));
    EXPECT_EQ(engine->errorMessage(),
              "The calibration file contained no valid frequency/magnitude data points.");
    EXPECT_EQ(reading(form, "Mic cal file"), QStringLiteral("Loaded"));  // the one of before
    load(form, micFile());
    EXPECT_FALSE(says(form, sentence));
}

TEST_F(ChannelCalibrationSectionsTests, aFileWithoutASensFactorCalibratesNoLevelAndSaysSo) {
    auto& form = section();
    load(form, micFile("curve.txt", "100 1.5\n"));
    EXPECT_EQ(reading(form, "Mic cal file"), QStringLiteral("Loaded"));
    EXPECT_TRUE(says(form, "This file has no Sens Factor:"));
    EXPECT_EQ(row(form, "Reference SPL"), nullptr);
    EXPECT_EQ(reading(form, "Status"),
              QStringLiteral("Not calibrated — showing raw dBFS, not real SPL"));
}

TEST_F(ChannelCalibrationSectionsTests, theReferenceSPLGoesFromSixtyToAHundredAndThirty) {
    const auto stage = addMic();
    for (const UUID& id : {UUID::main(), stage.id}) {
        engine->loadMicCalFile(micFile(), id);
        auto& form = unfolded(id);
        auto& found = slider(form, "Reference SPL");
        EXPECT_EQ(found.maximum() - found.minimum(), 70);
        EXPECT_TRUE(says(form, "94.0 dB"));
        found.setValue(found.maximum() - 30);
        EXPECT_EQ(engine->channelInfo(id)->calibration.micCalFileReferenceSPL, 100.0);
    }
}

TEST_F(ChannelCalibrationSectionsTests, aStoredReferenceSPLBeyondTheSliderStaysUntilItIsMoved) {
    engine->loadMicCalFile(micFile(), UUID::main());
    auto profile = engine->calibration();
    profile.micCalFileReferenceSPL = 140.0;
    engine->calibration.set(profile);
    auto& found = slider(section(), "Reference SPL");
    EXPECT_EQ(found.value(), found.maximum());
    EXPECT_EQ(engine->calibration().micCalFileReferenceSPL, 140.0);
    found.setValue(found.maximum() - 1);
    EXPECT_EQ(engine->calibration().micCalFileReferenceSPL, 129.0);

    profile = engine->calibration();
    profile.micCalFileReferenceSPL = std::nan("");
    engine->calibration.set(profile);
    EXPECT_TRUE(says(section(), "94.0 dB"));
}

// --- the reference tone

TEST_F(ChannelCalibrationSectionsTests, calibrateNeedsALiveSignal) {
    auto& calibrate = button(section(), "Calibrate");
    EXPECT_FALSE(calibrate.isEnabled());
    EXPECT_TRUE(says(section(), "Start metering and play the tone."));
    start();
    settle();
    EXPECT_FALSE(calibrate.isEnabled());
    play(1000.0, 0.1);
    EXPECT_TRUE(calibrate.isEnabled());
    engine->pause();
    EXPECT_FALSE(calibrate.isEnabled());
    engine->resume();
    play(1000.0, 0.1);
    engine->stop();
    EXPECT_FALSE(calibrate.isEnabled());
}

TEST_F(ChannelCalibrationSectionsTests, whatACalibrationWillDoIsSeenBefore) {
    const auto stage = addMic();
    start();
    play(1000.0, 0.1, 3.0);
    for (const UUID& id : {UUID::main(), stage.id}) {
        auto& form = unfolded(id);
        const char* label = id == UUID::main() ? "Known reference SPL" : "Known SPL";
        type(form, label, "94.0");
        // -20 dBFS less 3.01 dB, and 94 dB above that.
        EXPECT_TRUE(says(form, "-23.0 dBFS → offset +117.0 dB"));
        type(form, label, "114");
        EXPECT_TRUE(says(form, "-23.0 dBFS → offset +137.0 dB"));
        EXPECT_FALSE(engine->isCalibrated(id));
        button(form, "Calibrate").click();
        EXPECT_NEAR(engine->channelInfo(id)->calibration.broadbandOffsetDB(), 114.0 - toneDB, 0.01);
        play(1000.0, 0.1);
        EXPECT_TRUE(says(form, "-23.0 dBFS → offset +137.0 dB"));
        EXPECT_NEAR(live(id).currentSPLValueDB, 114.0, 0.01);
    }
}

TEST_F(ChannelCalibrationSectionsTests, aKnownLevelThatIsNoneIsToldAndNothingIsCalibrated) {
    start();
    play(1000.0, 0.1);
    auto& form = section();
    for (const char* text : {"", "94 dB", "201"}) {
        type(form, "Known reference SPL", text);
        EXPECT_TRUE(says(form, "Enter a reference SPL between 0 and 200 dB.")) << text;
        EXPECT_FALSE(button(form, "Calibrate").isEnabled()) << text;
    }
    type(form, "Known reference SPL", "94,2");
    EXPECT_FALSE(says(form, "Enter a reference SPL between 0 and 200 dB."));
    button(form, "Calibrate").click();
    EXPECT_NEAR(engine->calibration().broadbandOffsetDB(), 94.2 - toneDB, 0.01);
}

TEST_F(ChannelCalibrationSectionsTests, theKnownLevelIsTheSameInEveryChannelsForm) {
    const auto stage = addMic();
    type(section(), "Known reference SPL", "113.9");
    EXPECT_EQ(control<QLineEdit>(unfolded(stage.id), "Known SPL").text(), QStringLiteral("113.9"));
}

TEST_F(ChannelCalibrationSectionsTests, aToneThatIsNoCalibratorsIsWarnedOfAndNotRefused) {
    start();
    play(440.0, 0.1, 3.0);
    auto& form = section();
    EXPECT_TRUE(says(form, "The strongest tone is at 440 Hz:"));
    EXPECT_TRUE(button(form, "Calibrate").isEnabled());
    play(1000.0, 0.1, 3.0);
    EXPECT_FALSE(says(form, "The strongest tone"));
    EXPECT_FALSE(says(form, "The tone isn't steady"));
    play(1000.0, 0.05, 0.5);
    // By 20 log10(2), on its way down.
    EXPECT_TRUE(says(form, "The tone isn't steady: its level moved by"));
    EXPECT_TRUE(button(form, "Calibrate").isEnabled());
}

TEST_F(ChannelCalibrationSectionsTests, theJumpOfACalibrationIsNoUnsteadyTone) {
    start();
    play(1000.0, 0.1, 3.0);
    for (const char* knownSPL : {"94", "54", "114"}) {
        type(section(), "Known reference SPL", knownSPL);
        button(section(), "Calibrate").click();
        for (int i = 0; i < 12; ++i) {
            play(1000.0, 0.1, 0.3);
            EXPECT_FALSE(says(section(), "The tone isn't steady")) << knownSPL << ' ' << i;
        }
    }
}

TEST_F(ChannelCalibrationSectionsTests, theSpectrumIsAskedForOnlyWhileTheToneIsListenedTo) {
    EXPECT_TRUE(engine->isDemanded(ChannelDemand::rta, UUID::main()));
    section().header().click();
    EXPECT_FALSE(engine->isDemanded(ChannelDemand::rta, UUID::main()));
    section().header().click();
    EXPECT_TRUE(engine->isDemanded(ChannelDemand::rta, UUID::main()));
    engine->mainInputIsDigital.set(true);
    EXPECT_FALSE(engine->isDemanded(ChannelDemand::rta, UUID::main()));
    engine->mainInputIsDigital.set(false);
    window->hide();
    EXPECT_FALSE(engine->isDemanded(ChannelDemand::rta, UUID::main()));
}

}  // namespace ChannelCalibrationSectionsTests
}  // namespace TarvaneApp
