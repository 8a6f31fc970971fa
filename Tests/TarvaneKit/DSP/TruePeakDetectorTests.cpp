#include "DSP/TruePeakDetector.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "Core/FlushDenormals.h"
#include "Support/EachVectorTarget.h"
#include "Support/ScalarLoudnessMeter.h"
#include "Support/TestSignals.h"

namespace TarvaneKit {
namespace TruePeakDetectorTests {

using namespace Testing;

constexpr double infinity = std::numeric_limits<double>::infinity();

TEST(TruePeakDetector, oversamplesByTheSampleRate) {
    EXPECT_EQ(TruePeakDetector(44100, 24).oversamplingFactor(), 4);
    EXPECT_EQ(TruePeakDetector(95999, 24).oversamplingFactor(), 4);
    EXPECT_EQ(TruePeakDetector(96000, 24).oversamplingFactor(), 2);
    EXPECT_EQ(TruePeakDetector(191999, 24).oversamplingFactor(), 2);
    const TruePeakDetector plain(192000, 24);
    EXPECT_EQ(plain.oversamplingFactor(), 1);
    EXPECT_EQ(plain.tapsPerPhase(), 1);
    ASSERT_EQ(plain.coefficients().size(), 1U);
    EXPECT_EQ(plain.coefficients()[0], 1.0);
}

TEST(TruePeakDetector, interpolatesWithAKaiserWindowedSinc) {
    const TruePeakDetector detector(48000, 24);
    const auto c = detector.coefficients();
    ASSERT_EQ(c.size(), 96U);
    for (int j = 0; j < 24; ++j) {
        EXPECT_EQ(c[static_cast<std::size_t>(j)], j == 12 ? 1.0 : 0.0);
    }
    // Half a sample off the centre: sinc(1/2) = 2/pi and sinc(3/2) = -2/(3 pi), each times the
    // window at 1/24 and 3/24 of its half width.
    const auto half = c.subspan(48, 24);
    EXPECT_NEAR(half[10], -0.20329, 5e-6);
    EXPECT_NEAR(half[11], 0.63360, 5e-6);
    EXPECT_NEAR(half[12], 0.63360, 5e-6);
    EXPECT_NEAR(half[13], -0.20329, 5e-6);
    for (int phase = 1; phase < 4; ++phase) {
        double sum = 0.0;
        for (const double tap : c.subspan(static_cast<std::size_t>(24 * phase), 24)) {
            sum += tap;
        }
        EXPECT_NEAR(sum, 1.0, 0.0004);  // not normalised: droops by the window's ripple
    }
}

TEST(TruePeakDetector, itsTableIsThePlainDesignsAndMirrored) {
    for (const double rate : {48000.0, 96000.0}) {
        for (const int taps : {1, 2, 12, 24, 25, 32, 48}) {
            const TruePeakDetector detector(rate, taps);
            const ScalarTruePeak plain(rate, taps);
            const auto c = detector.coefficients();
            ASSERT_EQ(c.size(), plain.coefficients.size());
            const auto at = [&](int phase, int j) {
                return c[static_cast<std::size_t>(phase * taps + j)];
            };
            for (std::size_t i = 0; i < c.size(); ++i) {
                EXPECT_EQ(c[i], plain.coefficients[i]) << rate << ' ' << taps;
            }
            for (int phase = 1; taps % 2 == 0 && phase < detector.oversamplingFactor(); ++phase) {
                for (int j = 0; j < taps; ++j) {
                    EXPECT_EQ(at(phase, j),
                              at(detector.oversamplingFactor() - phase, taps - 1 - j));
                }
            }
        }
    }
}

class TruePeakOnTargets : public EachVectorTarget {};
TARVANE_ON_EACH_VECTOR_TARGET(TruePeakOnTargets);

TEST_P(TruePeakOnTargets, anEmptyBlockReadsZeroAndChangesNothing) {
    TruePeakDetector a(48000, 24);
    TruePeakDetector b(48000, 24);
    const Samples samples = whiteNoise(100, 0.3, 1);
    EXPECT_EQ(a.processBlock(samples), b.processBlock(samples));
    EXPECT_EQ(a.processBlock({}), 0.0);
    EXPECT_EQ(a.maxLinear(), b.maxLinear());
    const Samples quiet(10, 0.01F);
    EXPECT_EQ(a.processBlock(quiet), b.processBlock(quiet));
}

TEST_P(TruePeakOnTargets, silenceHasNoPeak) {
    TruePeakDetector detector(48000, 24);
    EXPECT_EQ(detector.maxDBTP(), -infinity);
    EXPECT_EQ(detector.processBlock(Samples(1000)), 0.0);
    EXPECT_EQ(detector.maxDBTP(), -infinity);
}

TEST_P(TruePeakOnTargets, from192kHzOnTheSamplesAloneCount) {
    for (const double rate : {192000.0, 384000.0}) {
        TruePeakDetector detector(rate, 24);
        const Samples tone = sine(rate, rate / 4, 1.0, 0.01, 45);
        detector.processBlock(tone);
        double largest = 0.0;
        for (const float sample : tone) {
            largest = std::max(largest, std::abs(static_cast<double>(sample)));
        }
        EXPECT_EQ(detector.maxLinear(), largest);
        EXPECT_EQ(detector.maxDBTP(), 20.0 * std::log10(largest));
    }
}

TEST_P(TruePeakOnTargets, findsThePeakBetweenTheSamplesOfAQuarterRateTone) {
    TruePeakDetector detector(48000, 24);
    Samples tone = sine(48000, 12000, 1.0, 0.1, 45);
    for (std::size_t i = 0; i < 48; ++i) {  // faded in, so that no edge overshoots
        tone[i] *= static_cast<float>(i) / 48.0F;
    }
    detector.processBlock(tone);
    EXPECT_NEAR(*std::ranges::max_element(tone), std::sqrt(0.5), 1e-6);
    // EBU Tech 3341, table 1: +0.2, -0.4 dB.
    EXPECT_LT(detector.maxDBTP(), 0.2);
    EXPECT_GT(detector.maxDBTP(), -0.4);
}

TEST_P(TruePeakOnTargets, aToneOfAnyFrequencyReadsItsAmplitude) {
    for (const double rate : {44100.0, 48000.0}) {
        for (const double hertz : {40.0, 997.0, 7000.0, 11987.0, 15000.0, 17957.0}) {
            TruePeakDetector detector(rate, 24);
            Samples tone = sine(rate, hertz, 0.5, 1);
            for (std::size_t i = 0; i < 4800; ++i) {
                tone[i] *= static_cast<float>(i) / 4800.0F;
            }
            detector.processBlock(tone);
            // Four values a sample miss a peak by at most an eighth of a sample.
            const double missed = std::cos(2.0 * std::numbers::pi * hertz / rate / 8.0);
            EXPECT_GT(detector.maxDBTP(), 20.0 * std::log10(0.5 * missed) - 0.01) << hertz;
            EXPECT_LT(detector.maxDBTP(), 20.0 * std::log10(0.5) + 0.02) << hertz;
        }
    }
}

TEST_P(TruePeakOnTargets, resetMaxKeepsTheHistory) {
    TruePeakDetector detector(48000, 24);
    const Samples loud(24, 1.0F);
    detector.processBlock(loud);
    detector.resetMax();
    EXPECT_EQ(detector.maxLinear(), 0.0);
    // Samples of 0, but interpolation from the ones before reaches beyond them.
    EXPECT_GT(detector.processBlock(Samples(4)), 0.5);
    detector.processBlock(loud);
    detector.reset();
    EXPECT_EQ(detector.processBlock(Samples(4)), 0.0);
}

TEST_P(TruePeakOnTargets, oneSampleAtATimeReadsAsABlock) {
    TruePeakDetector single(48000, 24);
    TruePeakDetector block(48000, 24);
    const Samples samples = whiteNoise(2000, 0.3, 7);
    for (const float sample : samples) {
        single.process(static_cast<double>(sample));
    }
    EXPECT_EQ(single.maxLinear(), block.processBlock(samples));
    single.process(1.0 + 1e-9);  // narrowed to 1
    single.resetMax();
    block.process(1.0);
    block.resetMax();
    single.process(0.0);
    block.process(0.0);
    EXPECT_EQ(single.maxLinear(), block.maxLinear());
}

// What a detector reads from block to block, beside the plain one's reading, bit for bit.
void expectThePlainReading(std::span<const float> samples, double rate, int taps, int size) {
    TruePeakDetector detector(rate, taps);
    TruePeakDetector raised(rate, taps);
    ScalarTruePeak plain(rate, taps);
    double maximum = 0.0;
    while (!samples.empty()) {
        const auto block = samples.first(std::min(samples.size(), static_cast<std::size_t>(size)));
        samples = samples.subspan(block.size());
        const double expected = plain.processBlock(block);
        ASSERT_EQ(detector.processBlock(block), expected)
            << rate << " Hz, " << taps << " taps, blocks of " << size;
        const double before = maximum;
        maximum = std::max(maximum, expected);
        ASSERT_EQ(raised.raise(before, block), maximum)
            << rate << " Hz, " << taps << " taps, blocks of " << size;
    }
    EXPECT_EQ(detector.maxLinear(), maximum);
}

std::vector<Samples> difficultSignals() {
    std::vector<Samples> signals;
    signals.push_back(whiteNoise(6000, 0.2, 11));
    signals.push_back(sweep(48000, 1.0, 0.2));
    signals.push_back(speechLike(48000, 0.2, 3));
    for (const double phase : {0.0, 22.5, 45.0}) {  // where every value is as large as the last
        signals.push_back(sine(48000, 12000, 1.0, 0.05, phase));
        signals.push_back(sine(48000, 6000, 0.5, 0.05, phase));
        signals.push_back(sine(48000, 997, 0.9, 0.1, phase));
    }
    Samples alternating(3000, 1.0F);
    for (std::size_t i = 0; i < alternating.size(); i += 2) {
        alternating[i] = -1.0F;
    }
    signals.push_back(alternating);
    signals.push_back(Samples(3000, 0.7F));
    Samples impulses(3000);
    for (std::size_t i = 5; i < impulses.size(); i += 97) {
        impulses[i] = i % 2 == 0 ? 1.0F : -0.3F;
    }
    signals.push_back(impulses);
    // Loud, then fading through the smallest numbers into silence.
    Samples fading = whiteNoise(6000, 1.0, 12);
    for (std::size_t i = 0; i < fading.size(); ++i) {
        fading[i] *= static_cast<float>(std::pow(10.0, -static_cast<double>(i) / 120.0));
    }
    signals.push_back(fading);
    // Differences of single units in the last place decide.
    Samples units = sine(48000, 12000, 1.0, 0.1, 45);
    std::mt19937 random(9);
    for (float& sample : units) {
        for (unsigned k = random() % 4; k > 0; --k) {
            sample = std::nextafter(sample, 0.0F);
        }
    }
    signals.push_back(units);
    Samples huge = whiteNoise(2000, 0.2, 13);
    for (float& sample : huge) {
        sample *= 1e38F;
    }
    signals.push_back(huge);
    return signals;
}

TEST_P(TruePeakOnTargets, everyBlockReadsBitForBitWhatThePlainFormulaReads) {
    const auto signals = difficultSignals();
    for (std::size_t i = 0; i < signals.size(); ++i) {
        SCOPED_TRACE("signal " + std::to_string(i));
        for (const int size : {1, 7, 31, 32, 33, 235, 256, 512, 513, 1000, 8192}) {
            expectThePlainReading(signals[i], 48000, 24, size);
        }
        for (const double rate :
             {8000.0, 44100.0, 88200.0, 96000.0, 176400.0, 192000.0, 384000.0}) {
            expectThePlainReading(signals[i], rate, 24, 256);
        }
        const FlushDenormals flush;
        expectThePlainReading(signals[i], 48000, 24, 512);
        expectThePlainReading(signals[i], 96000, 24, 512);
    }
}

TEST_P(TruePeakOnTargets, anyNumberOfTapsWorks) {
    const Samples samples = whiteNoise(4000, 0.3, 21);
    for (const int taps : {1, 2, 3, 8, 12, 25, 32, 33, 34, 64, 127, 128}) {
        for (const double rate : {48000.0, 96000.0}) {
            expectThePlainReading(samples, rate, taps, 512);
            expectThePlainReading(samples, rate, taps, 10);
        }
    }
}

TEST_P(TruePeakOnTargets, manyRandomProgrammesReadAsThePlainFormulaDoes) {
    std::minstd_rand random(77);
    for (int round = 0; round < 60; ++round) {
        std::uniform_int_distribution<int> length(1, 4000);
        std::uniform_real_distribution<double> decibels(-90.0, 0.0);
        Samples samples;
        for (int part = 0; part < 5; ++part) {
            append(samples, whiteNoise(length(random), std::pow(10.0, decibels(random) / 20),
                                       static_cast<unsigned>(random())));
        }
        expectThePlainReading(samples, 48000, 24, 1 + static_cast<int>(random() % 8192));
    }
}

TEST_P(TruePeakOnTargets, aDetectorTakenBackReadsTheSameAgain) {
    TruePeakDetector detector(48000, 24);
    const Samples samples = whiteNoise(600, 0.3, 31);
    detector.processBlock(samples);
    const Samples past(detector.history().begin(), detector.history().end());
    const Samples block = whiteNoise(100, 0.1, 32);
    const double first = detector.processBlock(block);
    EXPECT_NE(detector.processBlock(block), first);
    detector.setHistory(past);
    EXPECT_EQ(detector.processBlock(block), first);
}

}  // namespace TruePeakDetectorTests
}  // namespace TarvaneKit
