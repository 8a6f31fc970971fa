#include "Displays/Readouts/ReadoutText.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>

namespace TarvaneApp {
namespace ReadoutTextTests {

using TarvaneKit::LoudnessMetric;
using TarvaneKit::SPLMetric;
using TarvaneKit::TimeWeighting;
using TarvaneKit::Weighting;

constexpr double infinity = std::numeric_limits<double>::infinity();

TEST(ReadoutText, aValueThatIsNotFiniteIsADashAndNeverSpelledOut) {
    EXPECT_EQ(levelText(-infinity), QStringLiteral("—"));
    EXPECT_EQ(levelText(infinity), QStringLiteral("—"));
    EXPECT_EQ(levelText(std::nan("")), QStringLiteral("—"));
}

TEST(ReadoutText, valuesHaveOneDecimalAndAPoint) {
    EXPECT_EQ(levelText(-23.04), QStringLiteral("-23.0"));
    EXPECT_EQ(levelText(94.06), QStringLiteral("94.1"));
    EXPECT_EQ(levelText(0.0), QStringLiteral("0.0"));
    EXPECT_EQ(levelText(-240.0), QStringLiteral("-240.0"));
}

TEST(ReadoutText, everyMetricHasItsLabel) {
    EXPECT_EQ(displayLabel(SPLMetric::spl(Weighting::a, TimeWeighting::fast)),
              QStringLiteral("SPL A Fast"));
    EXPECT_EQ(displayLabel(SPLMetric::spl(Weighting::z, TimeWeighting::infinite)),
              QStringLiteral("SPL Z Infinite"));
    EXPECT_EQ(displayLabel(SPLMetric::spl(Weighting::c, TimeWeighting::slow)),
              QStringLiteral("SPL C Slow"));
    EXPECT_EQ(displayLabel(SPLMetric::spl(Weighting::a, TimeWeighting::none)),
              QStringLiteral("SPL A None"));
    EXPECT_EQ(displayLabel(SPLMetric::peak(Weighting::c)), QStringLiteral("Peak C"));
    EXPECT_EQ(displayLabel(SPLMetric::leq("user")), QStringLiteral("Leq"));
    const std::array loudnessLabels{"Momentary",      "Short-Term",    "Integrated",
                                    "Loudness Range", "True Peak Max", "Momentary Max",
                                    "Short-Term Max"};
    for (const LoudnessMetric metric : TarvaneKit::allCases<LoudnessMetric>()) {
        EXPECT_EQ(displayLabel(SPLMetric::loudness(metric)),
                  QLatin1String(loudnessLabels[static_cast<std::size_t>(metric)]));
    }
}

// EBU Tech 3341 and 3342 name the readings and their units: LUFS for loudness, LU for the range,
// dBTP for the true peak.
TEST(ReadoutText, everyLoudnessHasItsShortLabelAndItsUnit) {
    const std::array shortLabels{"M", "S", "I", "LRA", "TP", "M Max", "S Max"};
    const std::array units{"LUFS", "LUFS", "LUFS", "LU", "dBTP", "LUFS", "LUFS"};
    for (const LoudnessMetric metric : TarvaneKit::allCases<LoudnessMetric>()) {
        const auto index = static_cast<std::size_t>(metric);
        EXPECT_EQ(shortLabel(metric), QLatin1String(shortLabels[index]));
        EXPECT_EQ(loudnessUnit(metric), QLatin1String(units[index]));
    }
}

TEST(ReadoutText, aSpokenLevelHasItsUnitAndAMissingOneHasNone) {
    EXPECT_EQ(spokenLevel(-23.04, QStringLiteral("LUFS")), QStringLiteral("-23.0 LUFS"));
    EXPECT_EQ(spokenLevel(-infinity, QStringLiteral("LUFS")), QStringLiteral("—"));
}

TEST(ReadoutText, anUncalibratedChannelSaysSoWhateverTheUnit) {
    EXPECT_EQ(metricSuffix(false, false), QStringLiteral("  (dBFS, uncalibrated)"));
    EXPECT_EQ(metricSuffix(false, true), QStringLiteral("  (dBFS, uncalibrated)"));
    EXPECT_EQ(metricSuffix(true, true), QStringLiteral("  (dBFS)"));
    EXPECT_EQ(metricSuffix(true, false), QString());
}

TEST(ReadoutText, theWidthTemplateFollowsTheUnit) {
    EXPECT_EQ(valueTemplate(true, false), QStringLiteral("000.0"));
    EXPECT_EQ(valueTemplate(true, true), QStringLiteral("-00.0"));
    EXPECT_EQ(valueTemplate(false, false), QStringLiteral("-00.0"));
    EXPECT_EQ(valueTemplate(false, true), QStringLiteral("-00.0"));
}

TEST(ReadoutText, onlyAStereoChannelHasASidesLine) {
    EXPECT_EQ(sidesText({}), QString());
    EXPECT_EQ(sidesText({-20.0}), QString());
    EXPECT_EQ(sidesText({-20.04, -infinity}), QStringLiteral("L -20.0   R —"));
}

}  // namespace ReadoutTextTests
}  // namespace TarvaneApp
