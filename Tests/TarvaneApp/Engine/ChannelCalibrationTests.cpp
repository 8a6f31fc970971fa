#include "Support/TemporaryFolder.h"
#include "TarvaneApp/Engine/EngineFixture.h"

namespace TarvaneApp {
namespace ChannelCalibrationTests {

using TarvaneKit::CalibrationSource;
using TarvaneKit::TimeWeighting;
using TarvaneKit::UUID;
using TarvaneKit::Weighting;

constexpr const char* notRunning =
    "Start audio input and play the reference tone before calibrating.";
constexpr const char* noSignal =
    "No signal detected — make sure the reference tone/calibrator is running.";

class ChannelCalibrationTests : public TarvaneTests::EngineFixture {
  protected:
    /// Two seconds of the calibrator's tone on every input of the source, 1 kHz at -20 dBFS: its
    /// level is 20 log10(0.1 / sqrt 2) = -23.01 dB in A, C and Z. Fast has settled to 1e-6 dB.
    void playTone(const std::string& uid) {
        const auto inputs =
            static_cast<std::size_t>(std::max(audio.behaviour(uid).channelCount, 1));
        const std::vector<std::vector<float>> block(inputs, TarvaneTests::sine(1000.0, 0.1, 480));
        for (int i = 0; i < 200; ++i) {
            ASSERT_TRUE(audio.feed(uid, block));
        }
    }
    double reading(const UUID& id) { return processorOf(id)->value(engine->displayedMetric(id)); }
    std::optional<std::string> takeMessage() {
        const auto message = engine->errorMessage();
        engine->dismissError();
        return message;
    }
    const ChannelConfig& extra() const { return engine->extraChannels().at(0); }

    std::filesystem::path micFile(std::string_view contents) {
        return folder.write("mic.txt", contents);
    }

