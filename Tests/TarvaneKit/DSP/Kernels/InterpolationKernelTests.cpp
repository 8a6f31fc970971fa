#include "DSP/Kernels/InterpolationKernel.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "Support/EachVectorTarget.h"

namespace TarvaneKit {
namespace InterpolationKernelTests {

class InterpolationKernel : public Testing::EachVectorTarget {
  protected:
    std::mt19937 random_{3};
};

TEST_P(InterpolationKernel, gathersFromAnyPlace) {
    std::vector<float> values;
    for (int i = 0; i < 300; ++i) {
        values.push_back(static_cast<float>(i) * 0.5F);
    }
    for (int count = 0; count < 70; ++count) {
        std::vector<std::int32_t> indexes;
        for (int i = 0; i < count; ++i) {
            indexes.push_back(i == 0 ? 299 : static_cast<std::int32_t>(random_() % 300));
        }
        std::vector<float> out(indexes.size() + 1, -1.0F);
        gather(values, indexes, std::span(out).first(indexes.size()));
        for (std::size_t i = 0; i < indexes.size(); ++i) {
            ASSERT_EQ(out[i], static_cast<float>(indexes[i]) * 0.5F);
        }
        ASSERT_EQ(out.back(), -1.0F) << "nothing is written behind " << count;
    }
}

// Of a straight line every place between two entries is on it.
TEST_P(InterpolationKernel, readsAStraightLineBetweenItsEntries) {
    std::vector<double> values;
    for (int i = 0; i < 50; ++i) {
        values.push_back(3.0 - 0.25 * i);
    }
    std::uniform_real_distribution<double> part(0.0, 1.0);
    for (int count = 0; count < 40; ++count) {
        std::vector<std::int32_t> indexes;
        std::vector<double> fractions;
        for (int i = 0; i < count; ++i) {
            indexes.push_back(i == 0 ? 48 : static_cast<std::int32_t>(random_() % 49));
            fractions.push_back(part(random_));
        }
        std::vector<float> out(indexes.size() + 1, 99.0F);
        interpolate(values, indexes, fractions, std::span(out).first(indexes.size()));
        for (std::size_t i = 0; i < indexes.size(); ++i) {
            ASSERT_NEAR(out[i], 3.0 - 0.25 * (indexes[i] + fractions[i]), 1e-6);
        }
        ASSERT_EQ(out.back(), 99.0F) << "nothing is written behind " << count;
    }
}

TARVANE_ON_EACH_VECTOR_TARGET(InterpolationKernel);

}  // namespace InterpolationKernelTests
}  // namespace TarvaneKit
