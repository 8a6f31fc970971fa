#include "Records/ThresholdEditing.h"

#include <gtest/gtest.h>

#include <limits>

namespace TarvaneApp {
namespace ThresholdEditingTests {

using TarvaneKit::TrafficLightConfig;

std::vector<double> thresholds(const TrafficLightConfig& config) {
    std::vector<double> result;
    for (const auto& band : config.bands) {
        result.push_back(band.thresholdDB);
    }
    return result;
}

using Thresholds = std::vector<double>;

TEST(ThresholdEditing, aBandTakesThoseBelowItAlongOnItsWayDown) {
    const auto edited = withThreshold(TrafficLightConfig::defaultSPL(), 0, 80.0, splThresholds);
    EXPECT_EQ(thresholds(edited), (Thresholds{80.0, 80.0}));
    EXPECT_EQ(edited.bands[1].color, TarvaneKit::SignalColors::yellow);
    // On its way up they stay.
    EXPECT_EQ(thresholds(withThreshold(edited, 0, 120.0, splThresholds)),
              (Thresholds{120.0, 80.0}));
}

TEST(ThresholdEditing, aBandStopsAtTheOneAboveIt) {
    const auto edited = withThreshold(TrafficLightConfig::defaultSPL(), 1, 130.0, splThresholds);
    EXPECT_EQ(thresholds(edited), (Thresholds{100.0, 100.0}));
    EXPECT_EQ(upperLimitDB(edited, 1, splThresholds), 100.0);
    EXPECT_EQ(upperLimitDB(edited, 0, splThresholds), 140.0);
}

TEST(ThresholdEditing, theRangesTopIsTheFirstBandsLimitAndCapsWhatIsStoredBeyondIt) {
    const auto& config = TrafficLightConfig::defaultDBFS();
    EXPECT_EQ(thresholds(withThreshold(config, 0, 7.0, dbfsThresholds)), (Thresholds{0.0, -12.0}));
    const auto strange = TrafficLightConfig::create("x", {{30.0, {}}, {10.0, {}}}, {});
    EXPECT_EQ(upperLimitDB(strange, 1, dbfsThresholds), 0.0);
}

TEST(ThresholdEditing, thresholdsAreWholeAndHalvesGoAwayFromZero) {
    const auto& config = TrafficLightConfig::defaultSPL();
    EXPECT_EQ(thresholds(withThreshold(config, 1, 70.5, splThresholds)), (Thresholds{100.0, 71.0}));
    EXPECT_EQ(thresholds(withThreshold(config, 1, 70.49, splThresholds)),
              (Thresholds{100.0, 70.0}));
    EXPECT_EQ(
        thresholds(withThreshold(TrafficLightConfig::defaultDBFS(), 1, -20.5, dbfsThresholds)),
        (Thresholds{-3.0, -21.0}));
}

TEST(ThresholdEditing, whatIsNotFiniteIsDropped) {
    const auto& config = TrafficLightConfig::defaultSPL();
    for (const double strange :
         {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(),
          -std::numeric_limits<double>::infinity()}) {
        EXPECT_EQ(withThreshold(config, 0, strange, splThresholds), config);
    }
}

}  // namespace ThresholdEditingTests
}  // namespace TarvaneApp
