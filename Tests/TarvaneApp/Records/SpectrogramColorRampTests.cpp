#include "Records/SpectrogramColorRamp.h"

#include <gtest/gtest.h>

namespace TarvaneApp {
namespace SpectrogramColorRampTests {

using namespace SpectrogramColorRamp;
using Stops = std::vector<SpectrogramColorStop>;
using TarvaneKit::RGBAColor;
using TarvaneKit::UUID;

constexpr RGBAColor black{0.0, 0.0, 0.0, 1.0};
constexpr RGBAColor red{1.0, 0.0, 0.0, 1.0};
constexpr RGBAColor white{1.0, 1.0, 1.0, 1.0};

SpectrogramColorStop stop(double position, const RGBAColor& color) {
    return {.id = UUID::random(), .position = position, .color = color};
}

std::vector<double> positions(const Stops& stops) {
    std::vector<double> result;
    for (const auto& each : stops) {
        result.push_back(each.position);
    }
    return result;
}

TEST(SpectrogramColorRamp, aNewStopStandsInTheMiddleOfTheWidestGap) {
    // Of the default ramp that is the dark stretch from 0 to 0.378.
    const Stops more = withStopInWidestGap(defaultSpectrogramColorStops());
    ASSERT_EQ(more.size(), 10U);
    EXPECT_DOUBLE_EQ(more[1].position, 0.189);
    // Gaps of 0.2, 0.5 and 0.1, given out of order.
    const Stops ramp{stop(1.0, white), stop(0.2, black), stop(0.4, red), stop(0.9, white)};
    EXPECT_EQ(positions(withStopInWidestGap(ramp)),
              (std::vector<double>{0.2, 0.4, 0.65, 0.9, 1.0}));
}

TEST(SpectrogramColorRamp, ofEquallyWideGapsTheLowestTakesTheStop) {
    const Stops ramp{stop(0.0, black), stop(0.1, red), stop(0.2, white), stop(0.3, white)};
    EXPECT_EQ(positions(withStopInWidestGap(ramp)),
              (std::vector<double>{0.0, 0.05, 0.1, 0.2, 0.3}));
}

TEST(SpectrogramColorRamp, aNewStopChangesNoColour) {
    const Stops& ramp = defaultSpectrogramColorStops();
    const Stops more = withStopInWidestGap(ramp);
    for (int i = 0; i <= 255; ++i) {
        const RGBAColor before = colorAt(i / 255.0, ramp);
        const RGBAColor after = colorAt(i / 255.0, more);
        EXPECT_NEAR(before.red, after.red, 1e-12);
        EXPECT_NEAR(before.green, after.green, 1e-12);
        EXPECT_NEAR(before.blue, after.blue, 1e-12);
    }
}

TEST(SpectrogramColorRamp, aNewStopHasAnIdOfItsOwnAndNoneOfTheOthersChanges) {
    const Stops ramp{stop(0.0, black), stop(1.0, white)};
    const Stops more = withStopInWidestGap(ramp);
    ASSERT_EQ(more.size(), 3U);
    EXPECT_EQ(more[0], ramp[0]);
    EXPECT_EQ(more[2], ramp[1]);
    EXPECT_EQ(more[1].color, (RGBAColor{0.5, 0.5, 0.5, 1.0}));
    EXPECT_NE(more[1].id, ramp[0].id);
    EXPECT_NE(more[1].id, ramp[1].id);
}

TEST(SpectrogramColorRamp, aRampOfFewStopsGrowsTowardsItsFartherEnd) {
    EXPECT_EQ(positions(withStopInWidestGap({})), (std::vector<double>{0.5}));
    EXPECT_EQ(withStopInWidestGap({}).front().color, white);
    EXPECT_EQ(positions(withStopInWidestGap({stop(0.2, red)})), (std::vector<double>{0.2, 0.6}));
    EXPECT_EQ(positions(withStopInWidestGap({stop(0.8, red)})), (std::vector<double>{0.4, 0.8}));
}

TEST(SpectrogramColorRamp, theRampLiesBetweenFloorAndCeiling) {
    const SpectrogramRange range{30.0, 110.0};
    EXPECT_DOUBLE_EQ(levelDB(0.0, range), 30.0);
    EXPECT_DOUBLE_EQ(levelDB(0.378, range), 60.24);  // 30 + 0.378 · 80
    EXPECT_DOUBLE_EQ(levelDB(1.0, range), 110.0);
    EXPECT_DOUBLE_EQ(position(60.0, range), 0.375);  // 30 / 80
    EXPECT_EQ(position(20.0, range), 0.0);
    EXPECT_EQ(position(120.0, range), 1.0);
}

TEST(SpectrogramColorRamp, aRangeWithoutWidthStillHasPositions) {
    EXPECT_EQ(position(50.0, {50.0, 50.0}), 0.0);
    EXPECT_EQ(position(51.0, {50.0, 50.0}), 1.0);
}

TEST(SpectrogramColorRamp, aRampIsItsPositionsAndColoursWhateverTheIds) {
    Stops copy = defaultSpectrogramColorStops();
    for (auto& each : copy) {
        each.id = UUID::random();
    }
    EXPECT_TRUE(isSameRamp(copy, defaultSpectrogramColorStops()));
    copy[3].color.red += 0.01;
    EXPECT_FALSE(isSameRamp(copy, defaultSpectrogramColorStops()));
    copy.pop_back();
    EXPECT_FALSE(isSameRamp(copy, defaultSpectrogramColorStops()));
}

TEST(SpectrogramColorRamp, aPresetTakesThePlaceOfTheOneWithItsName) {
    std::vector<SpectrogramColorPreset> presets{{"Fire", {stop(0.0, red)}},
                                                {"Ice", {stop(0.0, white)}}};
    const Stops ramp{stop(0.0, black), stop(1.0, red)};
    presets = withPreset(presets, {"Fire", ramp});
    ASSERT_EQ(presets.size(), 2U);
    EXPECT_EQ(presets[0].name, "Fire");
    EXPECT_EQ(presets[0].stops, ramp);
    presets = withPreset(presets, {"fire", ramp});
    ASSERT_EQ(presets.size(), 3U) << "another name";
    EXPECT_EQ(presets[2].name, "fire");
}

}  // namespace SpectrogramColorRampTests
}  // namespace TarvaneApp
