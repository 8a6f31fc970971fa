#include <gtest/gtest.h>

#include "Records/ChannelDisplaySettings.h"

namespace TarvaneApp {
namespace ChannelDisplaysTargetCurveTests {

using namespace TarvaneKit;

TEST(TargetCurveSelection, aNewChannelHasTheXCurve) {
    EXPECT_EQ(ChannelDisplaySettings{}.targetCurve(), BuiltInCurves::xCurve());
}

TEST(TargetCurveSelection, onlyAWholeNameSelectsACurve) {
    ChannelDisplaySettings settings;
    for (const TargetCurve& curve : BuiltInCurves::all()) {
        settings.targetCurveName = curve.name;
        EXPECT_EQ(settings.targetCurve(), curve);
    }
    for (const char* name : {"X-Curve", "flat", "Flat ", ""}) {
        settings.targetCurveName = name;
        EXPECT_FALSE(settings.targetCurve()) << name;
    }
    settings.targetCurveName.reset();
    EXPECT_FALSE(settings.targetCurve());
}

}  // namespace ChannelDisplaysTargetCurveTests
}  // namespace TarvaneApp
