#include "Metrics/TrafficLightEditing.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <functional>
#include <limits>

namespace TarvaneKit {
namespace TrafficLightEditingTests {

using namespace SignalColors;

TrafficLightConfig withThresholds(const std::vector<double>& thresholds) {
    TrafficLightConfig config{.name = "x", .bands = {}, .belowAllColor = green};
    for (const double threshold : thresholds) {
        config.bands.push_back({threshold, red});
    }
    return config;
}

TEST(TrafficLightEditing, draggingTheFirstBandDownTakesTheSecondAlong) {
    auto config = TrafficLightConfig::defaultSPL();
    setThreshold(config, 0, 80.0, splThresholdRange);
    EXPECT_EQ(config.bands[0].thresholdDB, 80.0);
    EXPECT_EQ(config.bands[1].thresholdDB, 80.0);
    setThreshold(config, 0, 110.0, splThresholdRange);
    EXPECT_EQ(config.bands[0].thresholdDB, 110.0);
    EXPECT_EQ(config.bands[1].thresholdDB, 80.0);  // never dragged up
}

TEST(TrafficLightEditing, draggingTheSecondBandUpStopsAtTheFirst) {
    auto config = TrafficLightConfig::defaultSPL();
    setThreshold(config, 1, 130.0, splThresholdRange);
    EXPECT_EQ(config.bands[0].thresholdDB, 100.0);
    EXPECT_EQ(config.bands[1].thresholdDB, 100.0);
}

TEST(TrafficLightEditing, theFirstBandStopsAtTheTopOfItsSection) {
    auto spl = TrafficLightConfig::defaultSPL();
    setThreshold(spl, 0, 200.0, splThresholdRange);
    EXPECT_EQ(spl.bands[0].thresholdDB, 140.0);
    auto dbfs = TrafficLightConfig::defaultDBFS();
    setThreshold(dbfs, 0, 3.0, dbfsThresholdRange);
    EXPECT_EQ(dbfs.bands[0].thresholdDB, 0.0);
}

TEST(TrafficLightEditing, levelsBecomeWholeWithHalvesAwayFromZero) {
    auto spl = TrafficLightConfig::defaultSPL();
    setThreshold(spl, 0, 99.5, splThresholdRange);
    EXPECT_EQ(spl.bands[0].thresholdDB, 100.0);
    setThreshold(spl, 0, 99.49, splThresholdRange);
    EXPECT_EQ(spl.bands[0].thresholdDB, 99.0);
    auto dbfs = TrafficLightConfig::defaultDBFS();
    setThreshold(dbfs, 1, -12.5, dbfsThresholdRange);
    EXPECT_EQ(dbfs.bands[1].thresholdDB, -13.0);
}

TEST(TrafficLightEditing, aLevelThatIsNotFiniteChangesNothing) {
    auto config = TrafficLightConfig::defaultSPL();
    for (const double level :
         {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(),
          -std::numeric_limits<double>::infinity()}) {
        setThreshold(config, 0, level, splThresholdRange);
    }
    EXPECT_EQ(config, TrafficLightConfig::defaultSPL());
}

TEST(TrafficLightEditing, colorsAndNameStay) {
    auto config = TrafficLightConfig::defaultSPL();
    setThreshold(config, 0, 70.0, splThresholdRange);
    EXPECT_EQ(config.name, "Default");
    EXPECT_EQ(config.bands[0].color, red);
    EXPECT_EQ(config.bands[1].color, yellow);
    EXPECT_EQ(config.belowAllColor, green);
}

TEST(TrafficLightEditing, theSliderReachesUpToTheBandBefore) {
    const auto config = TrafficLightConfig::defaultSPL();
    EXPECT_EQ(thresholdSlider(config, 0, splThresholdRange), (ThresholdSlider{100.0, 0.0, 140.0}));
    EXPECT_EQ(thresholdSlider(config, 1, splThresholdRange), (ThresholdSlider{85.0, 0.0, 100.0}));
    EXPECT_EQ(thresholdSlider(TrafficLightConfig::defaultDBFS(), 1, dbfsThresholdRange),
              (ThresholdSlider{-12.0, -120.0, -3.0}));
}

TEST(TrafficLightEditing, theSliderKeepsOneDecibelWhenItsLimitMeetsTheBottom) {
    const auto config = withThresholds({0.0, 0.0});
    EXPECT_EQ(thresholdSlider(config, 1, splThresholdRange), (ThresholdSlider{0.0, 0.0, 1.0}));
}

TEST(TrafficLightEditing, theSliderShowsAStrayThresholdWithinItsRange) {
    EXPECT_EQ(thresholdSlider(withThresholds({200.0, 150.0}), 0, splThresholdRange),
              (ThresholdSlider{140.0, 0.0, 140.0}));
    EXPECT_EQ(thresholdSlider(withThresholds({200.0, 150.0}), 1, splThresholdRange),
              (ThresholdSlider{140.0, 0.0, 140.0}));
    EXPECT_EQ(thresholdSlider(withThresholds({-10.0, -20.0}), 1, splThresholdRange),
              (ThresholdSlider{0.0, 0.0, 1.0}));
}

RC_GTEST_PROP(TrafficLightEditingLaws, anyDraggingKeepsTheBandsDescending, ()) {
    auto config = withThresholds({120.0, 100.0, 85.0, 60.0});
    const auto drags = *rc::gen::container<std::vector<std::pair<int, int>>>(
        rc::gen::pair(rc::gen::inRange(0, 4), rc::gen::inRange(0, 1500)));
    for (const auto& [index, tenths] : drags) {
        setThreshold(config, index, tenths * 0.1, splThresholdRange);
        RC_ASSERT(
            std::ranges::is_sorted(config.bands, std::greater{}, &TrafficLightBand::thresholdDB));
        const auto slider = thresholdSlider(config, index, splThresholdRange);
        RC_ASSERT(slider.valueDB == config.bands[static_cast<std::size_t>(index)].thresholdDB);
        RC_ASSERT(slider.topDB >= slider.bottomDB + 1.0);
        RC_ASSERT(slider.valueDB <= slider.topDB);
    }
}

}  // namespace TrafficLightEditingTests
}  // namespace TarvaneKit
