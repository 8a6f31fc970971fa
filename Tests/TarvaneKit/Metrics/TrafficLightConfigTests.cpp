#include "Metrics/TrafficLightConfig.h"

#include <gtest/gtest.h>

#include <limits>

namespace TarvaneKit {
namespace TrafficLightConfigTests {

using namespace SignalColors;

TEST(TrafficLightConfig, levelOnAThresholdTakesThatBandsColour) {
    const auto& config = TrafficLightConfig::defaultSPL();
    EXPECT_EQ(config.color(100.0), red);
    EXPECT_EQ(config.color(99.999), yellow);
    EXPECT_EQ(config.color(85.0), yellow);
    EXPECT_EQ(config.color(84.999), green);
}

TEST(TrafficLightConfig, digitalThresholds) {
    const auto& config = TrafficLightConfig::defaultDBFS();
    EXPECT_EQ(config.color(-3.0), red);
    EXPECT_EQ(config.color(-12.0), yellow);
    EXPECT_EQ(config.color(-12.1), green);
}

TEST(TrafficLightConfig, withoutBandsEveryLevelIsBelowAll) {
    const auto config = TrafficLightConfig::create("", {}, yellow);
    EXPECT_EQ(config.color(1000.0), yellow);
}

TEST(TrafficLightConfig, anUnmeasurableLevelIsBelowAll) {
    const auto& config = TrafficLightConfig::defaultSPL();
    EXPECT_EQ(config.color(std::numeric_limits<double>::quiet_NaN()), green);
    EXPECT_EQ(config.color(-std::numeric_limits<double>::infinity()), green);
}

TEST(TrafficLightConfig, createSortsDescendingAndKeepsEqualThresholdsInOrder) {
    const auto config =
        TrafficLightConfig::create("", {{1.0, green}, {5.0, red}, {5.0, yellow}}, green);
    ASSERT_EQ(config.bands.size(), 3U);
    EXPECT_EQ(config.bands[0], (TrafficLightBand{5.0, red}));
    EXPECT_EQ(config.bands[1], (TrafficLightBand{5.0, yellow}));
    EXPECT_EQ(config.color(5.0), red);
}

TEST(TrafficLightConfig, decodedBandsStayAsStoredAndTheFirstThatQualifiesCounts) {
    const auto config = decode<TrafficLightConfig>(
        R"({"name":"x","bands":[
            {"thresholdDB":10,"color":{"red":0.2,"green":0.8,"blue":0.3,"alpha":1}},
            {"thresholdDB":20,"color":{"red":0.9,"green":0.2,"blue":0.2,"alpha":1}}],
            "belowAllColor":{"red":0,"green":0,"blue":0,"alpha":1}})");
    ASSERT_TRUE(config);
    EXPECT_EQ(config->bands[0].thresholdDB, 10.0);
    EXPECT_EQ(config->color(30.0), green);
}

TEST(TrafficLightConfig, roundTrips) {
    const auto& config = TrafficLightConfig::defaultDBFS();
    EXPECT_EQ(decode<TrafficLightConfig>(encode(config).value()), config);
    EXPECT_FALSE(decode<TrafficLightConfig>(R"({"name":"x","bands":[]})"));
}

}  // namespace TrafficLightConfigTests
}  // namespace TarvaneKit