    TarvaneTests::TemporaryFolder folder;
    const double toneDB = 20.0 * std::log10(0.1 / std::numbers::sqrt2);
};

TEST_F(ChannelCalibrationTests, theToneReadsItsKnownLevelAfterwards) {
    engine->selectedDeviceUID.set("mic");
    start();
    playTone("mic");
    engine->calibrateReference(94.0, UUID::main());
    EXPECT_FALSE(engine->errorMessage());
    const auto& reference = engine->calibration().reference;
    ASSERT_TRUE(reference);
    EXPECT_NEAR(reference->offsetDB, 94.0 - toneDB, 0.01);
    EXPECT_EQ(reference->referenceDeviceUID, "mic");
    EXPECT_EQ(reference->referenceDeviceName, "Measurement Mic");
    EXPECT_EQ(reference->calibratedAt, clock.now());
    EXPECT_FALSE(reference->inputGainDB);
    playTone("mic");
    EXPECT_NEAR(reading(UUID::main()), 94.0, 0.01);
    makeEngine();
    EXPECT_NEAR(engine->calibration().broadbandOffsetDB(), 94.0 - toneDB, 0.01);
}

TEST_F(ChannelCalibrationTests, anEarlierCalibrationNeverFeedsIntoTheNext) {
    start();
    for (const double knownSPL : {94.0, 114.0, 94.0}) {
        playTone("");
        engine->calibrateReference(knownSPL, UUID::main());
        EXPECT_NEAR(engine->calibration().reference->offsetDB, knownSPL - toneDB, 0.01);
    }
}

TEST_F(ChannelCalibrationTests, theDefaultInputHasNoNameToRecord) {
    start();
    playTone("");
    engine->calibrateReference(94.0, UUID::main());
    EXPECT_FALSE(engine->calibration().reference->referenceDeviceUID);
    EXPECT_FALSE(engine->calibration().reference->referenceDeviceName);
}

TEST_F(ChannelCalibrationTests, theChannelsOwnMetricIsWhatIsCompared) {
    engine->updateDisplay(UUID::main(), [](auto& display) {
        display.metricMode = MetricMode::peak;
        display.peakWeighting = Weighting::z;
    });
    start();
    playTone("");
    engine->calibrateReference(94.0, UUID::main());
    // The peak of a sine lies 3.01 dB above its level.
    EXPECT_NEAR(engine->calibration().reference->offsetDB, 94.0 + 20.0, 0.01);
    // A loudness channel is calibrated by its meter too: LUFS are no sound pressure.
    engine->mainInputMeasuresLoudness.set(true);
    engine->clearReferenceCalibration(UUID::main());
    playTone("");
    playTone("");
    engine->calibrateReference(94.0, UUID::main());
    EXPECT_NEAR(engine->calibration().reference->offsetDB, 94.0 + 20.0, 0.01);
}

TEST_F(ChannelCalibrationTests, anImpossibleKnownLevelIsTurnedDownAheadOfAllElse) {
    for (const double knownSPL : {-0.1, 200.1, std::nan(""), HUGE_VAL, -HUGE_VAL}) {
        engine->calibrateReference(knownSPL, UUID::main());
        EXPECT_EQ(takeMessage(), "Enter a reference SPL between 0 and 200 dB.");
    }
    for (const double knownSPL : {0.0, 200.0}) {
        engine->calibrateReference(knownSPL, UUID::main());
        EXPECT_EQ(takeMessage(), notRunning);
    }
    EXPECT_FALSE(engine->calibration().reference);
}

TEST_F(ChannelCalibrationTests, onlyAChannelThatIsLiveCanBeCalibrated) {
    engine->calibrateReference(94.0, UUID::main());
    EXPECT_EQ(takeMessage(), notRunning);
    start();
    playTone("");
    engine->calibrateReference(94.0, UUID::random());
    EXPECT_EQ(takeMessage(), notRunning);
    // Its last level still stands, but nobody knows whether the tone still plays.
    engine->pause();
    engine->calibrateReference(94.0, UUID::main());
    EXPECT_EQ(takeMessage(), notRunning);
    engine->stop();
    engine->calibrateReference(94.0, UUID::main());
    EXPECT_EQ(takeMessage(), notRunning);
    EXPECT_FALSE(engine->calibration().reference);
}

TEST_F(ChannelCalibrationTests, whatACalibrationWouldTakeIsTheLevelWithoutTheOneInForce) {
    engine->selectedDeviceUID.set("mic");
    EXPECT_FALSE(engine->canCalibrate(UUID::main()));
    EXPECT_FALSE(engine->uncalibratedLevelDBFS(UUID::random()));
    start();
    EXPECT_FALSE(engine->canCalibrate(UUID::main()));  // silence
    playTone("mic");
    EXPECT_NEAR(engine->uncalibratedLevelDBFS(UUID::main()).value(), toneDB, 0.01);
    engine->calibrateReference(94.0, UUID::main());
    playTone("mic");
    EXPECT_NEAR(engine->uncalibratedLevelDBFS(UUID::main()).value(), toneDB, 0.01);
    EXPECT_TRUE(engine->canCalibrate(UUID::main()));
    engine->pause();
    EXPECT_FALSE(engine->canCalibrate(UUID::main()));
    engine->resume();
    engine->stop();
    EXPECT_FALSE(engine->canCalibrate(UUID::main()));
}

TEST_F(ChannelCalibrationTests, whatStandsInTheWayIsGivenBackToo) {
    EXPECT_EQ(engine->calibrateReference(94.0, UUID::main()), notRunning);
    EXPECT_EQ(engine->calibrateReference(-1.0, UUID::main()),
              "Enter a reference SPL between 0 and 200 dB.");
    EXPECT_EQ(engine->loadMicCalFile(micFile("nothing of use\n"), UUID::main()),
              "The calibration file contained no valid frequency/magnitude data points.");
    EXPECT_EQ(engine->loadMicCalFile(micFile("100 1.5\n"), UUID::main()), std::nullopt);
    start();
    playTone("");
    EXPECT_EQ(engine->calibrateReference(94.0, UUID::main()), std::nullopt);
}

TEST_F(ChannelCalibrationTests, withoutASignalNothingIsCalibrated) {
    start();
    engine->calibrateReference(94.0, UUID::main());
    EXPECT_EQ(takeMessage(), noSignal);  // -240 dB: silence
    engine->metricMode.set(MetricMode::leq);
    engine->calibrateReference(94.0, UUID::main());
    EXPECT_EQ(takeMessage(), noSignal);  // no audio yet
    EXPECT_FALSE(engine->calibration().reference);
}

TEST_F(ChannelCalibrationTests, aLevelThatCannotBeTheTonesIsTurnedDown) {
    start();
    engine->updateDisplay(UUID::main(), [](auto& display) {
        display.metricMode = MetricMode::peak;
        display.peakWeighting = Weighting::z;
    });
    // -190 dBFS against 200 dB SPL would be an offset of 390 dB.
    audio.feed("", {std::vector<float>(4800, 3.1623e-10F)});
    engine->calibrateReference(200.0, UUID::main());
    EXPECT_EQ(takeMessage(), "That reference level doesn't match the measured signal.");
    EXPECT_FALSE(engine->calibration().reference);
}

TEST_F(ChannelCalibrationTests, aCalibratedExtraChannelIsNoLongerDigital) {
    const UUID id = addChannel("Stage", "desk", 3).id;
    ASSERT_TRUE(extra().isDigital);
    start();
    playTone("desk");
    engine->calibrateReference(94.0, id);
    EXPECT_FALSE(engine->errorMessage());
    EXPECT_FALSE(extra().isDigital);
    ASSERT_TRUE(extra().calibration);
    EXPECT_EQ(extra().calibration->name, "Stage");
    EXPECT_EQ(extra().calibration->micCalFileReferenceSPL, 94.0);
    EXPECT_EQ(extra().calibration->reference->referenceDeviceUID, "desk");
    EXPECT_EQ(extra().calibration->reference->referenceDeviceName, "Desk");
    playTone("desk");
    EXPECT_NEAR(reading(id), 94.0, 0.01);
    EXPECT_FALSE(engine->calibration().reference);
}

TEST_F(ChannelCalibrationTests, aCalibratedMainInputStaysDigital) {
    engine->mainInputIsDigital.set(true);
    start();
    playTone("");
    engine->calibrateReference(94.0, UUID::main());
    EXPECT_TRUE(engine->calibration().reference);
    EXPECT_TRUE(engine->mainInputIsDigital());
    playTone("");
    EXPECT_NEAR(reading(UUID::main()), toneDB, 0.01);
}

TEST_F(ChannelCalibrationTests, clearingTheReferenceReachesTheRunningMetersWithTheNextBlock) {
    start();
    playTone("");
    engine->calibrateReference(94.0, UUID::main());
    playTone("");
    engine->clearReferenceCalibration(UUID::main());
    EXPECT_EQ(engine->calibration().calibrationSource(), CalibrationSource::none);
    EXPECT_FALSE(engine->channelSourcesChangedWhileRunning());
    playTone("");
    playTone("");  // Fast falls 34.7 dB a second
    playTone("");
    EXPECT_NEAR(reading(UUID::main()), toneDB, 0.01);
}

TEST_F(ChannelCalibrationTests, aCalibrationAndItsEndReachTheSpectrumWithTheNextAnalysis) {
    engine->addDemand(ChannelDemand::rta, UUID::main());
    start();
    const auto line = [&] {
        audio.feed("", {TarvaneTests::sine(1500.0, 0.1, 8192)});
        clock.advance(1.0 / 60.0);
        tick();
        return live().lineSpectrumDB.at(128);  // 1500 Hz of 48000 in 4096
    };
    const double rawDB = line();
    engine->updateDisplay(UUID::main(), [](auto& display) {
        display.splWeighting = Weighting::z;
        display.splTimeWeighting = TimeWeighting::infinite;
    });
    engine->calibrateReference(94.0, UUID::main());
    ASSERT_TRUE(engine->calibration().reference);
    const double offsetDB = engine->calibration().reference->offsetDB;
    EXPECT_NEAR(line(), rawDB + offsetDB, 0.001);
    engine->clearReferenceCalibration(UUID::main());
    EXPECT_NEAR(line(), rawDB, 0.001);
}

TEST_F(ChannelCalibrationTests, anAccumulatedLeqIsNotRescaled) {
    engine->metricMode.set(MetricMode::leq);
    start();
    playTone("");
    const double before = reading(UUID::main());
    engine->calibrateReference(94.0, UUID::main());
    EXPECT_EQ(reading(UUID::main()), before);
}

TEST_F(ChannelCalibrationTests, aMicrophoneFileCalibratesByItsSensFactor) {
    const auto path = micFile("\"Sens Factor =-30dB, SERNO: 7000123\"\n20 -1.0\n20000 2.0\n");
    engine->loadMicCalFile(path, UUID::main());
    EXPECT_FALSE(engine->errorMessage());
    // 94 + 30 + 20 log10 2
    EXPECT_NEAR(engine->calibration().broadbandOffsetDB(), 124.0 + 20.0 * std::log10(2.0), 1e-9);
    makeEngine();
    ASSERT_TRUE(engine->calibration().micCalFile);
    EXPECT_EQ(engine->calibration().micCalFile->serialNumber, "7000123");
    engine->clearMicCalFile(UUID::main());
    EXPECT_FALSE(engine->calibration().micCalFile);
}

TEST_F(ChannelCalibrationTests, aReferenceOverAFileGivesWayToItWhenCleared) {
    engine->loadMicCalFile(micFile("* Sens Factor =-30\n100 0\n"), UUID::main());
    start();
    playTone("");
    engine->calibrateReference(94.0, UUID::main());
    EXPECT_EQ(engine->calibration().calibrationSource(), CalibrationSource::referenceTone);
    engine->clearReferenceCalibration(UUID::main());
    EXPECT_EQ(engine->calibration().calibrationSource(), CalibrationSource::micCalFileSensFactor);
}

TEST_F(ChannelCalibrationTests, aFileThatCannotBeReadIsToldAndTheOldOneStays) {
    engine->loadMicCalFile(micFile("100 1.5\n"), UUID::main());
    engine->loadMicCalFile(micFile("nothing of use\n"), UUID::main());
    EXPECT_EQ(takeMessage(),
              "The calibration file contained no valid frequency/magnitude data points.");
    engine->loadMicCalFile(folder.path() / "missing.txt", UUID::main());
    EXPECT_TRUE(takeMessage());
    engine->loadMicCalFile(micFile("100 1.5 \xFF\n"), UUID::main());
    EXPECT_TRUE(takeMessage());
    EXPECT_EQ(engine->calibration().micCorrectionDB(100.0), 1.5);
}

TEST_F(ChannelCalibrationTests, anExtraChannelWithoutAProfileGetsOneForItsFile) {
    const UUID id = addChannel("Stage", "desk", 0).id;
    engine->clearMicCalFile(id);
    engine->clearReferenceCalibration(id);
    EXPECT_FALSE(extra().calibration);
    engine->loadMicCalFile(micFile("100 1.5\n"), id);
    ASSERT_TRUE(extra().calibration);
    EXPECT_EQ(extra().calibration->name, "Stage");
    EXPECT_TRUE(extra().isDigital);
    engine->clearMicCalFile(id);
    EXPECT_TRUE(extra().calibration);
    EXPECT_FALSE(extra().calibration->micCalFile);
    engine->loadMicCalFile(micFile("100 1.5\n"), UUID::random());
    EXPECT_FALSE(engine->calibration().micCalFile);
}

TEST_F(ChannelCalibrationTests, theSystemsOutputIsDigitalWhateverTheRecordSays) {
    const UUID id = addChannel("B", TarvaneKit::systemOutputUID, 0).id;
    engine->setDigitalSource(false, id);
    EXPECT_FALSE(extra().isDigital);
    EXPECT_TRUE(engine->isDigitalSource(id));
    engine->setChannelDevice(id, "desk");
    EXPECT_FALSE(engine->isDigitalSource(id));
    engine->setDigitalSource(true, id);
    EXPECT_TRUE(engine->isDigitalSource(id));
    EXPECT_FALSE(engine->isDigitalSource(UUID::main()));
    engine->setDigitalSource(true, UUID::main());
    EXPECT_TRUE(engine->mainInputIsDigital());
    EXPECT_FALSE(engine->isDigitalSource(UUID::random()));
}

}  // namespace ChannelCalibrationTests
}  // namespace TarvaneApp
