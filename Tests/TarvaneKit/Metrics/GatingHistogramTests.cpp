#include "Metrics/GatingHistogram.h"

#include <gtest/gtest.h>

#include <limits>

namespace TarvaneKit {
namespace GatingHistogramTests {

constexpr double infinity = std::numeric_limits<double>::infinity();

TEST(GatingHistogram, binsAreTenthsFromMinusSeventyToPlusTen) {
    EXPECT_EQ(GatingHistogram::bin(-70.0), 0);
    EXPECT_EQ(GatingHistogram::bin(-69.95), 0);
    EXPECT_EQ(GatingHistogram::bin(-69.85), 1);
    EXPECT_EQ(GatingHistogram::bin(-23.05), 469);
    EXPECT_EQ(GatingHistogram::bin(9.95), 799);
}

TEST(GatingHistogram, whatLiesBeyondGoesToTheEnds) {
    EXPECT_EQ(GatingHistogram::bin(-70.01), 0);
    EXPECT_EQ(GatingHistogram::bin(-300.0), 0);
    EXPECT_EQ(GatingHistogram::bin(10.0), 799);
    EXPECT_EQ(GatingHistogram::bin(1e300), 799);
    EXPECT_EQ(GatingHistogram::bin(-infinity), 0);
    EXPECT_EQ(GatingHistogram::bin(infinity), 799);
    EXPECT_EQ(GatingHistogram::bin(std::numeric_limits<double>::quiet_NaN()), 0);
}

TEST(GatingHistogram, aBlockOfExactlyMinusSeventyEnters) {
    GatingHistogram histogram;
    histogram.add(-70.0, 1e-7);
    EXPECT_EQ(histogram.counts[0], 1);
    EXPECT_EQ(histogram.energies[0], 1e-7);
}

TEST(GatingHistogram, aBlockAbovePlusTenKeepsItsEnergy) {
    GatingHistogram histogram;
    histogram.add(25.0, 370.0);
    EXPECT_EQ(histogram.counts[799], 1);
    EXPECT_EQ(histogram.meanEnergy(0), 370.0);
}

TEST(GatingHistogram, theMeanIsOfTheBlocksFromABinOn) {
    GatingHistogram histogram;
    EXPECT_EQ(histogram.meanEnergy(0), std::nullopt);
    histogram.add(-69.95, 1.0);
    histogram.add(-50.05, 4.0);
    histogram.add(-50.05, 6.0);
    EXPECT_NEAR(*histogram.meanEnergy(0), 11.0 / 3.0, 1e-15);
    EXPECT_EQ(histogram.meanEnergy(1), 5.0);
    EXPECT_EQ(histogram.meanEnergy(GatingHistogram::bin(-50.05)), 5.0);
    EXPECT_EQ(histogram.meanEnergy(GatingHistogram::bin(-50.05) + 1), std::nullopt);
    EXPECT_EQ(histogram.meanEnergy(800), std::nullopt);
}

// Whatever bins hold something: the sums over all of them.
TEST(GatingHistogram, gatesOutsideAndInsideOfWhatIsUsedGiveTheSumsOverAll) {
    GatingHistogram histogram;
    for (const double loudness : {-23.0, -40.0, -22.9, -31.5}) {
        histogram.add(loudness, -loudness);
        for (int from = 0; from <= GatingHistogram::binCount; ++from) {
            double energy = 0.0;
            double count = 0.0;
            for (auto i = static_cast<std::size_t>(from); i < GatingHistogram::binCount; ++i) {
                energy += histogram.energies[i];
                count += static_cast<double>(histogram.counts[i]);
            }
            const auto mean = histogram.meanEnergy(from);
            const auto lowest = histogram.percentileLoudness(0.0, from);
            ASSERT_EQ(mean.has_value(), count > 0.0);
            ASSERT_EQ(lowest.has_value(), count > 0.0);
            if (mean) {
                EXPECT_NEAR(*mean, energy / count, 1e-12);
                EXPECT_GT(histogram.counts[static_cast<std::size_t>(GatingHistogram::bin(*lowest))],
                          0);
            }
        }
    }
}

// EBU Tech 3342 by nearest rank: of n blocks in order, the one at round(p (n-1) / 100).
TEST(GatingHistogram, aPercentileIsTheCentreOfTheBinThatHoldsItsRank) {
    GatingHistogram histogram;
    EXPECT_EQ(histogram.percentileLoudness(50, 0), std::nullopt);
    for (int i = 0; i < 11; ++i) {
        histogram.add(-59.95 + i, 1.0);
    }
    const auto centre = [](double loudness) {
        return -70.0 + 0.1 * (GatingHistogram::bin(loudness) + 0.5);
    };
    EXPECT_EQ(histogram.percentileLoudness(0, 0), centre(-59.95));
    EXPECT_EQ(histogram.percentileLoudness(10, 0), centre(-58.95));
    EXPECT_EQ(histogram.percentileLoudness(14, 0), centre(-58.95));
    EXPECT_EQ(histogram.percentileLoudness(15, 0), centre(-57.95));  // 1.5 rounds away from 0
    EXPECT_EQ(histogram.percentileLoudness(95, 0), centre(-49.95));  // 9.5 rounds to 10
    EXPECT_EQ(histogram.percentileLoudness(100, 0), centre(-49.95));
    EXPECT_EQ(histogram.percentileLoudness(0, GatingHistogram::bin(-55.0)), centre(-54.95));
    EXPECT_EQ(histogram.percentileLoudness(50, 800), std::nullopt);
}

}  // namespace GatingHistogramTests
}  // namespace TarvaneKit
