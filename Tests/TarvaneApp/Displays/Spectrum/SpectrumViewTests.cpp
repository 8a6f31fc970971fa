#include "Displays/Spectrum/SpectrumView.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "Displays/Spectrum/SpectrumGeometry.h"
#include "Support/SpectrumScenes.h"

namespace TarvaneApp {
namespace SpectrumViewTests {

using TarvaneTests::bandBetween;
using TarvaneTests::spectrumInDBFS;
using testing::ElementsAre;

TEST(SpectrumView, theFrequencyAxisRunsInDecadesFromEdgeToEdge) {
    const FrequencyAxis axis = SpectrumView().frequencyAxis();
    EXPECT_NEAR(axis.x(20.0, 900.0), 0.0, 1e-9);
    EXPECT_NEAR(axis.x(200.0, 900.0), 300.0, 1e-9);
    EXPECT_NEAR(axis.x(2000.0, 900.0), 600.0, 1e-9);
    EXPECT_NEAR(axis.x(20000.0, 900.0), 900.0, 1e-9);
}

TEST(SpectrumView, aFrequencyUnderTheAxisPinsToItAndOneAboveRunsOn) {
    const FrequencyAxis axis = SpectrumView().frequencyAxis();
    EXPECT_EQ(axis.x(5.0, 900.0), 0.0);
    EXPECT_EQ(axis.x(0.0, 900.0), 0.0);
    EXPECT_NEAR(axis.x(200000.0, 900.0), 1200.0, 1e-9);
}

TEST(SpectrumView, frequencyAndPlaceAreInverseFromEndToEnd) {
    const FrequencyAxis axis = SpectrumView().frequencyAxis();
    for (const double width : {240.0, 900.0, 3840.0}) {
        for (int i = 0; i <= 100; ++i) {
            const double x = width * i / 100.0;
            EXPECT_NEAR(axis.x(axis.frequencyHz(x, width), width), x, 1e-9);
            const double frequencyHz = 20.0 * std::pow(1000.0, i / 100.0);
            EXPECT_NEAR(axis.frequencyHz(axis.x(frequencyHz, width), width) / frequencyHz, 1.0,
                        1e-12);
        }
    }
}

TEST(SpectrumView, levelAndHeightAreInverseFromEndToEnd) {
    for (const SpectrumView& view : {SpectrumView(), spectrumInDBFS()}) {
        for (int i = 0; i <= 140; ++i) {
            const double levelDB = view.axisBottomDB() + i;
            EXPECT_NEAR(view.levelAt(view.y(levelDB, 300.0), 300.0), levelDB, 1e-9);
            EXPECT_NEAR(view.y(view.levelAt(300.0 * i / 140.0, 300.0), 300.0), 300.0 * i / 140.0,
                        1e-9);
        }
    }
}

TEST(SpectrumView, zeroInSPLLiesOnTheBottomEdgeAnd141OnTheTopEdge) {
    const SpectrumView view;
    EXPECT_EQ(view.y(0.0, 300.0), 300.0);
    EXPECT_EQ(view.y(-20.0, 300.0), 300.0);
    EXPECT_EQ(view.y(141.0, 300.0), 0.0);
    EXPECT_EQ(view.y(70.0, 300.0), 150.0);
}

TEST(SpectrumView, minus140AndLessInDBFSLieOnTheBottomEdge) {
    EXPECT_EQ(spectrumInDBFS().y(-140.0, 300.0), 300.0);
    EXPECT_EQ(spectrumInDBFS().y(-180.0, 300.0), 300.0);
    EXPECT_EQ(spectrumInDBFS().y(-70.0, 300.0), 150.0);
    EXPECT_EQ(spectrumInDBFS().y(0.5, 300.0), 0.0);
}

TEST(SpectrumView, aLevelThatIsNoNumberLiesOnTheBottomEdge) {
    EXPECT_EQ(SpectrumView().y(std::nan(""), 300.0), 300.0);
    EXPECT_EQ(spectrumInDBFS().y(-std::numeric_limits<double>::infinity(), 300.0), 300.0);
}

TEST(SpectrumView, levelRulesStandEvery20dBFromBottomToTop) {
    EXPECT_THAT(SpectrumView().levelGridLines(),
                ElementsAre(0.0, 20.0, 40.0, 60.0, 80.0, 100.0, 120.0, 140.0));
    EXPECT_THAT(spectrumInDBFS().levelGridLines(),
                ElementsAre(-140.0, -120.0, -100.0, -80.0, -60.0, -40.0, -20.0, 0.0));
}

TEST(SpectrumView, aRuleOnTheEndsOfTheAxisIsNotDrawn) {
    SpectrumView view;
    EXPECT_FALSE(view.ruleY(0.0, 300.0));
    EXPECT_FALSE(view.ruleY(140.0, 300.0));
    EXPECT_FALSE(view.ruleY(std::nullopt, 300.0));
    EXPECT_EQ(view.ruleY(70.0, 300.0), 150.0);
    EXPECT_FALSE(spectrumInDBFS().ruleY(-140.0, 300.0));
    EXPECT_FALSE(spectrumInDBFS().ruleY(0.0, 300.0));
    EXPECT_EQ(spectrumInDBFS().ruleY(-70.0, 300.0), 150.0);
}

TEST(SpectrumView, thePointerAtTheFarLeftReads20HzAndAtTheFarRight20kHz) {
    const SpectrumView view;
    const FrequencyAxis axis = view.frequencyAxis();
    EXPECT_EQ(view.hoverLabel(*SpectrumHoverState::at(0.0, 900.0, axis).frequencyHz),
              QStringLiteral("20 Hz"));
    EXPECT_EQ(view.hoverLabel(*SpectrumHoverState::at(900.0, 900.0, axis).frequencyHz),
              QStringLiteral("20.00 kHz"));
    EXPECT_EQ(SpectrumHoverState::at(10.0, 0.0, axis).frequencyHz, 20.0);
}

TEST(SpectrumView, theReadoutTellsFrequencyLevelAndUnit) {
    SpectrumView view;
    view.lineSpectrumDB.assign(2048, 40.0);
    view.lineSpectrumDB[85] = 62.1;  // round(1000 · 4096 / 48000) = round(85.3)
    EXPECT_EQ(view.hoverLabel(1000.0), QStringLiteral("1.00 kHz  62.1 dB"));
    EXPECT_EQ(view.hoverLabel(100.0), QStringLiteral("100 Hz  40.0 dB"));
    view.scale = RTAScale::dbfs;
    view.levelOffsetDB = 120.0;
    EXPECT_EQ(view.hoverLabel(1000.0), QStringLiteral("1.00 kHz  -57.9 dBFS"));
}

TEST(SpectrumView, theReadoutFallsBackToTheBandAndThenToTheFrequencyAlone) {
    SpectrumView view;
    view.bands = {bandBetween(100.0, 200.0), bandBetween(200.0, 400.0)};
    view.bandLevelsDB = {50.0, 60.0};
    view.levelOffsetDB = 5.0;
    EXPECT_EQ(view.levelDB(100.0), 45.0);
    EXPECT_EQ(view.levelDB(200.0), 55.0);
    EXPECT_EQ(view.levelDB(400.0), std::nullopt);
    EXPECT_EQ(view.hoverLabel(400.0), QStringLiteral("400 Hz"));
    view.lineSpectrumDB.assign(20, 33.0);  // up to 223 Hz
    view.viewMode = SpectrumViewMode::banded;
    EXPECT_EQ(view.levelDB(100.0), 28.0);
    EXPECT_EQ(view.levelDB(300.0), 55.0);
}

TEST(SpectrumView, theReadoutShowsTheLevelThatIsDrawnAndCurveAndRulesKeepTheirs) {
    SpectrumView view = spectrumInDBFS();
    view.levelOffsetDB = 110.0;
    view.lineSpectrumDB.assign(2048, 60.0);
    const auto points = linePoints(view, view.lineSpectrumDB, {900.0, 140.0});
    EXPECT_NEAR(*view.levelDB(1000.0), view.levelAt(points[83].y(), 140.0), 1e-9);
    EXPECT_EQ(view.ruleY(-50.0, 140.0), 50.0);
}

}  // namespace SpectrumViewTests
}  // namespace TarvaneApp
