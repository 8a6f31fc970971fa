#include "TargetCurves/TargetCurve.h"

#include <gtest/gtest.h>

#include "TargetCurves/BuiltInCurves.h"

namespace TarvaneKit {
namespace TargetCurveTests {

TEST(TargetCurve, flatIs0AtEveryFrequency) {
    for (const double frequencyHz : {0.0, 5.0, 20.0, 1000.0, 20000.0, 30000.0}) {
        EXPECT_EQ(BuiltInCurves::flat().level(frequencyHz), 0.0) << frequencyHz;
    }
}

TEST(TargetCurve, xCurveFallsInStraightLinesInHz) {
    const auto& curve = BuiltInCurves::xCurve();
    for (const double frequencyHz : {5.0, 20.0, 63.0, 1000.0, 2000.0}) {
        EXPECT_EQ(curve.level(frequencyHz), 0.0) << frequencyHz;
    }
    EXPECT_DOUBLE_EQ(*curve.level(3000.0), -1.5);
    EXPECT_DOUBLE_EQ(*curve.level(6000.0), -4.5);
    EXPECT_DOUBLE_EQ(*curve.level(12000.0), -7.5);
    for (const double frequencyHz : {16000.0, 18000.0, 20000.0, 25000.0}) {
        EXPECT_EQ(curve.level(frequencyHz), -9.0) << frequencyHz;
    }
}

TEST(TargetCurve, aFrequencyOnAPointHasThatPointsLevel) {
    for (const auto& curve : BuiltInCurves::all()) {
        for (const auto& point : curve.points) {
            EXPECT_EQ(curve.level(point.frequencyHz), point.levelDB);
        }
    }
}

TEST(TargetCurve, withoutPointsThereIsNoLevelAndWithOneItIsTheSameEverywhere) {
    EXPECT_FALSE(TargetCurve::create("none", {}).level(1000.0));
    const auto curve = TargetCurve::create("one", {{1000.0, -2.5}});
    for (const double frequencyHz : {1.0, 1000.0, 30000.0}) {
        EXPECT_EQ(curve.level(frequencyHz), -2.5);
    }
}

TEST(TargetCurve, createSortsAndDecodingDoesNot) {
    const auto sorted = TargetCurve::create("x", {{300.0, 3.0}, {100.0, 1.0}, {200.0, 2.0}});
    EXPECT_DOUBLE_EQ(*sorted.level(150.0), 1.5);
    EXPECT_DOUBLE_EQ(*sorted.level(250.0), 2.5);

    const auto stored = decode<TargetCurve>(
        R"({"name":"x","points":[{"frequencyHz":300,"levelDB":3},{"frequencyHz":100,"levelDB":1}]})");
    ASSERT_TRUE(stored);
    EXPECT_EQ(stored->points[0].frequencyHz, 300.0);
    EXPECT_EQ(stored->level(150.0), 3.0);  // at or below the first point
}

TEST(TargetCurve, createKeepsTheOrderOfEqualFrequencies) {
    const auto curve = TargetCurve::create("x", {{100.0, 2.0}, {100.0, 1.0}, {50.0, 0.0}});
    EXPECT_EQ(curve.points[1].levelDB, 2.0);
    EXPECT_EQ(curve.points[2].levelDB, 1.0);
}

TEST(BuiltInCurves, areFoundByTheirWholeNameAlone) {
    EXPECT_EQ(BuiltInCurves::named("Flat"), BuiltInCurves::flat());
    EXPECT_EQ(BuiltInCurves::named("X-Curve (SMPTE ST202 / ISO 2969)"), BuiltInCurves::xCurve());
    EXPECT_FALSE(BuiltInCurves::named("X-Curve"));
    EXPECT_FALSE(BuiltInCurves::named("flat"));
    EXPECT_FALSE(BuiltInCurves::named(""));
}

TEST(BuiltInCurves, comeInTheOrderOfTheMenu) {
    ASSERT_EQ(BuiltInCurves::all().size(), 2U);
    EXPECT_EQ(BuiltInCurves::all()[0].name, "Flat");
    EXPECT_EQ(BuiltInCurves::all()[1].name, "X-Curve (SMPTE ST202 / ISO 2969)");
}

}  // namespace TargetCurveTests
}  // namespace TarvaneKit
