#include "Metrics/LoudnessMetric.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Core/Coding.h"
#include "Metrics/LoudnessReadings.h"
#include "Metrics/SPLMetricEngine.h"
#include "Support/TestSignals.h"

namespace TarvaneKit {
namespace LoudnessMetricTests {

TEST(LoudnessMetric, isStoredByName) {
    std::vector<std::string_view> names;
    for (const LoudnessMetric metric : allCases<LoudnessMetric>()) {
        names.push_back(rawValue(metric));
        const auto text = encode(metric);
        ASSERT_TRUE(text);
        EXPECT_EQ(*text, '"' + std::string(rawValue(metric)) + '"');
        EXPECT_EQ(decode<LoudnessMetric>(*text), metric);
    }
    EXPECT_THAT(names, testing::ElementsAre("momentary", "shortTerm", "integrated", "range",
                                            "truePeakMax", "momentaryMax", "shortTermMax"));
    EXPECT_EQ(fromRawValue<LoudnessMetric>("loudest"), std::nullopt);
}

TEST(LoudnessReadings, aNewRecordHoldsNoValue) {
    const LoudnessReadings readings;
    for (const LoudnessMetric metric : allCases<LoudnessMetric>()) {
        EXPECT_EQ(readings[metric], -std::numeric_limits<double>::infinity());
    }
}

TEST(LoudnessReadings, eachMetricNamesItsField) {
    const LoudnessReadings readings{1, 2, 3, 4, 5, 6, 7};
    double expected = 1;
    for (const LoudnessMetric metric : allCases<LoudnessMetric>()) {
        EXPECT_EQ(readings[metric], expected++);
    }
    EXPECT_EQ(readings.range, 4);
    LoudnessReadings other = readings;
    EXPECT_EQ(other, readings);
    other.shortTermMax = 0;
    EXPECT_NE(other, readings);
}

TEST(SPLMetric, loudnessMetricsAreEqualByTheirReading) {
    EXPECT_EQ(SPLMetric::loudness(LoudnessMetric::range),
              SPLMetric::loudness(LoudnessMetric::range));
    EXPECT_NE(SPLMetric::loudness(LoudnessMetric::range),
              SPLMetric::loudness(LoudnessMetric::integrated));
    EXPECT_NE(SPLMetric::loudness(LoudnessMetric::range), SPLMetric::peak(Weighting::a));
}

TEST(SPLMetricEngine, answersNoLoudnessWhateverTheAudio) {
    SPLMetricEngine engine(48000, {});
    for (int round = 0; round < 2; ++round) {
        for (const LoudnessMetric metric : allCases<LoudnessMetric>()) {
            EXPECT_EQ(engine.value(SPLMetric::loudness(metric)),
                      -std::numeric_limits<double>::infinity());
        }
        engine.processBlock(Testing::sine(48000, 1000, 0.5, 1));
    }
    const std::vector<SPLMetric> metrics{SPLMetric::loudness(LoudnessMetric::momentary),
                                         SPLMetric::spl(Weighting::z, TimeWeighting::none)};
    const auto values = engine.values(metrics);
    EXPECT_EQ(values[0], -std::numeric_limits<double>::infinity());
    EXPECT_TRUE(std::isfinite(values[1]));
}

}  // namespace LoudnessMetricTests
}  // namespace TarvaneKit
