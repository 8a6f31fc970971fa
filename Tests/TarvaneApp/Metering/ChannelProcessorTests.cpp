#include "Metering/ChannelProcessor.h"

#include <gtest/gtest.h>

#include <cmath>
#include <deque>
#include <limits>
#include <random>

#include "Core/RealtimeScope.h"
#include "Support/RealtimeGuard.h"
#include "TarvaneApp/Engine/EngineFixture.h"

namespace TarvaneApp {
namespace ChannelProcessorTests {

using TarvaneKit::LoudnessMetric;
using TarvaneKit::SPLMetric;
using TarvaneKit::TimeWeighting;
using TarvaneKit::UUID;
using TarvaneKit::Weighting;
using TarvaneTests::sine;

constexpr double infinity = std::numeric_limits<double>::infinity();
const SPLMetric zNone = SPLMetric::spl(Weighting::z, TimeWeighting::none);
const SPLMetric zPeak = SPLMetric::peak(Weighting::z);

ChannelFrame analyze(ChannelProcessor& processor) {
    return processor.analyze({}, {});
}

void ingest(ChannelProcessor& processor, const std::vector<float>& left) {
    processor.ingest(left.data(), nullptr, static_cast<int>(left.size()));
}
void ingest(ChannelProcessor& processor, const std::vector<float>& left,
            const std::vector<float>& right) {
    processor.ingest(left.data(), right.data(), static_cast<int>(left.size()));
}

class ChannelProcessorTests : public testing::Test {
  protected:
    ChannelProcessorTests() {
        mono.configure({});
        stereo.configure({});
    }
    ChannelProcessor mono{UUID::main(), false};
    ChannelProcessor stereo{UUID::main(), true};
};

TEST_F(ChannelProcessorTests, dropsEverythingUntilConfigured) {
    ChannelProcessor fresh(UUID::main(), false);
    ingest(fresh, {1.0F, 0.5F});
    EXPECT_EQ(fresh.value(zNone), -infinity);
    EXPECT_EQ(fresh.values(std::array{zNone, zPeak}), (std::vector{-infinity, -infinity}));
    EXPECT_FALSE(fresh.sideValues(zNone));
    EXPECT_EQ(fresh.leqElapsedFraction(), 0.0);
    EXPECT_EQ(analyze(fresh).peak, 0.0F);
    fresh.configure({});
    EXPECT_EQ(fresh.accumulatedCount(), 0);
}

TEST_F(ChannelProcessorTests, aDroppedBlockLeavesPeakAndMetersUnchanged) {
    ingest(mono, sine(1000.0, 0.1, 4800));
    analyze(mono);
    const double before = mono.value(zPeak);
    mono.setDropsIncomingAudio(true);
    ingest(mono, {1.0F});
    EXPECT_EQ(mono.value(zPeak), before);
    EXPECT_EQ(analyze(mono).peak, 0.0F);
    EXPECT_EQ(mono.accumulatedCount(), 4800);
}

TEST_F(ChannelProcessorTests, aStalledAnalysisCostsTheOldestSamplesAlone) {
    for (int i = 0; i < 65536 / 256; ++i) {
        ingest(mono, std::vector<float>(256, 0.25F));
    }
    EXPECT_EQ(mono.accumulatedCount(), 65536);
    ingest(mono, std::vector<float>(256, 0.5F));
    EXPECT_EQ(mono.accumulatedCount(), 16384);
}

TEST_F(ChannelProcessorTests, aMissingRightSideIsSilentAndKeepsTheBuffersAligned) {
    ingest(stereo, sine(1000.0, 0.1, 4800));
    EXPECT_EQ(stereo.accumulatedCount(), 4800);
    EXPECT_EQ(stereo.accumulatedRightCount(), 4800);
    const auto sides = stereo.sideValues(zNone);
    ASSERT_TRUE(sides);
    EXPECT_NEAR((*sides)[0], -23.0103, 0.001);
    EXPECT_EQ((*sides)[1], -240.0);
}

TEST_F(ChannelProcessorTests, aMonoChannelIgnoresARightSide) {
    ingest(mono, std::vector<float>(64, 0.1F), std::vector<float>(64, 1.0F));
    EXPECT_NEAR(mono.value(zPeak), -20.0, 1e-6);
    EXPECT_EQ(mono.accumulatedRightCount(), 0);
    EXPECT_FLOAT_EQ(analyze(mono).peak, 0.1F);
    EXPECT_FALSE(mono.sideValues(zNone));
}

TEST_F(ChannelProcessorTests, sidesCombineAsMeanEnergyAndHigherPeak) {
    ingest(stereo, std::vector<float>(64, 0.1F), std::vector<float>(64, 0.0F));
    // Half the energy of −20 dB; the silent side's −240 dB adds nothing.
    EXPECT_NEAR(stereo.value(zNone), -20.0 - 10.0 * std::log10(2.0), 1e-6);
    EXPECT_NEAR(stereo.value(zPeak), -20.0, 1e-6);
    const auto values = stereo.values(std::array{zNone, zPeak});
    EXPECT_EQ(values[0], stereo.value(zNone));
    EXPECT_EQ(values[1], stereo.value(zPeak));
}

TEST_F(ChannelProcessorTests, aSideWithoutAValueCountsAsNoEnergy) {
    // Only the left side gets blocks, so only its Leq has begun.
    stereo.configureLeq(Weighting::z, 60.0);
    ingest(stereo, std::vector<float>(4800, 0.1F));
    const auto sides = stereo.sideValues(SPLMetric::leq("user"));
    ASSERT_TRUE(sides);
    EXPECT_EQ((*sides)[1], -infinity);
    EXPECT_NEAR(stereo.value(SPLMetric::leq("user")), -23.0103, 0.001);
    EXPECT_EQ(stereo.value(SPLMetric::leq("unknown")), -infinity);
}

TEST_F(ChannelProcessorTests, thePeakIsTheLargestOfEitherSideSinceTheLastAnalysis) {
    ingest(stereo, {0.1F, -0.3F}, {0.2F, 0.0F});
    ingest(stereo, {0.1F, 0.1F}, {-0.6F, 0.0F});
    EXPECT_EQ(analyze(stereo).peak, 0.6F);
    EXPECT_EQ(analyze(stereo).peak, 0.0F);
}

TEST_F(ChannelProcessorTests, samplesThatAreNotFiniteCountAsZeroAndPoisonNothing) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float inf = std::numeric_limits<float>::infinity();
    ingest(mono, {nan, inf, -inf, 0.5F, nan, -nan, inf});
    EXPECT_EQ(analyze(mono).peak, 0.5F);
    EXPECT_NEAR(mono.value(zPeak), 20.0 * std::log10(0.5), 1e-9);
    for (int i = 0; i < 20; ++i) {
        ingest(mono, sine(1000.0, 0.1, 4800, 4800 * i));
    }
    for (const auto weighting : TarvaneKit::allCases<Weighting>()) {
        EXPECT_NEAR(mono.value(SPLMetric::spl(weighting, TimeWeighting::none)), -23.0103, 0.01);
    }
}

TEST_F(ChannelProcessorTests, aBurstThatNoDeviceDeliversIsSoonForgotten) {
    ingest(mono, std::vector<float>(480, 1e38F));
    for (int i = 0; i < 15; ++i) {
        ingest(mono, sine(1000.0, 0.1, 4800, 4800 * i));
    }
    EXPECT_LT(mono.value(SPLMetric::spl(Weighting::z, TimeWeighting::fast)), 0.0);
}

// The capture thread takes readings only where nobody else does.
TEST_F(ChannelProcessorTests, readingsWaitUntilTheyAreTaken) {
    const std::size_t count = ChannelProcessor::recordedMetrics().size();
    EXPECT_TRUE(mono.takeReadings().readings.empty());
    ingest(mono, sine(1000.0, 0.1, 800));
    auto taken = mono.takeReadings();
    ASSERT_EQ(taken.readings.size(), 1U);
    EXPECT_EQ(taken.readings[0].endFrame, 800);
    EXPECT_EQ(taken.readings[0].frameCount, 800);
    EXPECT_EQ(taken.values, mono.values(ChannelProcessor::recordedMetrics()));
    EXPECT_TRUE(mono.takeReadings().readings.empty()) << "no audio, no level";
    for (int i = 0; i < 10; ++i) {
        ingest(mono, sine(1000.0, 0.1 * (i + 1), 800));
    }
    taken = mono.takeReadings();
    ASSERT_EQ(taken.readings.size(), 5U);
    EXPECT_EQ(taken.frame, 8800);
    for (std::size_t i = 0; i < taken.readings.size(); ++i) {
        EXPECT_EQ(taken.readings[i].endFrame, 800 + 1600 * static_cast<int>(i + 1));
        EXPECT_EQ(taken.readings[i].frameCount, 1600);
    }
    EXPECT_LT(taken.valuesOf(taken.readings[0], count)[0],
              taken.valuesOf(taken.readings[4], count)[0]);
}

TEST_F(ChannelProcessorTests, aHoleEndsAReadingAndTakesItsTime) {
    ingest(stereo, sine(1000.0, 0.1, 9600), sine(1000.0, 0.1, 9600));
    stereo.skip(1000);
    ingest(stereo, sine(1000.0, 0.1, 9600), sine(1000.0, 0.1, 9600));
    const auto taken = stereo.takeReadings();
    ASSERT_EQ(taken.readings.size(), 2U);
    EXPECT_EQ(taken.readings[0].endFrame, 9600);
    EXPECT_EQ(taken.readings[1].endFrame, 20200);
    EXPECT_EQ(taken.readings[1].frameCount, 4800) << "the filters settle for 0.1 s";
    ASSERT_EQ(taken.holes.size(), 1U);
    EXPECT_EQ(taken.holes[0].endFrame, 10600);
    EXPECT_EQ(taken.holes[0].frameCount, 1000);
    EXPECT_EQ(stereo.accumulatedCount(), 9600) << "no spectrum reaches across the hole";
    EXPECT_EQ(stereo.accumulatedRightCount(), 9600);
}

TEST_F(ChannelProcessorTests, aHoleWhilePausedIsNone) {
    ingest(mono, sine(1000.0, 0.1, 9600));
    mono.takeReadings();
    mono.setDropsIncomingAudio(true);
    mono.skip(1000);
    mono.resumeAfterPause();
    EXPECT_TRUE(mono.takeReadings().holes.empty());
}

TEST_F(ChannelProcessorTests, aHoleLeavesNoTraceInTheTruePeak) {
    mono.setMeasuresLoudness(true);
    ingest(mono, std::vector<float>(9600, 0.1F));
    mono.resetLoudness();
    mono.skip(4800);
    for (int i = 0; i < 20; ++i) {
        ingest(mono, sine(1000.0, 0.1, 4800, 4800 * i));
    }
    EXPECT_NEAR(mono.loudnessReadings()->truePeakMax, -20.0, 0.1);
    EXPECT_NEAR(mono.loudnessReadings()->momentaryMax, -23.0, 0.1);
}

TEST_F(ChannelProcessorTests, anEmptyBlockAddsNothing) {
    mono.ingest(nullptr, nullptr, 0);
    EXPECT_EQ(mono.accumulatedCount(), 0);
    EXPECT_EQ(mono.value(zNone), -240.0);
}

TEST_F(ChannelProcessorTests, ingestAllocatesNothingOnceConfigured) {
    const auto samples = sine(1000.0, 0.5, 8192);
    const auto before = TarvaneTests::RealtimeGuard::counts().allocations;
    {
        const TarvaneKit::RealtimeScope scope;
        for (int round = 0; round < 20; ++round) {
            for (const int frames : {1, 64, 235, 236, 256, 1000, 8192}) {
                mono.ingest(samples.data(), nullptr, frames);
                stereo.ingest(samples.data(), samples.data(), frames);
                stereo.ingest(samples.data(), nullptr, frames);
            }
        }
    }
    EXPECT_EQ(TarvaneTests::RealtimeGuard::counts().allocations, before);
}

TEST_F(ChannelProcessorTests, ingestAllocatesNothingWhileMeasuringLoudness) {
    mono.setMeasuresLoudness(true);
    stereo.setMeasuresLoudness(true);
    const auto samples = sine(1000.0, 0.5, 8192);
    const auto before = TarvaneTests::RealtimeGuard::counts();
    {
        const TarvaneKit::RealtimeScope scope;
        for (int round = 0; round < 20; ++round) {
            mono.ingest(samples.data(), nullptr, 8192);
            stereo.ingest(samples.data(), samples.data(), 1000);
            stereo.ingest(samples.data(), nullptr, 256);
        }
    }
    const auto after = TarvaneTests::RealtimeGuard::counts();
    EXPECT_EQ(after.allocations, before.allocations);
    EXPECT_EQ(after.releases, before.releases);
}

TEST_F(ChannelProcessorTests, loudnessOfAPairIsTheSumOfItsSides) {
    // A 997 Hz sine of amplitude 0.1 is -23.01 LUFS on one channel (BS.1770-4).
    mono.setMeasuresLoudness(true);
    stereo.setMeasuresLoudness(true);
    const auto tone = sine(997.0, 0.1, 4 * 48000);
    ingest(mono, tone);
    ingest(stereo, tone, tone);
    const auto loudness = [](LoudnessMetric metric) { return SPLMetric::loudness(metric); };
    for (const auto metric :
         {LoudnessMetric::momentary, LoudnessMetric::shortTerm, LoudnessMetric::integrated}) {
        EXPECT_NEAR(mono.value(loudness(metric)), -23.01, 0.01);
        EXPECT_NEAR(stereo.value(loudness(metric)), -20.0, 0.01);
    }
    EXPECT_FALSE(stereo.sideValues(loudness(LoudnessMetric::momentary)));

    const std::array metrics{zNone, loudness(LoudnessMetric::truePeakMax), zPeak,
                             loudness(LoudnessMetric::range)};
    const auto values = stereo.values(metrics);
    EXPECT_EQ(values[0], stereo.value(zNone));
    EXPECT_NEAR(values[1], -20.0, 0.05);
    EXPECT_EQ(values[2], stereo.value(zPeak));
    EXPECT_EQ(values[3], stereo.loudnessReadings()->range);
}

TEST_F(ChannelProcessorTests, aMissingRightSideIsSilentToTheLoudnessMeter) {
    stereo.setMeasuresLoudness(true);
    ingest(stereo, sine(997.0, 0.1, 48000));
    EXPECT_NEAR(stereo.loudnessReadings()->momentary, -23.01, 0.01);
    // And to the next block with both sides again.
    ingest(stereo, sine(997.0, 0.1, 48000), sine(997.0, 0.1, 48000));
    EXPECT_NEAR(stereo.loudnessReadings()->momentary, -20.0, 0.01);
}

TEST_F(ChannelProcessorTests, withoutALoudnessMeterThereIsNoLoudness) {
    const SPLMetric momentary = SPLMetric::loudness(LoudnessMetric::momentary);
    ingest(mono, sine(997.0, 0.1, 48000));
    EXPECT_EQ(mono.value(momentary), -infinity);
    EXPECT_EQ(mono.values(std::array{momentary, zPeak})[0], -infinity);
    EXPECT_FALSE(mono.loudnessReadings());
    ChannelProcessor fresh(UUID::main(), false);
    fresh.setMeasuresLoudness(true);
    EXPECT_FALSE(fresh.loudnessReadings());
}

TEST_F(ChannelProcessorTests, switchingLoudnessOffAndOnStartsItOver) {
    mono.setMeasuresLoudness(true);
    ingest(mono, sine(997.0, 0.1, 48000));
    mono.setMeasuresLoudness(true);
    EXPECT_NEAR(mono.loudnessReadings()->integrated, -23.01, 0.01);
    mono.setMeasuresLoudness(false);
    EXPECT_FALSE(mono.loudnessReadings());
    mono.setMeasuresLoudness(true);
    EXPECT_EQ(mono.loudnessReadings()->momentary, -infinity);
}

TEST_F(ChannelProcessorTests, aLoudnessResetKeepsTheRunningWindows) {
    mono.setMeasuresLoudness(true);
    ingest(mono, sine(997.0, 0.1, 48000));
    mono.resetLoudness();
    EXPECT_NEAR(mono.loudnessReadings()->momentary, -23.01, 0.01);
    EXPECT_EQ(mono.loudnessReadings()->integrated, -infinity);
    EXPECT_EQ(mono.loudnessReadings()->truePeakMax, -infinity);
}

TEST_F(ChannelProcessorTests, aPausedChannelsLoudnessStandsStill) {
    mono.setMeasuresLoudness(true);
    ingest(mono, sine(997.0, 0.1, 48000));
    const auto before = *mono.loudnessReadings();
    mono.setDropsIncomingAudio(true);
    ingest(mono, sine(997.0, 1.0, 48000));
    EXPECT_EQ(*mono.loudnessReadings(), before);
}

TEST_F(ChannelProcessorTests, ingestLeavesTheCallersDenormalsAsTheyWere) {
    const volatile float smallest = std::numeric_limits<float>::min();
    ingest(mono, std::vector<float>(256, 1e-40F));
    EXPECT_GT(smallest / 2.0F, 0.0F);
}

TEST_F(ChannelProcessorTests, aBlockLargerThanAnyBeforeIsOneBlock) {
    ingest(mono, sine(1000.0, 0.1, 48000));
    EXPECT_NEAR(mono.value(zNone), -23.0103, 0.001);
    EXPECT_EQ(mono.accumulatedCount(), 48000);
}

TEST_F(ChannelProcessorTests, calibrationReachesBothSidesWithTheNextBlock) {
    TarvaneKit::CalibrationProfile profile;
    profile.reference = TarvaneKit::ReferenceCalibration{.offsetDB = 100.0,
                                                         .referenceDeviceUID = {},
                                                         .referenceDeviceName = {},
                                                         .calibratedAt = {},
                                                         .inputGainDB = {}};
    stereo.setCalibration(profile);
    ingest(stereo, sine(1000.0, 0.1, 4800), sine(1000.0, 0.1, 4800));
    EXPECT_NEAR(stereo.value(zNone), 100.0 - 23.0103, 0.001);
}

TEST(RollingBuffer, keepsTheNewestInOrderWhateverIsAppendedAndTaken) {
    // Against the rule as it reads, over blocks of any length and an analysis that comes and goes.
    RollingBuffer buffer;
    buffer.allocate();
    std::deque<float> plain;
    std::mt19937 random(3);
    float next = 0.0F;
    for (int i = 0; i < 3000; ++i) {
        const bool isStalled = i / 100 % 3 == 2;
        std::vector<float> block(random() % (isStalled ? 4000 : 2000));
        for (float& sample : block) {
            sample = next++;
        }
        if (next > 1e7F) {
            next = 0.0F;  // where floats still tell whole numbers apart
        }
        buffer.append(block);
        plain.insert(plain.end(), block.begin(), block.end());
        if (plain.size() > 65536) {
            plain.erase(plain.begin(), plain.end() - 16384);
        }
        if (!isStalled && plain.size() > 8192) {
            buffer.keepNewest(8192);
            plain.erase(plain.begin(), plain.end() - 8192);
        }
        ASSERT_EQ(buffer.count(), static_cast<int>(plain.size()));
        std::vector<float> newest(plain.size());
        buffer.copyNewest(newest);
        ASSERT_TRUE(std::ranges::equal(newest, plain)) << i;
    }
}

TEST(RollingBuffer, aBlockBeyondTheLimitLeavesItsNewestSamples) {
    RollingBuffer buffer;
    buffer.allocate();
    std::vector<float> block(100000);
    for (std::size_t i = 0; i < block.size(); ++i) {
        block[i] = static_cast<float>(i);
    }
    buffer.append(block);
    ASSERT_EQ(buffer.count(), 16384);
    std::vector<float> newest(16384);
    buffer.copyNewest(newest);
    EXPECT_EQ(newest.back(), 99999.0F);
    EXPECT_EQ(newest.front(), 100000.0F - 16384.0F);
}

}  // namespace ChannelProcessorTests
}  // namespace TarvaneApp
