#include "DSP/WeightingBank.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

#include "DSP/WeightingFilter.h"
#include "Support/EachVectorTarget.h"

namespace TarvaneKit {
namespace WeightingBankTests {

class WeightingBankOnEachTarget : public Testing::EachVectorTarget {};

// Every length from one sample to more than the longest chunk, so that each way of cutting a run
// into segments and rest occurs.
TEST_P(WeightingBankOnEachTarget, equalsTheFiltersSampleBySample) {
    WeightingBank bank(48000.0);
    WeightingFilter filters[] = {WeightingFilter(Weighting::a, 48000.0),
                                 WeightingFilter(Weighting::c, 48000.0),
                                 WeightingFilter(Weighting::z, 48000.0)};
    constexpr double gain = 1.7;
    std::mt19937 random(11);
    std::uniform_real_distribution<float> uniform(-1.0F, 1.0F);
    std::vector<float> samples;
    for (std::size_t length = 1; length < 2500; length += length < 300 ? 1 : 97) {
        samples.resize(length);
        std::ranges::generate(samples, [&] { return uniform(random); });
        const auto runs = bank.process(samples, gain);
        for (std::size_t w = 0; w < 3; ++w) {
            double sumOfSquares = 0.0;
            double peak = 0.0;
            for (const float sample : samples) {
                const double y = filters[w].process(gain * static_cast<double>(sample));
                sumOfSquares += y * y;
                peak = std::max(peak, std::abs(y));
            }
            // Rounding against a signal of order 1.
            EXPECT_NEAR(runs[w].sumOfSquares, sumOfSquares, 1e-12 * (1.0 + sumOfSquares)) << length;
            EXPECT_NEAR(runs[w].largestMagnitude, peak, 1e-12) << length;
        }
    }
}

TEST_P(WeightingBankOnEachTarget, anOffsetFadesToNothing) {
    for (const double sampleRate : {48000.0, 384000.0}) {
        WeightingBank bank(sampleRate);
        const std::vector<float> offset(1000, 0.7F);
        for (int i = 0; i < 10 * static_cast<int>(sampleRate) / 1000; ++i) {
            bank.process(offset, 1.0);
        }
        const auto runs = bank.process(offset, 1.0);
        // After 10 s the double pole at 20.6 Hz has decayed by exp(-1294).
        EXPECT_LT(runs[0].largestMagnitude, 1e-200);
        EXPECT_LT(runs[1].largestMagnitude, 1e-200);
        EXPECT_EQ(runs[2].largestMagnitude, static_cast<double>(0.7F));
    }
}

TEST_P(WeightingBankOnEachTarget, noSamplesGiveNothing) {
    WeightingBank bank(48000.0);
    for (const WeightedRun& run : bank.process({}, 1.0)) {
        EXPECT_EQ(run.sumOfSquares, 0.0);
        EXPECT_EQ(run.largestMagnitude, 0.0);
    }
}

TARVANE_ON_EACH_VECTOR_TARGET(WeightingBankOnEachTarget);

}  // namespace WeightingBankTests
}  // namespace TarvaneKit
