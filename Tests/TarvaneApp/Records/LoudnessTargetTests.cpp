#include "Records/LoudnessTarget.h"

#include <gtest/gtest.h>

#include <limits>

namespace TarvaneApp {
namespace LoudnessTargetTests {

using TarvaneKit::RGBAColor;
using namespace TarvaneKit::SignalColors;

const LoudnessColors colors{.aboveTarget = {1, 0, 0, 1},
                            .onTarget = {2, 0, 0, 1},
                            .belowTarget = {3, 0, 0, 1},
                            .truePeakOver = {4, 0, 0, 1},
                            .truePeakWithin = {5, 0, 0, 1}};

TEST(LoudnessTarget, r128IsOnTargetFromMinus24UpToMinus22) {
    const auto table = LoudnessTarget::presets()[0].trafficLight(colors);
    EXPECT_EQ(table.name, "EBU R128 (−23 LUFS)");
    EXPECT_EQ(table.color(-22.0), colors.aboveTarget);
    EXPECT_EQ(table.color(-22.01), colors.onTarget);
    EXPECT_EQ(table.color(-24.0), colors.onTarget);
    EXPECT_EQ(table.color(-24.01), colors.belowTarget);
    EXPECT_EQ(table.color(-std::numeric_limits<double>::infinity()), colors.belowTarget);
}

TEST(LoudnessTarget, anEditedTargetIsNamedByItsNumbers) {
    LoudnessTarget target = LoudnessTarget::presets()[0];
    target.toleranceLU = 2.0;
    EXPECT_EQ(target.namedByItsNumbers().name, "Custom");
    EXPECT_EQ(target.namedByItsNumbers().toleranceLU, 2.0);
    target.targetLUFS = -24.0;
    target.truePeakCeilingDBTP = -2.0;
    EXPECT_EQ(target.namedByItsNumbers(), LoudnessTarget::presets()[1]);
}

TEST(LoudnessTarget, withoutToleranceTheTargetItselfIsAbove) {
    const LoudnessTarget target{.name = "x", .targetLUFS = -20.0};
    const auto table = target.trafficLight(colors);
    EXPECT_EQ(table.color(-20.0), colors.aboveTarget);
    EXPECT_EQ(table.color(-20.01), colors.belowTarget);
}

TEST(LoudnessTarget, aNegativeToleranceSwapsTheBandsAndTheLookupStaysDefined) {
    const LoudnessTarget target{.name = "x", .targetLUFS = -20.0, .toleranceLU = -1.0};
    const auto table = target.trafficLight(colors);
    EXPECT_EQ(table.color(-18.0), colors.onTarget);
    EXPECT_EQ(table.color(-19.0), colors.onTarget);
    EXPECT_EQ(table.color(-20.0), colors.aboveTarget);
    EXPECT_EQ(table.color(-21.01), colors.belowTarget);
}

TEST(LoudnessTarget, truePeakAtTheCeilingIsWithin) {
    const auto& target = LoudnessTarget::presets()[0];
    EXPECT_EQ(target.truePeakColor(-1.0, colors), colors.truePeakWithin);
    EXPECT_EQ(target.truePeakColor(-0.99, colors), colors.truePeakOver);
    EXPECT_EQ(target.truePeakColor(-std::numeric_limits<double>::infinity(), colors),
              colors.truePeakWithin);
    EXPECT_EQ(target.truePeakColor(std::numeric_limits<double>::quiet_NaN(), colors),
              colors.truePeakWithin);
}

TEST(LoudnessTarget, presetsAreThoseOfTheMenu) {
    const std::vector<LoudnessTarget> expected{{"EBU R128 (−23 LUFS)", -23.0, 1.0, -1.0},
                                               {"ATSC A/85 (−24 LKFS)", -24.0, 2.0, -2.0},
                                               {"Streaming (−14 LUFS)", -14.0, 1.0, -1.0},
                                               {"Podcast (−16 LUFS)", -16.0, 1.0, -1.0}};
    EXPECT_EQ(LoudnessTarget::presets(), expected);
}

TEST(LoudnessTarget, anEditedPresetIsCustomWhateverItsName) {
    auto target = LoudnessTarget::presets()[2];
    EXPECT_FALSE(target.isCustom());
    EXPECT_EQ(target.menuName(), "Streaming (−14 LUFS)");
    target.toleranceLU = 1.5;
    EXPECT_TRUE(target.isCustom());
    EXPECT_EQ(target.menuName(), "Custom");
    EXPECT_EQ(target.name, "Streaming (−14 LUFS)");
}

TEST(LoudnessColors, keepDefaultsForMissingKeys) {
    const auto decoded = TarvaneKit::decode<LoudnessColors>(
        R"({"onTarget":{"red":0.5,"green":0.25,"blue":0,"alpha":1}})");
    ASSERT_TRUE(decoded);
    EXPECT_EQ(decoded->onTarget, (RGBAColor{0.5, 0.25, 0.0, 1.0}));
    EXPECT_EQ(decoded->aboveTarget, red);
    EXPECT_EQ(decoded->belowTarget, yellow);
    EXPECT_EQ(decoded->truePeakOver, red);
    EXPECT_EQ(decoded->truePeakWithin, green);
}

TEST(LoudnessTarget, aMissingKeyFailsTheRecord) {
    EXPECT_FALSE(
        TarvaneKit::decode<LoudnessTarget>(R"({"name":"x","targetLUFS":-23,"toleranceLU":1})"));
}

}  // namespace LoudnessTargetTests
}  // namespace TarvaneApp
