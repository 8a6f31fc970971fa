#include "Metering/ChannelAnalysis.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <random>

#include "Core/RealtimeScope.h"
#include "DSP/Kernels/VectorTarget.h"
#include "Metering/ChannelProcessor.h"
#include "Support/AllNear.h"
#include "Support/RealtimeGuard.h"
#include "Support/ScalarSpectrum.h"
#include "Support/Signals.h"
#include "TarvaneApp/Engine/EngineFixture.h"

namespace TarvaneApp {
namespace ChannelAnalysisTests {

using TarvaneKit::CalibrationProfile;
using TarvaneKit::OctaveFraction;
using TarvaneKit::TimeWeighting;
using TarvaneKit::UUID;
using TarvaneKit::Testing::allNear;
using TarvaneKit::Testing::ScalarChannelAnalysis;
using TarvaneKit::Testing::whiteNoise;
using TarvaneTests::sine;

constexpr double tickSeconds = 1.0 / 60.0;
constexpr int framesPerTick = 800;
// The clock counts whole nanoseconds: a tick of it differs from 1/60 s by that much.
constexpr double clockStepDB = 1e-6;

CalibrationProfile calibratedWith(double offsetDB) {
    CalibrationProfile profile;
    profile.reference = TarvaneKit::ReferenceCalibration{.offsetDB = offsetDB,
                                                         .referenceDeviceUID = {},
                                                         .referenceDeviceName = {},
                                                         .calibratedAt = {},
                                                         .inputGainDB = {}};
    return profile;
}

CalibrationProfile withMicrophoneFile(double offsetDB) {
    CalibrationProfile profile = calibratedWith(offsetDB);
    profile.micCalFile =
        TarvaneKit::MicCalFile::parse("20 -1.5\n1000 0.0\n5000 0.7\n10000 2.5\n20000 -4.0\n");
    return profile;
}

// A channel whose ticks are driven by hand: feeds, advances the time, analyzes.
class Channel {
  public:
    explicit Channel(bool isStereo = false, const CalibrationProfile& calibration = {},
                     double sampleRate = 48000.0)
        : processor(UUID::main(), isStereo) {
        processor.configure({.sampleRate = sampleRate, .calibration = calibration});
        settings.now = *TarvaneKit::dateFromISO8601("2026-03-01T19:30:00Z");
        request.calibration = std::make_shared<const CalibrationProfile>(calibration);
        request.wantsRTA = true;
        request.wantsSpectrogram = true;
    }

    ChannelFrame tick(double seconds = tickSeconds) {
        settings.now += std::chrono::duration_cast<TarvaneKit::Date::duration>(
            std::chrono::duration<double>(seconds));
        return processor.analyze(settings, request);
    }
    void feed(std::span<const float> left, std::span<const float> right = {}) {
        processor.ingest(left.data(), right.empty() ? nullptr : right.data(),
                         static_cast<int>(left.size()));
    }
    /// A tick of a signal that has stood for ever.
    ChannelFrame tickOn(const std::vector<float>& signal) {
        feed(signal);
        return tick();
    }

