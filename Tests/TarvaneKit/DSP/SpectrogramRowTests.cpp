#include "DSP/SpectrogramRow.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "Support/AllNear.h"
#include "Support/EachVectorTarget.h"
#include "Support/ScalarSpectrum.h"
#include "Support/Signals.h"

namespace TarvaneKit {
namespace SpectrogramRowTests {

using Testing::allNear;
using Testing::plainSpectrogramRow;
using Testing::roughLevels;

TEST(SpectrogramFrequencies, areEqualStepsOfTheLogarithm) {
    const auto& frequencies = spectrogramFrequencies();
    ASSERT_EQ(frequencies.size(), 1024U);
    EXPECT_NEAR(frequencies.front(), 20.0, 1e-12);
    EXPECT_NEAR(frequencies.back(), 20000.0, 1e-9);
    for (std::size_t i = 1; i < frequencies.size(); ++i) {
        EXPECT_NEAR(frequencies[i] / frequencies[i - 1], std::pow(1000.0, 1.0 / 1023.0), 1e-12);
    }
    EXPECT_EQ(logSpacedFrequencies(1, 20.0, 20000.0), std::vector{20.0});
    EXPECT_EQ(logSpacedFrequencies(0, 20.0, 20000.0), std::vector{20.0});
    EXPECT_EQ(logSpacedFrequencies(-3, 20.0, 20000.0), std::vector{20.0});
}

class SpectrogramRow : public Testing::EachVectorTarget {
  protected:
    static std::vector<float> row(const std::vector<double>& levels,
                                  const std::vector<double>& frequencies, double rate,
                                  int fftSize) {
        std::vector<float> result(frequencies.size());
        spectrogramRow(levels, frequencies, rate, fftSize, result);
        return result;
    }
};

// The same in 64 bits to the last places; rounded to 32 bits, that is one step of a float at 240.
constexpr double floatStep = 2e-5;

TEST_P(SpectrogramRow, isThePlainReadingOfItsFormula) {
    for (const double rate : {8000.0, 44100.0, 48000.0, 192000.0, 384000.0}) {
        for (const int lineCount : {1, 2, 5, 4096}) {
            const auto levels = roughLevels(lineCount);
            const auto result = row(levels, spectrogramFrequencies(), rate, 2 * lineCount);
            const auto expected =
                plainSpectrogramRow(levels, spectrogramFrequencies(), rate, 2 * lineCount);
            ASSERT_TRUE(allNear(result, expected, floatStep)) << rate << " " << lineCount;
        }
    }
}

TEST_P(SpectrogramRow, readsBetweenTwoLinesInAStraightLine) {
    // Lines 1000 Hz apart.
    EXPECT_EQ(row({0.0, -10.0, -30.0, -40.0}, {-5.0, 0.0, 250.0, 1000.0, 1500.0}, 8000.0, 8),
              (std::vector{0.0F, 0.0F, -2.5F, -10.0F, -20.0F}));
}

TEST_P(SpectrogramRow, repeatsTheLastLineBeyondIt) {
    EXPECT_EQ(row({0.0, -10.0, -30.0, -40.0}, {3000.0, 3900.0, 4000.0, 90000.0}, 8000.0, 8),
              std::vector(4, -40.0F));
}

TEST_P(SpectrogramRow, withoutLinesReadsTheEmptyLevel) {
    EXPECT_EQ(row({}, {100.0, 200.0}, 48000.0, 8192), std::vector(2, -160.0F));
}

TEST_P(SpectrogramRow, comesOutTheSameFromTheLinesThatItReads) {
    for (const double rate : {8000.0, 44100.0, 48000.0, 96000.0, 384000.0}) {
        for (const int fftSize : {2, 4, 64, 8192}) {
            const auto levels = roughLevels(fftSize / 2);
            const SpectrogramColumns columns(spectrogramFrequencies(), rate, fftSize);
            EXPECT_TRUE(std::ranges::is_sorted(columns.lines()));
            std::vector<double> readLevels;
            for (const int line : columns.lines()) {
                readLevels.push_back(levels[static_cast<std::size_t>(line)]);
            }
            std::vector<float> result(1024);
            columns.row(readLevels, result);
            const auto expected =
                plainSpectrogramRow(levels, spectrogramFrequencies(), rate, fftSize);
            ASSERT_TRUE(allNear(result, expected, floatStep)) << rate << " " << fftSize;
        }
    }
}

TARVANE_ON_EACH_VECTOR_TARGET(SpectrogramRow);

}  // namespace SpectrogramRowTests
}  // namespace TarvaneKit
