#include "Metrics/LoudnessMeter.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <limits>
#include <random>
#include <thread>

#include "Core/FlushDenormals.h"
#include "Core/RealtimeScope.h"
#include "Support/EachVectorTarget.h"
#include "Support/RealtimeGuard.h"
#include "Support/ScalarLoudnessMeter.h"
#include "Support/TestSignals.h"

namespace TarvaneKit {
namespace LoudnessMeterTests {

using namespace Testing;

constexpr double noValue = -std::numeric_limits<double>::infinity();

// Any meter of either kind, mono or with the same samples in each channel.
template <class Meter>
void play(Meter& meter, std::span<const float> left, std::span<const float> right = {},
          int blockLength = 512) {
    std::size_t position = 0;
    while (position < left.size()) {
        const std::size_t count =
            std::min(left.size() - position, static_cast<std::size_t>(blockLength));
        const std::array<std::span<const float>, 2> channels{
            left.subspan(position, count), right.empty() ? right : right.subspan(position, count)};
        meter.process(std::span(channels).first(right.empty() ? 1 : 2));
        position += count;
    }
}

TEST(LoudnessMeter, tellsWhatItWasMadeWith) {
    const LoudnessMeter meter(44100, {1.0, 1.41});
    EXPECT_EQ(meter.sampleRate(), 44100);
    EXPECT_EQ(meter.channelCount(), 2);
    EXPECT_EQ(meter.channelWeights()[1], 1.41);
    EXPECT_EQ(meter.readings(), LoudnessReadings{});
}

TEST(LoudnessMeterDeathTest, needsAChannel) {
    EXPECT_DEATH(LoudnessMeter(48000, {}), "contract violated");
}

// BS.1770-4: a 0 dB full-scale 997 Hz sine in one channel reads -3.01; 20 dB below, -23.01.
TEST(LoudnessMeter, aToneOfATenthReadsMinusTwentyThree) {
    LoudnessMeter meter(48000, {1.0});
    play(meter, sine(48000, 997, 0.1, 3));
    const LoudnessReadings readings = meter.readings();
    EXPECT_NEAR(readings.momentary, -23.01, 0.01);
    EXPECT_NEAR(readings.shortTerm, -23.01, 0.01);
    EXPECT_NEAR(readings.integrated, -23.01, 0.01);
    EXPECT_EQ(readings.range, 0.0);
    EXPECT_NEAR(readings.truePeakMax, -20.0, 0.05);
    EXPECT_NEAR(readings.momentaryMax, -23.01, 0.01);
    EXPECT_EQ(readings.shortTermMax, readings.shortTerm);
    for (const LoudnessMetric metric : allCases<LoudnessMetric>()) {
        EXPECT_EQ(meter.value(metric), readings[metric]);
    }
}

// Two equal channels have twice the energy: 10 log10 2 = 3.01 dB.
TEST(LoudnessMeter, theSameToneInBothChannelsReadsThreeDecibelsMore) {
    LoudnessMeter mono(48000, {1.0});
    LoudnessMeter stereo(48000, {1.0, 1.0});
    const Samples tone = sine(48000, 997, 0.1, 3);
    play(mono, tone);
    play(stereo, tone, tone);
    EXPECT_NEAR(stereo.readings().integrated, -20.0, 0.01);
    EXPECT_NEAR(stereo.readings().momentary - mono.readings().momentary, 10 * std::log10(2.0),
                1e-9);
    EXPECT_EQ(stereo.readings().truePeakMax, mono.readings().truePeakMax);
}

TEST(LoudnessMeter, aWeightScalesAChannelsEnergy) {
    LoudnessMeter plain(48000, {1.0});
    LoudnessMeter weighted(48000, {1.41});
    const Samples tone = sine(48000, 997, 0.1, 1);
    play(plain, tone);
    play(weighted, tone);
    EXPECT_NEAR(weighted.readings().momentary - plain.readings().momentary, 10 * std::log10(1.41),
                1e-9);
}

// The filters ring on for seconds, ever fainter, in what a display would round to a number.
TEST(LoudnessMeter, aProgrammeThatEndsInSilenceHasNoLoudnessThen) {
    LoudnessMeter meter(48000.0, {1.0});
    std::vector<float> samples(48000, 0.5F);
    for (int second = 0; second < 12; ++second) {
        const std::array channels{std::span<const float>(samples)};
        meter.process(channels);
        const double momentary = meter.readings().momentary;
        EXPECT_TRUE(momentary > -200.0 || momentary == LoudnessReadings::noValue) << momentary;
        const double shortTerm = meter.readings().shortTerm;
        EXPECT_TRUE(shortTerm > -200.0 || shortTerm == LoudnessReadings::noValue) << shortTerm;
        std::ranges::fill(samples, 0.0F);
    }
    EXPECT_EQ(meter.readings().momentary, LoudnessReadings::noValue);
}

TEST(LoudnessMeter, silenceHasNoLoudness) {
    LoudnessMeter meter(48000, {1.0, 1.0});
    const Samples quiet = silence(48000, 5);
    play(meter, quiet, quiet);
    EXPECT_EQ(meter.readings(), LoudnessReadings{});
}

TEST(LoudnessMeter, windowsThatAreNotFullHaveNoValue) {
    LoudnessMeter meter(48000, {1.0});
    const Samples tone = sine(48000, 997, 0.1, 0.1);
    for (int step = 1; step <= 31; ++step) {
        play(meter, tone);
        EXPECT_EQ(std::isfinite(meter.readings().momentary), step >= 4) << step;
        EXPECT_EQ(std::isfinite(meter.readings().momentaryMax), step >= 4) << step;
        EXPECT_EQ(std::isfinite(meter.readings().integrated), step >= 4) << step;
        EXPECT_EQ(std::isfinite(meter.readings().shortTerm), step >= 30) << step;
        EXPECT_EQ(std::isfinite(meter.readings().range), step >= 30) << step;
    }
}

TEST(LoudnessMeter, integratedWaitsForABlockAboveTheAbsoluteGate) {
    LoudnessMeter meter(48000, {1.0});
    play(meter, sine(48000, 997, std::pow(10.0, -72.0 / 20), 4));  // -75 LUFS
    EXPECT_NEAR(meter.readings().momentary, -75.01, 0.01);
    EXPECT_NEAR(meter.readings().momentaryMax, -75.01, 0.02);
    EXPECT_EQ(meter.readings().integrated, noValue);
    EXPECT_EQ(meter.readings().range, noValue);
    play(meter, sine(48000, 997, 0.1, 0.4));
    EXPECT_TRUE(std::isfinite(meter.readings().integrated));
}

// The absolute gate admits a block exactly at it (BS.1770-4, annex 1, says above: the difference
// is one number). The weight is the smallest one that lifts a single block to the gate; its
// neighbour falls short.
TEST(LoudnessMeter, aBlockExactlyAtTheAbsoluteGateCountsAndTheOneBelowDoesNot) {
    const Samples tone = sine(48000, 997, 0.1, 0.4);
    const auto readingsAt = [&](double weight) {
        LoudnessMeter meter(48000, {weight});
        play(meter, tone);
        return meter.readings();
    };
    const double lifting = std::pow(10.0, (-70.0 - readingsAt(1.0).momentary) / 10.0);
    double below = lifting * (1.0 - 1e-12);
    double at = lifting * (1.0 + 1e-12);
    ASSERT_LT(readingsAt(below).momentary, -70.0);
    ASSERT_GE(readingsAt(at).momentary, -70.0);
    while (std::nextafter(below, 1.0) < at) {
        const double middle = below + (at - below) / 2.0;
        (readingsAt(middle).momentary < -70.0 ? below : at) = middle;
    }
    EXPECT_EQ(readingsAt(at).momentary, -70.0);
    EXPECT_EQ(readingsAt(at).integrated, -70.0);
    EXPECT_LT(readingsAt(below).momentary, -70.0);
    EXPECT_EQ(readingsAt(below).integrated, noValue);
    EXPECT_EQ(readingsAt(below).momentaryMax, readingsAt(below).momentary);
}

TEST(LoudnessMeter, aResetKeepsTheWindowsAndStartsTheStatistics) {
    LoudnessMeter meter(48000, {1.0});
    const Samples step = sine(48000, 1000, 0.1, 0.1);  // whole periods
    for (int i = 0; i < 40; ++i) {
        play(meter, step);
    }
    const LoudnessReadings before = meter.readings();
    meter.reset();
    LoudnessReadings after = meter.readings();
    EXPECT_EQ(after.momentary, before.momentary);
    EXPECT_EQ(after.shortTerm, before.shortTerm);
    EXPECT_EQ(after.integrated, noValue);
    EXPECT_EQ(after.range, noValue);
    EXPECT_EQ(after.truePeakMax, noValue);
    EXPECT_EQ(after.momentaryMax, noValue);
    EXPECT_EQ(after.shortTermMax, noValue);
    for (int i = 1; i <= 31; ++i) {
        play(meter, step);
        after = meter.readings();
        EXPECT_NEAR(after.momentary, before.momentary, 1e-6);
        EXPECT_NEAR(after.truePeakMax, before.truePeakMax, 0.01);
        EXPECT_EQ(std::isfinite(after.integrated), i >= 4) << i;
        EXPECT_EQ(std::isfinite(after.momentaryMax), i >= 4) << i;
        EXPECT_EQ(std::isfinite(after.range), i >= 30) << i;
        EXPECT_EQ(std::isfinite(after.shortTermMax), i >= 30) << i;
    }
}

// A tone of full scale in both channels reads 0 LUFS; weights of 10^4 lift it by 40, far above the
// last bin.
TEST(LoudnessMeter, blocksAboveTheLastBinCountInFull) {
    LoudnessMeter meter(48000, {1e4, 1e4});
    const Samples tone = sine(48000, 997, 1.0, 4);
    play(meter, tone, tone);
    EXPECT_NEAR(meter.readings().integrated, 40.0, 0.01);
    EXPECT_EQ(meter.readings().range, 0.0);
}

TEST(LoudnessMeter, theShortestChannelCutsTheOthers) {
    LoudnessMeter meter(48000, {1.0, 1.0});
    LoudnessMeter cut(48000, {1.0, 1.0});
    const Samples a = whiteNoise(48000, 0.1, 1);
    const Samples b = whiteNoise(48000, 0.1, 2);
    for (std::size_t i = 0; i + 1000 <= 48000; i += 1000) {
        const std::array<std::span<const float>, 2> uneven{std::span(a).subspan(i, 1000),
                                                           std::span(b).subspan(i, 700)};
        const std::array<std::span<const float>, 2> even{std::span(a).subspan(i, 700),
                                                         std::span(b).subspan(i, 700)};
        meter.process(uneven);
        cut.process(even);
    }
    EXPECT_TRUE(std::isfinite(cut.readings().integrated));
    EXPECT_EQ(meter.readings(), cut.readings());
}

TEST(LoudnessMeter, nothingToMeasureChangesNothing) {
    LoudnessMeter meter(48000, {1.0, 1.0});
    const Samples samples = whiteNoise(30000, 0.1, 1);
    play(meter, samples, samples);
    const LoudnessReadings before = meter.readings();
    meter.process({});
    const std::array<std::span<const float>, 2> oneEmpty{std::span<const float>(samples), {}};
    meter.process(oneEmpty);
    EXPECT_EQ(meter.readings(), before);
}

TEST(LoudnessMeter, channelsBeyondTheWeightsAreDroppedAndMissingOnesAdd) {
    LoudnessMeter mono(48000, {1.0});
    LoudnessMeter stereo(48000, {1.0, 1.0});
    LoudnessMeter reference(48000, {1.0});
    const Samples a = whiteNoise(48000, 0.1, 1);
    const Samples b = whiteNoise(48000, 0.5, 2);
    play(mono, a, b);
    play(stereo, a);
    play(reference, a);
    EXPECT_EQ(mono.readings(), reference.readings());
    EXPECT_EQ(stereo.readings(), reference.readings());
}

TEST(LoudnessMeter, asksNothingOfTheHeapHoweverLongItRuns) {
    LoudnessMeter meter(8000, {1.0});
    const Samples samples = speechLike(8000, 10, 5);
    const auto before = TarvaneTests::RealtimeGuard::counts().allocations;
    for (int round = 0; round < 60; ++round) {  // ten minutes
        const RealtimeScope scope;
        play(meter, samples);
        meter.value(LoudnessMetric::range);
        if (round == 30) {
            meter.reset();
        }
    }
    EXPECT_EQ(TarvaneTests::RealtimeGuard::counts().allocations, before);
}

// A week has 6 048 000 blocks. What they leave behind is the two histograms, of fixed size.
TEST(LoudnessMeter, aWeekOfBlocksStaysExact) {
    static_assert(sizeof(GatingHistogram) ==
                  800 * (sizeof(std::int64_t) + sizeof(double)) + 2 * sizeof(int));
    GatingHistogram week;
    constexpr int blocks = 7 * 24 * 3600 * 10;
    const auto before = TarvaneTests::RealtimeGuard::counts().allocations;
    {
        const RealtimeScope scope;
        for (int i = 0; i < blocks; ++i) {
            week.add(-30.0 + (i % 100) * 0.1 + 0.05, 1e-3);
        }
    }
    EXPECT_EQ(TarvaneTests::RealtimeGuard::counts().allocations, before);
    EXPECT_NEAR(*week.meanEnergy(0), 1e-3, 1e-14);
    // A hundred bins of 60480 blocks: rank 604800 is the first of bin 10, 5745599 the last of 94.
    EXPECT_NEAR(*week.percentileLoudness(95.0, 0) - *week.percentileLoudness(10.0, 0), 8.4, 1e-9);
}

class LoudnessOnTargets : public EachVectorTarget {};
TARVANE_ON_EACH_VECTOR_TARGET(LoudnessOnTargets);

void expectEqual(const LoudnessReadings& actual, const LoudnessReadings& expected) {
    for (const LoudnessMetric metric : allCases<LoudnessMetric>()) {
        if (metric == LoudnessMetric::truePeakMax || metric == LoudnessMetric::range ||
            !std::isfinite(expected[metric])) {
            EXPECT_EQ(actual[metric], expected[metric]) << rawValue(metric);
        } else {
            EXPECT_NEAR(actual[metric], expected[metric], 1e-9) << rawValue(metric);
        }
    }
}

TEST_P(LoudnessOnTargets, readsWhatThePlainFormulasReadInBlocksOfAnySize) {
    for (const double rate : {8000.0, 44100.0, 48000.0, 96000.0, 192000.0, 384000.0}) {
        const Samples left = speechLike(rate, 5, 1);
        const Samples right = whiteNoise(static_cast<int>(left.size()), 0.05, 2);
        ScalarLoudnessMeter plain(rate, {1.0, 1.0});
        play(plain, left, right, 8192);
        for (const int size : {1, 64, 235, 256, 512, 1023, 8192}) {
            if (size == 1 && rate > 50000) {
                continue;
            }
            LoudnessMeter meter(rate, {1.0, 1.0});
            play(meter, left, right, size);
            SCOPED_TRACE(std::to_string(rate) + " Hz, blocks of " + std::to_string(size));
            expectEqual(meter.readings(), plain.readings());
        }
    }
}

TEST_P(LoudnessOnTargets, readsWhatThePlainFormulasReadAcrossResetsAndLevels) {
    for (unsigned seed = 1; seed <= 8; ++seed) {
        std::mt19937 random(seed);
        std::uniform_real_distribution<double> decibels(-100.0, 0.0);
        LoudnessMeter meter(48000, {1.0, 1.0});
        ScalarLoudnessMeter plain(48000, {1.0, 1.0});
        for (int part = 0; part < 12; ++part) {
            const int count = static_cast<int>(random() % 60000) + 1;
            const Samples left = whiteNoise(count, std::pow(10.0, decibels(random) / 20),
                                            static_cast<unsigned>(random()));
            const Samples right = whiteNoise(count, std::pow(10.0, decibels(random) / 20),
                                             static_cast<unsigned>(random()));
            const int size = static_cast<int>(random() % 8192) + 1;
            play(meter, left, right, size);
            play(plain, left, right, size);
            SCOPED_TRACE("seed " + std::to_string(seed) + ", part " + std::to_string(part));
            expectEqual(meter.readings(), plain.readings());
            if (random() % 4 == 0) {
                meter.reset();
                plain.reset();
            }
        }
    }
}

TEST_P(LoudnessOnTargets, fullScaleSilenceAndTheSmallestNumbersReadAsPlain) {
    Samples signal = sine(48000, 12000, 1.0, 1, 45);
    append(signal, Samples(48000, 1.0F));
    append(signal, silence(48000, 0.5));
    append(signal, whiteNoise(24000, 1e-20, 3));
    append(signal, whiteNoise(24000, 1e-39, 3));
    append(signal, silence(48000, 1));
    append(signal, sine(48000, 997, 1.0, 1));
    for (const bool flushes : {false, true}) {
        LoudnessMeter meter(48000, {1.0});
        ScalarLoudnessMeter plain(48000, {1.0});
        const auto both = [&] {
            play(meter, signal);
            play(plain, signal);
        };
        if (flushes) {
            const FlushDenormals flush;
            both();
        } else {
            both();
        }
        expectEqual(meter.readings(), plain.readings());
    }
}

// A maximum of before the reset must not come back, and none of after it may be missed, wherever
// in a call the reset falls. The tone repeats in each block, so each block has the same peak.
TEST(LoudnessMeter, aResetDuringABlockForgetsThePeakOfBefore) {
    const Samples loud(512, 1.0F);
    const Samples tone = sine(48000, 750, 0.1, 8 * 512 / 48000.0);
    ScalarTruePeak plain(48000, 24);
    plain.processBlock(tone);
    const double peakDB = 20.0 * std::log10(plain.processBlock(tone));
    LoudnessMeter meter(48000, {1.0});
    for (int round = 0; round < 200; ++round) {
        play(meter, loud);
        play(meter, tone);
        std::atomic<bool> isPlaying = false;
        std::thread capture([&] {
            isPlaying = true;
            play(meter, tone, {}, 4096);
            play(meter, tone);
        });
        while (!isPlaying) {
        }
        for (int wait = 0; wait < round % 50; ++wait) {
            meter.value(LoudnessMetric::momentary);
        }
        meter.reset();
        capture.join();
        const double reading = meter.readings().truePeakMax;
        EXPECT_TRUE(reading == noValue || reading == peakDB) << reading;
    }
}

TEST(LoudnessMeter, readersAndResetsRunBesideTheAudio) {
    LoudnessMeter meter(48000, {1.0, 1.0});
    LoudnessMeter alone(48000, {1.0, 1.0});
    const Samples samples = speechLike(48000, 10, 9);
    std::atomic<bool> isDone = false;
    std::vector<std::thread> readers;
    for (int i = 0; i < 2; ++i) {
        readers.emplace_back([&, i] {
            while (!isDone) {
                const LoudnessReadings readings = meter.readings();
                EXPECT_FALSE(std::isnan(readings.integrated));
                EXPECT_LE(readings.momentaryMax, 0.0);
                if (i == 1) {
                    meter.reset();
                }
            }
        });
    }
    play(meter, samples, samples);
    isDone = true;
    for (std::thread& reader : readers) {
        reader.join();
    }
    play(alone, samples, samples);
    EXPECT_EQ(meter.readings().momentary, alone.readings().momentary);
    EXPECT_EQ(meter.readings().shortTerm, alone.readings().shortTerm);
    meter.reset();
    alone.reset();
    play(meter, samples, samples);
    play(alone, samples, samples);
    EXPECT_EQ(meter.readings(), alone.readings());
}

}  // namespace LoudnessMeterTests
}  // namespace TarvaneKit
