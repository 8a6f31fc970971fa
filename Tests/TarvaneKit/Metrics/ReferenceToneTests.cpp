#include "Metrics/ReferenceTone.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <random>
#include <vector>

#include "Support/LineSpectra.h"

namespace TarvaneKit {
namespace ReferenceToneTests {

using Testing::spectrumFFTSize;
using Testing::spectrumSampleRate;

// The spectrum's levels of tones of amplitude 0.1 over noise of that RMS.
std::vector<double> spectrumOf(const std::vector<double>& frequenciesHz, double noise) {
    std::mt19937 random(7);
    std::normal_distribution<double> gauss(0.0, noise);
    std::vector<float> samples(spectrumFFTSize);
    for (std::size_t i = 0; i < samples.size(); ++i) {
        double sample = gauss(random);
        for (const double hz : frequenciesHz) {
            sample += 0.1 * std::sin(2.0 * std::numbers::pi * hz * static_cast<double>(i) /
                                     spectrumSampleRate);
        }
        samples[i] = static_cast<float>(sample);
    }
    return Testing::lineLevelsDB(Testing::lineMagnitudes(samples));
}

std::optional<double> strongest(const std::vector<double>& levelsDB) {
    return ReferenceTone::strongestToneHz(levelsDB, spectrumSampleRate, spectrumFFTSize);
}

TEST(ReferenceToneTests, aTonesFrequencyIsReadBetweenTheLines) {
    for (const double hz : {250.0, 251.19, 437.0, 1000.0, 1006.0, 2000.0}) {
        const auto found = strongest(spectrumOf({hz}, 1e-4));
        ASSERT_TRUE(found) << hz;
        // A tenth of the 11.7 Hz between two lines.
        EXPECT_NEAR(*found, hz, 1.2) << hz;
    }
}

TEST(ReferenceToneTests, noiseAndSilenceHaveNoTone) {
    EXPECT_FALSE(strongest(spectrumOf({}, 0.1)));
    EXPECT_FALSE(strongest(std::vector<double>(2048, -180.0)));
    EXPECT_FALSE(strongest({}));
}

TEST(ReferenceToneTests, calibratorsPlayOneKilohertzAndPistonphonesAQuarterOfIt) {
    const auto nominal = [](std::optional<double> hz) {
        return ReferenceTone{.spreadDB = 0.0, .frequencyHz = hz}.calibratorFrequencyHz();
    };
    EXPECT_EQ(nominal(1000.0), 1000.0);
    EXPECT_EQ(nominal(970.1), 1000.0);
    EXPECT_EQ(nominal(1029.9), 1000.0);
    EXPECT_EQ(nominal(251.19), 250.0);  // the exact third-octave centre
    EXPECT_EQ(nominal(242.6), 250.0);
    EXPECT_EQ(nominal(969.0), std::nullopt);
    EXPECT_EQ(nominal(1031.0), std::nullopt);
    EXPECT_EQ(nominal(258.0), std::nullopt);
    EXPECT_EQ(nominal(500.0), std::nullopt);
    EXPECT_EQ(nominal(std::nullopt), std::nullopt);
}

TEST(ReferenceToneTests, aSteadyLevelStaysWithinHalfADecibel) {
    EXPECT_TRUE((ReferenceTone{.spreadDB = 0.0, .frequencyHz = {}}.isSteady()));
    EXPECT_TRUE((ReferenceTone{.spreadDB = 0.5, .frequencyHz = {}}.isSteady()));
    EXPECT_FALSE((ReferenceTone{.spreadDB = 0.51, .frequencyHz = {}}.isSteady()));
}

}  // namespace ReferenceToneTests
}  // namespace TarvaneKit
