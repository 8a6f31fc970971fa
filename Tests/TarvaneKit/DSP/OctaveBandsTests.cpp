#include "DSP/OctaveBands.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace TarvaneKit {
namespace OctaveBandsTests {

std::vector<OctaveBand> standard(OctaveFraction fraction) {
    return OctaveBands::standardBands(fraction, 20.0, 20000.0);
}

const OctaveBand& bandAt(const std::vector<OctaveBand>& bands, double centerHz) {
    const auto found = std::ranges::find_if(
        bands, [=](const auto& band) { return std::abs(band.centerFrequencyHz - centerHz) < 0.5; });
    EXPECT_NE(found, bands.end()) << centerHz;
    return *found;
}

TEST(OctaveFraction, hasTheLabelOfItsRawValue) {
    EXPECT_EQ(label(OctaveFraction::oneOctave), "1/1 Octave");
    EXPECT_EQ(label(OctaveFraction::thirdOctave), "1/3 Octave");
    EXPECT_EQ(label(OctaveFraction::fortyEighthOctave), "1/48 Octave");
    EXPECT_FALSE(fromRawValue<OctaveFraction>(5));
}

// Centres 1000 * 2^(n/b) from 20/1.05 to 20000*1.05 Hz, counted by hand: for b = 3 n from -17 to
// 13, for b = 48 n from -274 (19.126 Hz) to 210 (20749 Hz).
TEST(OctaveBands, coverTheNominalRangeAndALittleMore) {
    struct Expected {
        OctaveFraction fraction;
        std::size_t count;
        double lowestHz, highestHz;
    };
    for (const auto& [fraction, count, lowestHz, highestHz] :
         {Expected{OctaveFraction::oneOctave, 10, 31.25, 16000.0},
          Expected{OctaveFraction::thirdOctave, 31, 19.686, 20158.737},
          Expected{OctaveFraction::sixthOctave, 61, 19.686, 20158.737},
          Expected{OctaveFraction::twelfthOctave, 121, 19.686, 20158.737},
          Expected{OctaveFraction::twentyFourthOctave, 243, 19.126, 20749.433},
          Expected{OctaveFraction::fortyEighthOctave, 485, 19.126, 20749.433}}) {
        const auto bands = standard(fraction);
        ASSERT_EQ(bands.size(), count) << label(fraction);
        EXPECT_NEAR(bands.front().centerFrequencyHz, lowestHz, 1e-3);
        EXPECT_NEAR(bands.back().centerFrequencyHz, highestHz, 1e-3);
    }
}

TEST(OctaveBands, theThirdOctaveAtOneKilohertzHasItsEdges) {
    const auto bands = standard(OctaveFraction::thirdOctave);
    const OctaveBand& band = bandAt(bands, 1000.0);
    EXPECT_EQ(band.centerFrequencyHz, 1000.0);
    EXPECT_NEAR(band.lowerEdgeHz, 1000.0 / std::pow(2.0, 1.0 / 6.0), 1e-9);  // 890.9
    EXPECT_NEAR(band.upperEdgeHz, 1000.0 * std::pow(2.0, 1.0 / 6.0), 1e-9);  // 1122.5
    EXPECT_EQ(band.label, "1k");
}

TEST(OctaveBands, aRangeBelowTheReferenceIsMadeDownwardAlone) {
    const auto bands = OctaveBands::standardBands(OctaveFraction::thirdOctave, 100.0, 900.0);
    ASSERT_FALSE(bands.empty());
    EXPECT_NEAR(bands.back().centerFrequencyHz, 1000.0 * std::pow(2.0, -1.0 / 3.0), 1e-9);
    EXPECT_NEAR(bands.front().centerFrequencyHz, 1000.0 * std::pow(2.0, -10.0 / 3.0), 1e-9);
    EXPECT_EQ(bands.size(), 10U);
}

TEST(OctaveBands, aRangeAboveTheReferenceIsMadeUpwardAlone) {
    const auto bands = OctaveBands::standardBands(OctaveFraction::oneOctave, 3000.0, 9000.0);
    ASSERT_EQ(bands.size(), 2U);
    EXPECT_EQ(bands[0].centerFrequencyHz, 4000.0);
    EXPECT_EQ(bands[1].centerFrequencyHz, 8000.0);
}

TEST(OctaveBands, ascendAndTouch) {
    for (const auto fraction : allCases<OctaveFraction>()) {
        const double half = std::pow(2.0, 0.5 / rawValue(fraction));
        const auto bands = standard(fraction);
        for (std::size_t i = 0; i < bands.size(); ++i) {
            EXPECT_NEAR(bands[i].lowerEdgeHz * half / bands[i].centerFrequencyHz, 1.0, 1e-14);
            EXPECT_NEAR(bands[i].upperEdgeHz / half / bands[i].centerFrequencyHz, 1.0, 1e-14);
            if (i > 0) {
                EXPECT_LT(bands[i - 1].centerFrequencyHz, bands[i].centerFrequencyHz);
                EXPECT_NEAR(bands[i - 1].upperEdgeHz / bands[i].lowerEdgeHz, 1.0, 1e-13);
            }
        }
    }
}

TEST(OctaveBands, areLabelledWholeBelowAKilohertzAndInTenthsAbove) {
    const auto octaves = standard(OctaveFraction::oneOctave);
    EXPECT_EQ(octaves.front().label, "31");
    EXPECT_EQ(octaves.back().label, "16k");
    EXPECT_EQ(bandAt(octaves, 500.0).label, "500");
    EXPECT_EQ(bandAt(octaves, 62.5).label, "63");  // half away from zero
    EXPECT_EQ(bandAt(octaves, 2000.0).label, "2k");
    const auto sixths = standard(OctaveFraction::sixthOctave);
    EXPECT_EQ(sixths.front().label, "20");
    EXPECT_EQ(bandAt(sixths, 1122.46).label, "1.1k");
    EXPECT_EQ(bandAt(sixths, 1259.92).label, "1.3k");
    EXPECT_EQ(bandAt(standard(OctaveFraction::fortyEighthOctave), 1014.5).label, "1.0k");
}

TEST(OctaveBandsDeathTest, aRangeWithoutEndStopsTheProgram) {
    EXPECT_DEATH(OctaveBands::standardBands(OctaveFraction::oneOctave, 0.0, 20000.0), "minHz");
    EXPECT_DEATH(OctaveBands::standardBands(OctaveFraction::oneOctave, 20.0, INFINITY), "maxHz");
}

}  // namespace OctaveBandsTests
}  // namespace TarvaneKit
