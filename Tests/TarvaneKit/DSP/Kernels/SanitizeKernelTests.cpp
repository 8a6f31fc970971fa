#include "DSP/Kernels/SanitizeKernel.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "Support/EachVectorTarget.h"

namespace TarvaneKit {
namespace SanitizeKernelTests {

class SanitizeKernel : public Testing::EachVectorTarget {};

TEST_P(SanitizeKernel, replacesWhatIsNoNumberAtEveryPlace) {
    const float bad[] = {
        std::numeric_limits<float>::quiet_NaN(), -std::numeric_limits<float>::quiet_NaN(),
        std::numeric_limits<float>::infinity(), -std::numeric_limits<float>::infinity()};
    std::mt19937 random(5);
    std::uniform_real_distribution<float> uniform(-2.0F, 2.0F);
    for (int count = 0; count < 70; ++count) {
        for (int badPlace = -1; badPlace < count; ++badPlace) {
            std::vector<float> in(static_cast<std::size_t>(count));
            for (float& sample : in) {
                sample = uniform(random);
            }
            if (badPlace >= 0) {
                in[static_cast<std::size_t>(badPlace)] = bad[badPlace % 4];
            }
            std::vector<float> out(in.size() + 1, 99.0F);
            const float largest = copySanitized(in, std::span(out).first(in.size()));
            float expectedLargest = 0.0F;
            for (std::size_t i = 0; i < in.size(); ++i) {
                const float expected = std::isfinite(in[i]) ? in[i] : 0.0F;
                EXPECT_EQ(out[i], expected);
                expectedLargest = std::max(expectedLargest, std::abs(expected));
            }
            EXPECT_EQ(largest, expectedLargest);
            EXPECT_EQ(out.back(), 99.0F) << "nothing is written behind the block";
        }
    }
}

TEST_P(SanitizeKernel, worksInPlaceAndBoundsWhatNoDeviceDelivers) {
    std::vector<float> samples{-0.0F, 1000.0F, std::numeric_limits<float>::signaling_NaN()};
    EXPECT_EQ(copySanitized(samples, samples), 1000.0F);
    EXPECT_EQ(samples, (std::vector{-0.0F, 1000.0F, 0.0F}));
    samples = {std::numeric_limits<float>::max(),
               -std::numeric_limits<float>::max(),
               1e38F,
               -1e38F,
               1000.5F,
               -1000.5F,
               999.5F,
               -999.5F};
    samples.resize(37, 1e38F);
    EXPECT_EQ(copySanitized(samples, samples), 1000.0F);
    EXPECT_EQ(samples[0], 1000.0F);
    EXPECT_EQ(samples[1], -1000.0F);
    EXPECT_EQ(samples[5], -1000.0F);
    EXPECT_EQ(samples[6], 999.5F);
    EXPECT_EQ(samples[7], -999.5F);
    EXPECT_EQ(samples.back(), 1000.0F);
}

TARVANE_ON_EACH_VECTOR_TARGET(SanitizeKernel);

}  // namespace SanitizeKernelTests
}  // namespace TarvaneKit
