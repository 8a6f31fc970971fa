#include "Records/PossibleNumbers.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <vector>

namespace TarvaneApp {
namespace PossibleNumbersTests {

using namespace PossibleNumbers;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double noNumber = std::numeric_limits<double>::quiet_NaN();

// Never a setting, whatever it is of.
constexpr std::array absurd{noNumber, infinity, -infinity, 1e308, -1e308};

TarvaneKit::TrafficLightConfig thresholds(const std::vector<double>& levelsDB) {
    TarvaneKit::TrafficLightConfig config;
    for (const double levelDB : levelsDB) {
        config.bands.push_back({levelDB, {}});
    }
    return config;
}

TEST(PossibleNumbersTests, whatNoSettingEverWasIsTurnedDown) {
    for (const double number : absurd) {
        EXPECT_FALSE(isLevel(number)) << number;
        EXPECT_FALSE(isLeqTime(number)) << number;
        EXPECT_FALSE(isSpectrogramTimeSpan(number)) << number;
        EXPECT_FALSE(isSliceHeight(number)) << number;
        EXPECT_FALSE(isSplitFraction(number)) << number;
        EXPECT_FALSE(isSpectrogramRange({number, 110.0})) << number;
        EXPECT_FALSE(isSpectrogramRange({30.0, number})) << number;
        EXPECT_FALSE(areThresholds(thresholds({100.0, number}))) << number;
        for (double LoudnessTarget::*field :
             {&LoudnessTarget::targetLUFS, &LoudnessTarget::toleranceLU,
              &LoudnessTarget::truePeakCeilingDBTP}) {
            LoudnessTarget target = LoudnessTarget::presets().front();
            target.*field = number;
            EXPECT_FALSE(isLoudnessTarget(target)) << number;
        }
    }
    for (const double number : {0.0, -1.0, -0.0}) {
        EXPECT_FALSE(isLeqTime(number)) << number;
        EXPECT_FALSE(isSpectrogramTimeSpan(number)) << number;
        EXPECT_FALSE(isSliceHeight(number)) << number;
        EXPECT_FALSE(isSplitFraction(number)) << number;
    }
    EXPECT_FALSE(isSplitFraction(1.0));
    for (const int index : {-1, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
        EXPECT_FALSE(isInput(index)) << index;
    }
    EXPECT_FALSE(isSpectrogramRange({30.0, 30.0}));
    EXPECT_FALSE(isSpectrogramRange({30.0, 20.0}));
    EXPECT_FALSE(isSpectrogramRange({30.0, 32.0}));
    EXPECT_FALSE(isLoudnessTarget(
        {.name = "", .targetLUFS = -23, .toleranceLU = -1, .truePeakCeilingDBTP = -1}));
}

// The ends of every slider, stepper and list.
TEST(PossibleNumbersTests, whatAControlCanSetMayStand) {
    for (const int index : {0, 1, 63, 511}) {
        EXPECT_TRUE(isInput(index)) << index;
    }
    for (const double levelDB : {-140.0, -120.0, -80.0, 0.0, 20.0, 40.0, 120.0, 140.0}) {
        EXPECT_TRUE(isLevel(levelDB)) << levelDB;
    }
    for (const double seconds : {1.0, 10.0, 60.0, 900.0, 3600.0, 28800.0, 86400.0}) {
        EXPECT_TRUE(isLeqTime(seconds)) << seconds;
    }
    for (const double value : {0.5, 1.0, 4.0, 6.0}) {
        EXPECT_TRUE(isSpectrogramTimeSpan(value)) << value;
        EXPECT_TRUE(isSliceHeight(value)) << value;
    }
    for (const double fraction : {0.15, 0.5, 0.85}) {
        EXPECT_TRUE(isSplitFraction(fraction)) << fraction;
    }
    EXPECT_TRUE(areThresholds(TarvaneKit::TrafficLightConfig::defaultSPL()));
    EXPECT_TRUE(areThresholds(thresholds({140.0, 0.0})));
    EXPECT_TRUE(areThresholds(thresholds({})));
    for (const LoudnessTarget& preset : LoudnessTarget::presets()) {
        EXPECT_TRUE(isLoudnessTarget(preset)) << preset.name;
    }
    EXPECT_TRUE(isLoudnessTarget(
        {.name = "", .targetLUFS = -40, .toleranceLU = 5, .truePeakCeilingDBTP = 0}));
    // 3 dB that a slider kept, less what rounding took: 0.1 - 3 and back is more than 0.1.
    EXPECT_TRUE(isSpectrogramRange({0.1 - 3.0, 0.1}));
    EXPECT_TRUE(isSpectrogramRange({-143.0, 20.0}));
}

TEST(PossibleNumbersTests, aRecordKeepsAllButWhatCanNotBe) {
    ChannelConfig whole;
    whole.name = "Stage";
    whole.channelIndex = 511;
    whole.rightChannelIndex = 0;
    whole.spectrogramRanges = {.spl = {20.0, 90.0}, .dbfs = {-60.0, 0.0}};
    whole.display.emplace();
    whole.display->targetCurveReferenceDB = 70.0;
    whole.display->targetCurveReferenceDBFS = -60.0;
    EXPECT_EQ(repaired(whole), whole);

    ChannelConfig broken = whole;
    broken.channelIndex = std::numeric_limits<int>::max();
    broken.rightChannelIndex = -7;
    broken.spectrogramRanges.dbfs = {0.0, -60.0};
    broken.display->targetCurveReferenceDB = 1e308;
    ChannelConfig expected = whole;
    expected.channelIndex = 0;
    expected.rightChannelIndex = 1;
    expected.spectrogramRanges.dbfs = SpectrogramRanges{}.dbfs;
    expected.display->targetCurveReferenceDB = ChannelDisplaySettings{}.targetCurveReferenceDB;
    EXPECT_EQ(repaired(broken), expected);

    ChannelWindowLayout layout;
    layout.showsRTA = false;
    layout.splitFraction = 0.85;
    EXPECT_EQ(repaired(layout), layout);
    layout.splitFraction = -1.0;
    EXPECT_EQ(repaired(layout).splitFraction, 0.5);
    EXPECT_FALSE(repaired(layout).showsRTA);
}

}  // namespace PossibleNumbersTests
}  // namespace TarvaneApp