    ChannelProcessor processor;
    AnalysisSettings settings;
    ChannelAnalysisRequest request;
};

const std::vector<float> noise = whiteNoise(8192, 0.1);
const std::vector<float> silence(8192, 0.0F);

TEST(ChannelAnalysisTests, belowAFullWindowOnlyThePeakComesBack) {
    Channel channel;
    channel.feed(std::vector<float>(8191, 0.25F));
    const ChannelFrame early = channel.tick();
    EXPECT_EQ(early.peak, 0.25F);
    EXPECT_FALSE(early.rta);
    EXPECT_TRUE(early.spectrogramRows.empty());
    EXPECT_EQ(channel.processor.accumulatedCount(), 8191);

    channel.feed(std::vector<float>(1, 0.5F));
    const ChannelFrame full = channel.tick();
    EXPECT_EQ(full.peak, 0.5F);
    EXPECT_TRUE(full.rta);
    EXPECT_EQ(full.spectrogramRows.size(), 1U);
}

TEST(ChannelAnalysisTests, theFirstWindowCountsAsOneTickHoweverLongTheChannelHasRun) {
    Channel channel;
    channel.settings.rtaTimeWeighting = TimeWeighting::infinite;
    channel.tick(100.0);
    channel.tickOn(noise);
    // Were the first frame worth 100 s, silence of one tick would move the mean by 0.001 dB alone;
    // two frames of one tick each make it half the power.
    const auto loud = channel.tick(0.0).rta->bandLevelsDB;
    channel.feed(silence);
    const auto mean = channel.tick().rta->bandLevelsDB;
    for (std::size_t i = 0; i < mean.size(); ++i) {
        EXPECT_NEAR(mean[i], loud[i] - 10.0 * std::log10(2.0), clockStepDB);
    }
}

TEST(ChannelAnalysisTests, anAnalysisKeepsTheNewestWindowAndNoMore) {
    Channel channel(true);
    channel.feed(whiteNoise(30000), whiteNoise(30000));
    channel.tick();
    EXPECT_EQ(channel.processor.accumulatedCount(), 8192);
    EXPECT_EQ(channel.processor.accumulatedRightCount(), 8192);
}

TEST(ChannelAnalysisTests, nobodyLookingComputesNothing) {
    Channel channel;
    channel.request.wantsRTA = false;
    channel.request.wantsSpectrogram = false;
    const ChannelFrame frame = channel.tickOn(noise);
    EXPECT_GT(frame.peak, 0.0F);
    EXPECT_FALSE(frame.rta);
    EXPECT_TRUE(frame.spectrogramRows.empty());

    channel.request.wantsRTA = true;
    EXPECT_TRUE(channel.tick().rta);
    EXPECT_TRUE(channel.tick().spectrogramRows.empty());
    channel.request.wantsRTA = false;
    channel.request.wantsSpectrogram = true;
    const ChannelFrame rows = channel.tick();
    EXPECT_FALSE(rows.rta);
    EXPECT_EQ(rows.spectrogramRows.size(), 1U);
}

TEST(ChannelAnalysisTests, aToneOnALineReadsItsAmplitudeThereAndInItsBand) {
    Channel channel;
    // Line 128 of 4096 at 48 kHz is 1500 Hz; a sine of 0.1 reads -20 dB.
    const auto frame = channel.tickOn(sine(1500.0, 0.1, 8192));
    EXPECT_NEAR(frame.rta->lineSpectrumDB[128], -20.0, 0.001);
    EXPECT_EQ(frame.rta->lineSpectrumDB.size(), 2048U);
    const auto loudest = std::ranges::max_element(frame.rta->lineSpectrumDB);
    EXPECT_EQ(loudest - frame.rta->lineSpectrumDB.begin(), 128);
    // The Hann window's three lines hold 1 + 2 (1/2)^2 of the middle one's power.
    const auto bands =
        TarvaneKit::OctaveBands::standardBands(OctaveFraction::thirdOctave, 20, 20000);
    for (std::size_t i = 0; i < bands.size(); ++i) {
        if (bands[i].lowerEdgeHz < 1500.0 && 1500.0 < bands[i].upperEdgeHz) {
            EXPECT_NEAR(frame.rta->bandLevelsDB[i], -20.0 + 10.0 * std::log10(1.5), 0.01);
        }
    }
}

TEST(ChannelAnalysisTests, silenceIsFlooredByTheAverageOnceThereIsOne) {
    Channel channel;
    const auto first = channel.tickOn(silence);
    for (const double level : first.rta->lineSpectrumDB) {
        EXPECT_NEAR(level, -180.0, 1e-9);
    }
    const auto second = channel.tick();
    for (const auto* levels : {&second.rta->lineSpectrumDB, &second.rta->bandLevelsDB}) {
        for (const double level : *levels) {
            EXPECT_EQ(level, -120.0);
        }
    }
    for (const double level : second.spectrogramRows.at(0)) {
        EXPECT_NEAR(level, -180.0, 1e-9);
    }
}

TEST(ChannelAnalysisTests, aPairIsTheMeanPowerOfItsSides) {
    Channel both(true);
    both.feed(sine(1500.0, 0.1, 8192), sine(1500.0, 0.1, 8192));
    EXPECT_NEAR(both.tick().rta->lineSpectrumDB[128], -20.0, 0.001);
    Channel oneSide(true);
    oneSide.feed(sine(1500.0, 0.1, 8192));
    EXPECT_NEAR(oneSide.tick().rta->lineSpectrumDB[128], -20.0 - 10.0 * std::log10(2.0), 0.001);
}

TEST(ChannelAnalysisTests, calibrationAndMicrophoneFileRaiseEachLine) {
    Channel channel(false, withMicrophoneFile(100.0));
    channel.feed(sine(1500.0, 0.1, 8192));
    const auto calibrated = channel.tick();
    // At 1500 Hz the file says 0.7 * 500 / 4000 dB.
    EXPECT_NEAR(calibrated.rta->lineSpectrumDB[128], 80.0 + 0.0875, 0.001);

    // New values wait for their counter, so that a tick computes no table.
    channel.request.calibration = std::make_shared<const CalibrationProfile>(calibratedWith(90.0));
    EXPECT_NEAR(channel.tick(100.0).rta->lineSpectrumDB[128], 80.0875, 0.001);
    ++channel.settings.calibrationGeneration;
    EXPECT_NEAR(channel.tick(100.0).rta->lineSpectrumDB[128], 70.0, 0.001);
}

TEST(ChannelAnalysisTests, linesToldAsEnergyPerOctaveTurnAboutOneKilohertz) {
    Channel plain;
    Channel tilted;
    tilted.request.octaveNormalized = true;
    const auto lines = plain.tickOn(noise);
    const auto normalized = tilted.tickOn(noise);
    EXPECT_EQ(normalized.rta->lineSpectrumDB[0], lines.rta->lineSpectrumDB[0]);
    for (int i = 1; i < 2048; ++i) {
        const auto index = static_cast<std::size_t>(i);
        EXPECT_NEAR(normalized.rta->lineSpectrumDB[index],
                    lines.rta->lineSpectrumDB[index] + 10.0 * std::log10(48000.0 * i / 4096 / 1000),
                    1e-9);
    }
    // Bands are energies of their own and don't tilt.
    EXPECT_EQ(normalized.rta->bandLevelsDB, lines.rta->bandLevelsDB);
}

TEST(ChannelAnalysisTests, aHoldTakesTheLevelAsItIsAndFallsSixDBASecond) {
    Channel channel;
    channel.settings.rtaTimeWeighting = TimeWeighting::slow;
    channel.tickOn(silence);
    const auto loud = channel.tickOn(sine(1500.0, 0.1, 8192));
    EXPECT_NEAR(loud.rta->linePeakHoldDB[128], -20.0, 0.001);
    EXPECT_LT(loud.rta->lineSpectrumDB[128], -30.0);
    channel.feed(silence);
    const auto later = channel.tick(2.0);
    EXPECT_NEAR(later.rta->linePeakHoldDB[128], -32.0, 0.001);
    EXPECT_EQ(later.rta->bandPeakHoldDB.size(), later.rta->bandLevelsDB.size());
}

TEST(ChannelAnalysisTests, aHoldBeginsAtMinus120) {
    Channel channel;
    const auto frame = channel.tickOn(silence);
    for (const double held : frame.rta->linePeakHoldDB) {
        EXPECT_DOUBLE_EQ(held, -120.0 - 6.0 * tickSeconds);
    }
}

TEST(ChannelAnalysisTests, anotherFractionRestartsTheHeldBandsAndKeepsTheHeldLines) {
    Channel channel;
    channel.tickOn(sine(1500.0, 0.1, 8192));
    channel.feed(silence);
    channel.tick();
    channel.request.octaveFraction = OctaveFraction::oneOctave;
    const auto frame = channel.tick();
    EXPECT_EQ(frame.rta->bandPeakHoldDB.size(), 10U);
    for (const double held : frame.rta->bandPeakHoldDB) {
        EXPECT_LE(held, -120.0);
    }
    EXPECT_NEAR(frame.rta->linePeakHoldDB[128], -20.0 - 2 * 6.0 * tickSeconds, 0.001);
}

TEST(ChannelAnalysisTests, aRaisedPeakHoldCounterClearsBothHolds) {
    Channel channel;
    channel.tickOn(noise);
    channel.feed(silence);
    EXPECT_GT(channel.tick().rta->bandPeakHoldDB[15], -100.0);
    ++channel.settings.peakHoldGeneration;
    const auto frame = channel.tick();
    EXPECT_LE(frame.rta->bandPeakHoldDB[15], -120.0);
    EXPECT_LE(frame.rta->linePeakHoldDB[100], -120.0);
}

TEST(ChannelAnalysisTests, anInfiniteMeanRunsAcrossTicksUntilItsCounterIsRaised) {
    Channel channel;
    channel.settings.rtaTimeWeighting = TimeWeighting::infinite;
    const double loud = channel.tickOn(sine(1500.0, 0.1, 8192)).rta->lineSpectrumDB[128];
    channel.feed(silence);
    // One tick of tone in n ticks.
    for (int n = 2; n <= 600; ++n) {
        const double mean = channel.tick().rta->lineSpectrumDB[128];
        ASSERT_NEAR(mean, loud - 10.0 * std::log10(n), 1e-6);
    }
    ++channel.settings.smoothingGeneration;
    EXPECT_NEAR(channel.tick().rta->lineSpectrumDB[128], -180.0, 1e-9);
}

TEST(ChannelAnalysisTests, aPauseCountsAsNoTime) {
    Channel channel;
    channel.tickOn(noise);
    ++channel.settings.timingGeneration;
    channel.feed(silence);
    const auto frame = channel.tick(3600.0);
    Channel unpaused;
    unpaused.tickOn(noise);
    unpaused.feed(silence);
    EXPECT_TRUE(allNear(frame.rta->bandLevelsDB, unpaused.tick().rta->bandLevelsDB, clockStepDB));
    EXPECT_EQ(frame.spectrogramRows.size(), 1U);
}

TEST(ChannelAnalysisTests, aSpectrumThatComesBackShowsNothingOfBefore) {
    Channel channel;
    channel.settings.rtaTimeWeighting = TimeWeighting::slow;
    channel.tickOn(noise);
    channel.request.wantsRTA = false;
    channel.feed(silence);
    EXPECT_FALSE(channel.tick().rta);
    channel.request.wantsRTA = true;
    const auto frame = channel.tick();
    EXPECT_NEAR(frame.rta->lineSpectrumDB[100], -180.0, 1e-9);
    EXPECT_LE(frame.rta->linePeakHoldDB[100], -120.0);
    EXPECT_LE(frame.rta->bandPeakHoldDB[10], -120.0);
}

TEST(ChannelAnalysisTests, aSpectrogramRisesThreeTimesAsFastAsItFalls) {
    Channel channel;
    // 997.98 Hz: the column of a frequency that lies on no line.
    channel.tickOn(silence);
    const auto at = [](const ChannelFrame& frame) { return frame.spectrogramRows.back()[580]; };
    const auto up = channel.tickOn(noise);
    Channel settled;
    const float full = at(settled.tickOn(noise));
    EXPECT_NEAR(at(up), -180.0 + (full + 180.0) * (1.0 - std::exp(-tickSeconds / 0.02)), 1e-3);
    settled.feed(silence);
    EXPECT_NEAR(at(settled.tick()), full - (full + 180.0) * (1.0 - std::exp(-tickSeconds / 0.06)),
                1e-3);
}

TEST(ChannelAnalysisTests, aSlowTickGivesTwoRowsAndAFastOneNone) {
    Channel channel;
    channel.tickOn(noise);
    EXPECT_EQ(channel.tick(1.0 / 30.0).spectrogramRows.size(), 1U);
    EXPECT_EQ(channel.tick(1.0 / 30.0).spectrogramRows.size(), 2U);
    channel.request.wantsSpectrogram = false;
    channel.tick();
    channel.request.wantsSpectrogram = true;
    std::size_t rows = 0;
    for (int i = 0; i < 100; ++i) {
        rows += channel.tick(1.0 / 120.0).spectrogramRows.size();
    }
    EXPECT_NEAR(static_cast<double>(rows), 50.0, 2.0);
}

// A tone that grows 6 dB a second: what a system on its way into feedback does.
class RisingTone {
  public:
    std::vector<float> next() {
        std::vector<float> block(framesPerTick);
        for (float& sample : block) {
            sample = static_cast<float>(amplitude_ * std::sin(phase_));
            phase_ += 2.0 * std::numbers::pi * 1250.0 / 48000.0;
            amplitude_ *= std::pow(10.0, 8.0 / 20.0 / 48000.0);
        }
        return block;
    }

