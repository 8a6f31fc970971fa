#include "DSP/OctaveNormalization.h"

#include <gtest/gtest.h>

#include <cmath>

#include "Support/AllNear.h"
#include "Support/EachVectorTarget.h"
#include "Support/ScalarSpectrum.h"
#include "Support/Signals.h"

namespace TarvaneKit {
namespace OctaveNormalizationTests {

class OctaveNormalization : public Testing::EachVectorTarget {};

TEST_P(OctaveNormalization, isThePlainReadingOfItsFormula) {
    for (const double rate : {8000.0, 44100.0, 192000.0, 384000.0}) {
        for (const int count : {0, 1, 2, 9, 2048, 4096}) {
            const auto levels = Testing::roughLevels(count);
            std::vector<double> normalized(levels.size());
            octaveNormalized(levels, 4096, rate, normalized);
            const auto expected = Testing::plainOctaveNormalized(levels, 4096, rate);
            ASSERT_TRUE(Testing::allNear(normalized, expected, 1e-12)) << rate;
        }
    }
}

// Pink noise falls by 10 log10(f), which the tilt makes up for.
TEST_P(OctaveNormalization, laysPinkNoiseFlatAtItsLevelAtOneKilohertz) {
    std::vector<double> pink{0.0};
    for (int i = 1; i < 2048; ++i) {
        pink.push_back(70.0 - 10.0 * std::log10(48000.0 * i / 4096.0 / 1000.0));
    }
    octaveNormalized(pink, 4096, 48000.0, pink);
    EXPECT_EQ(pink[0], 0.0);
    for (std::size_t i = 1; i < pink.size(); ++i) {
        ASSERT_NEAR(pink[i], 70.0, 1e-9);
    }
}

TEST_P(OctaveNormalization, tellsTheSameAsAFactorOfPower) {
    const OctaveTilt tilt(4096, 8192, 48000.0);
    EXPECT_EQ(tilt.factors()[0], 1.0);
    EXPECT_EQ(tilt.levelsDB()[0], 0.0);
    for (std::size_t i = 0; i < 4096; ++i) {
        ASSERT_NEAR(10.0 * std::log10(tilt.factors()[i]), tilt.levelsDB()[i], 1e-12);
    }
}

TARVANE_ON_EACH_VECTOR_TARGET(OctaveNormalization);

}  // namespace OctaveNormalizationTests
}  // namespace TarvaneKit
