#include "DSP/KWeightingFilter.h"

#include <gtest/gtest.h>

#include <cmath>

#include "Support/EachVectorTarget.h"
#include "Support/ScalarLoudnessMeter.h"
#include "Support/TestSignals.h"

namespace TarvaneKit {
namespace KWeightingFilterTests {

using namespace Testing;

constexpr double rates[] = {8000, 44100, 48000, 88200, 96000, 176400, 192000, 384000};

// ITU-R BS.1770-4, annex 1, tables 1 and 2, which print 14 decimals.
TEST(KWeightingFilter, reproducesTheTablesOfTheStandardAt48kHz) {
    const KWeightingFilter filter(48000);
    EXPECT_NEAR(filter.shelf().b0, 1.53512485958697, 1e-13);
    EXPECT_NEAR(filter.shelf().b1, -2.69169618940638, 1e-13);
    EXPECT_NEAR(filter.shelf().b2, 1.19839281085285, 1e-13);
    EXPECT_NEAR(filter.shelf().a1, -1.69065929318241, 1e-13);
    EXPECT_NEAR(filter.shelf().a2, 0.73248077421585, 1e-13);
    EXPECT_EQ(filter.highPass().b0, 1.0);
    EXPECT_EQ(filter.highPass().b1, -2.0);
    EXPECT_EQ(filter.highPass().b2, 1.0);
    EXPECT_NEAR(filter.highPass().a1, -1.99004745483398, 1e-13);
    EXPECT_NEAR(filter.highPass().a2, 0.99007225036621, 1e-13);
}

TEST(KWeightingFilter, processIsTheTransposedDirectFormSampleBySample) {
    for (const double rate : rates) {
        KWeightingFilter filter(rate);
        ScalarKWeighting plain(rate);
        for (const float sample : whiteNoise(20000, 0.3, 5)) {
            const double x = static_cast<double>(sample);
            // The direct form's own rounding grows with the inverse square of the high-pass's
            // distance from z = 1.
            ASSERT_NEAR(filter.process(x), plain.process(x), 1e-9) << rate;
        }
    }
}

// BS.1770-4: the constant -0.691 cancels the weighting's gain at 997 Hz.
TEST(KWeightingFilter, raisesA997HzToneBySevenTenthsOfADecibel) {
    KWeightingFilter filter(48000);
    filter.sumOfSquares(sine(48000, 997, 1.0, 1));
    const Samples tone = sine(48000, 997, 1.0, 1);
    const double meanSquare = filter.sumOfSquares(tone) / static_cast<double>(tone.size());
    EXPECT_NEAR(10.0 * std::log10(meanSquare / 0.5), 0.691, 0.005);
}

class KWeightingOnTargets : public EachVectorTarget {};
TARVANE_ON_EACH_VECTOR_TARGET(KWeightingOnTargets);

TEST_P(KWeightingOnTargets, anEmptyRunGivesZeroAndLeavesTheStateAlone) {
    KWeightingFilter a(48000);
    KWeightingFilter b(48000);
    const Samples samples = whiteNoise(100, 0.3, 1);
    a.sumOfSquares(samples);
    b.sumOfSquares(samples);
    EXPECT_EQ(a.sumOfSquares({}), 0.0);
    EXPECT_EQ(a.sumOfSquares(samples), b.sumOfSquares(samples));
}

TEST_P(KWeightingOnTargets, anOffsetDecaysToNothing) {
    for (const double rate : rates) {
        KWeightingFilter filter(rate);
        const Samples offset(static_cast<std::size_t>(rate), 1.0F);
        EXPECT_GT(filter.sumOfSquares(offset), 1.0) << rate;
        // The high-pass's poles at 38 Hz, Q 1/2, decay by e^(-240 t): to nothing in a second. What
        // stays is rounding, 2^-53 of the offset per sample.
        const double rms = std::sqrt(filter.sumOfSquares(offset) / rate);
        EXPECT_LT(rms, 1e-15) << rate;
    }
}

TEST_P(KWeightingOnTargets, resetForgetsTheSamplesBefore) {
    KWeightingFilter filter(48000);
    const Samples samples = whiteNoise(500, 0.3, 2);
    const double first = filter.sumOfSquares(samples);
    filter.sumOfSquares(samples);
    filter.reset();
    EXPECT_EQ(filter.sumOfSquares(samples), first);
}

TEST_P(KWeightingOnTargets, anyBlockSizeSumsWhatThePlainFilterSums) {
    for (const double rate : rates) {
        const Samples samples = whiteNoise(30000, 0.3, 3);
        for (const int size :
             {1, 2, 3, 7, 16, 47, 48, 49, 64, 235, 256, 512, 1000, 1024, 4096, 8192}) {
            KWeightingFilter filter(rate);
            ScalarKWeighting plain(rate);
            std::span<const float> rest(samples);
            while (!rest.empty()) {
                const auto block =
                    rest.first(std::min(rest.size(), static_cast<std::size_t>(size)));
                rest = rest.subspan(block.size());
                double expected = 0.0;
                for (const float sample : block) {
                    const double y = plain.process(static_cast<double>(sample));
                    expected += y * y;
                }
                ASSERT_NEAR(filter.sumOfSquares(block), expected, 1e-10 * expected + 1e-12)
                    << rate << " Hz, blocks of " << size;
            }
        }
    }
}

TEST_P(KWeightingOnTargets, processAndSumOfSquaresShareOneState) {
    KWeightingFilter mixed(48000);
    KWeightingFilter single(48000);
    const Samples samples = whiteNoise(1000, 0.3, 4);
    for (int round = 0; round < 10; ++round) {
        const double sum = mixed.sumOfSquares(samples);
        double expected = 0.0;
        for (const float sample : samples) {
            const double y = single.process(static_cast<double>(sample));
            expected += y * y;
        }
        ASSERT_NEAR(sum, expected, 1e-12 * expected);
        for (int i = 0; i < 20; ++i) {
            ASSERT_NEAR(mixed.process(0.1 * i), single.process(0.1 * i), 1e-13);
        }
    }
}

TEST_P(KWeightingOnTargets, aToneUnderALargeOffsetKeepsItsLevel) {
    // 120 dB below an offset of full scale the tone's own square is 5e-13; the same tone without
    // the offset says what it weighs. 32-bit samples round the sum by up to 6e-8.
    const double amplitude = 1.0 / 1024;
    Samples tone = sine(48000, 1000, amplitude, 2);
    for (float& sample : tone) {
        sample = std::round(sample * 0x1p22F) * 0x1p-22F;
    }
    KWeightingFilter alone(48000);
    KWeightingFilter offset(48000);
    Samples raised = tone;
    for (float& sample : raised) {
        sample += 0.5F;
    }
    alone.sumOfSquares(tone);
    offset.sumOfSquares(raised);
    const double expected = alone.sumOfSquares(tone);
    EXPECT_NEAR(offset.sumOfSquares(raised), expected, 1e-10 * expected);
}

}  // namespace KWeightingFilterTests
}  // namespace TarvaneKit