  private:
    double phase_ = 0.0;
    double amplitude_ = 0.003;
};

TEST(ChannelAnalysisTests, aRisingToneRaisesAnAlertInTheFrame) {
    Channel channel;
    channel.request.ringOutEnabled = true;
    RisingTone tone;
    bool alerted = false;
    for (int i = 0; i < 240 && !alerted; ++i) {
        const auto frame = channel.tickOn(tone.next());
        if (!frame.rta) {
            continue;
        }
        ASSERT_TRUE(frame.rta->ringAlert);
        if (const auto& alert = *frame.rta->ringAlert) {
            alerted = true;
            EXPECT_NEAR(alert->frequencyHz, 1250.0, 1.0);
        }
    }
    EXPECT_TRUE(alerted);
}

TEST(ChannelAnalysisTests, ringOutSeesTheLinesNeitherAveragedNorTilted) {
    Channel channel;
    channel.request.ringOutEnabled = true;
    channel.request.octaveNormalized = true;
    channel.settings.rtaTimeWeighting = TimeWeighting::infinite;
    RisingTone tone;
    bool alerted = false;
    for (int i = 0; i < 240; ++i) {
        const auto frame = channel.tickOn(tone.next());
        alerted = alerted || (frame.rta && *frame.rta->ringAlert);
    }
    EXPECT_TRUE(alerted);
}

TEST(ChannelAnalysisTests, withoutRingOutNothingIsSaidOfAlerts) {
    Channel channel;
    EXPECT_FALSE(channel.tickOn(noise).rta->ringAlert.has_value());
    channel.request.ringOutEnabled = true;
    EXPECT_TRUE(channel.tick().rta->ringAlert.has_value());
    channel.request.ringOutEnabled = false;
    EXPECT_FALSE(channel.tick().rta->ringAlert.has_value());
}

TEST(ChannelAnalysisTests, theDetectorForgetsWhenNobodyWatchesTheSpectrum) {
    Channel channel;
    channel.request.ringOutEnabled = true;
    RisingTone tone;
    for (int i = 0; i < 40; ++i) {
        channel.tickOn(tone.next());
    }
    // The tone goes on growing unseen; its track would have been old enough by now.
    channel.request.wantsRTA = false;
    for (int i = 0; i < 200; ++i) {
        EXPECT_FALSE(channel.tickOn(tone.next()).rta);
    }
    channel.request.wantsRTA = true;
    const auto frame = channel.tickOn(tone.next());
    ASSERT_TRUE(frame.rta->ringAlert);
    EXPECT_FALSE(frame.rta->ringAlert->has_value());
}

TEST(ChannelAnalysisTests, aChangedSensitivityStartsTheDetectorOver) {
    Channel channel;
    channel.request.ringOutEnabled = true;
    RisingTone tone;
    bool alerted = false;
    for (int i = 0; i < 240 && !alerted; ++i) {
        const auto frame = channel.tickOn(tone.next());
        alerted = frame.rta && *frame.rta->ringAlert;
    }
    ASSERT_TRUE(alerted);
    channel.request.ringOutSensitivity = TarvaneKit::RingOutSensitivity::high;
    const auto frame = channel.tickOn(tone.next());
    ASSERT_TRUE(frame.rta->ringAlert);
    EXPECT_FALSE(frame.rta->ringAlert->has_value());
}

TEST(ChannelAnalysisTests, aFrameGivenBackIsFilledWithoutNewArrays) {
    Channel channel;
    channel.request.wantsSpectrogram = false;
    ChannelFrame frame = channel.tickOn(noise);
    for (int i = 0; i < 3; ++i) {
        frame = channel.processor.analyze(channel.settings, channel.request, std::move(frame));
    }
    const auto before = TarvaneTests::RealtimeGuard::counts().allocations;
    {
        const TarvaneKit::RealtimeScope scope;
        for (int i = 0; i < 10; ++i) {
            frame = channel.processor.analyze(channel.settings, channel.request, std::move(frame));
        }
    }
    EXPECT_EQ(TarvaneTests::RealtimeGuard::counts().allocations, before);
    EXPECT_EQ(frame.rta->lineSpectrumDB.size(), 2048U);
}

TEST(ChannelAnalysisTests, noSampleMakesAReadingThatIsNoNumber) {
    Channel channel(true, calibratedWith(300.0));
    const float largest = std::numeric_limits<float>::max();
    const std::vector<float> extreme(8192, largest);
    std::vector<float> denormal(8192, std::numeric_limits<float>::denorm_min());
    channel.feed(extreme, denormal);
    channel.tick();
    channel.feed(denormal, extreme);
    const auto frame = channel.tick();
    for (const auto* levels : {&frame.rta->lineSpectrumDB, &frame.rta->bandLevelsDB,
                               &frame.rta->linePeakHoldDB, &frame.rta->bandPeakHoldDB}) {
        for (const double level : *levels) {
            ASSERT_TRUE(std::isfinite(level));
        }
    }
    for (const float level : frame.spectrogramRows.at(0)) {
        ASSERT_TRUE(std::isfinite(level));
    }
}

struct PlainCase {
    const char* name;
    bool isStereo;
    double sampleRate;
    OctaveFraction fraction;
    TimeWeighting timeWeighting;
    bool octaveNormalized;
    bool hasMicrophoneFile;
};

void PrintTo(const PlainCase& plainCase, std::ostream* out) {
    *out << plainCase.name;
}

class ChannelAnalysisAgainstPlainReading : public testing::TestWithParam<PlainCase> {
  protected:
    void TearDown() override { TarvaneKit::useBestVectorTarget(); }
};

// On every instruction set, over ticks of random length. Both read the same transforms, so that
// they differ by rounding alone.
TEST_P(ChannelAnalysisAgainstPlainReading, everyArrayIsTheSame) {
    const PlainCase& with = GetParam();
    const CalibrationProfile calibration =
        with.hasMicrophoneFile ? withMicrophoneFile(94.0) : CalibrationProfile{};
    for (const TarvaneKit::VectorTarget& target : TarvaneKit::availableVectorTargets()) {
        SCOPED_TRACE(target.name);
        TarvaneKit::useVectorTarget(target);
        Channel channel(with.isStereo, calibration, with.sampleRate);
        channel.settings.rtaTimeWeighting = with.timeWeighting;
        channel.request.octaveFraction = with.fraction;
        channel.request.octaveNormalized = with.octaveNormalized;
        ScalarChannelAnalysis plain(with.sampleRate, with.fraction, [&](double frequencyHz) {
            return calibration.broadbandOffsetDB() + calibration.micCorrectionDB(frequencyHz);
        });
        std::mt19937 random(7);
        for (int tick = 0; tick < 12; ++tick) {
            const double gain = std::pow(10.0, -static_cast<double>(random() % 140) / 20.0);
            auto left = tick % 5 == 3
                            ? silence
                            : whiteNoise(8192, gain, static_cast<std::uint32_t>(random()));
            auto right = whiteNoise(8192, gain, static_cast<std::uint32_t>(random()));
            const double elapsed =
                tick == 0 ? tickSeconds : static_cast<double>(1 + random() % 100) / 1000.0;
            channel.feed(left, right);
            const auto frame = channel.tick(elapsed);
            const auto expected = plain.analyze({.timeWeighting = with.timeWeighting,
                                                 .octaveNormalized = with.octaveNormalized,
                                                 .elapsedSeconds = elapsed},
                                                left, with.isStereo ? right : std::vector<float>{});
            EXPECT_TRUE(allNear(frame.rta->bandLevelsDB, expected.bandLevelsDB, 1e-8));
            EXPECT_TRUE(allNear(frame.rta->bandPeakHoldDB, expected.bandPeakHoldDB, 1e-8));
            EXPECT_TRUE(allNear(frame.rta->lineSpectrumDB, expected.lineSpectrumDB, 1e-8));
            EXPECT_TRUE(allNear(frame.rta->linePeakHoldDB, expected.linePeakHoldDB, 1e-8));
            // To a step of 32 bits at 180 dB.
            ASSERT_TRUE(allNear(frame.spectrogramRows.back(), expected.spectrogramRow, 1.6e-5));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(
    , ChannelAnalysisAgainstPlainReading,
    testing::Values(PlainCase{"mono", false, 48000.0, OctaveFraction::thirdOctave,
                              TimeWeighting::fast, false, false},
                    PlainCase{"stereoCalibrated", true, 48000.0, OctaveFraction::fortyEighthOctave,
                              TimeWeighting::slow, true, true},
                    PlainCase{"slowRate", true, 8000.0, OctaveFraction::twelfthOctave,
                              TimeWeighting::infinite, true, false},
                    PlainCase{"fastRate", false, 384000.0, OctaveFraction::oneOctave,
                              TimeWeighting::none, false, true}),
    [](const auto& instance) { return instance.param.name; });

}  // namespace ChannelAnalysisTests
}  // namespace TarvaneApp
