#include "Metrics/SPLHistoryRecorder.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cmath>
#include <limits>

#include "Support/ReferenceLevelHistory.h"

namespace TarvaneKit {
namespace SPLHistoryRecorderTests {

using TarvaneTests::ReferenceLevelHistory;
using Range = SPLHistoryRecorder::Range;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double silence = -240.0;

const Date start = *dateFromISO8601("2026-03-01T19:30:00Z");

struct Setup {
    double bucketSeconds = 0.1;
    int maxBuckets = 1000;
    double settleSeconds = 3.0;
};

// One metric, in session. By default ten buckets a second.
struct RecorderOfOne : SPLHistoryRecorder {
    explicit RecorderOfOne(Setup setup = {})
        : SPLHistoryRecorder({SPLMetric::peak(Weighting::c)}, setup.bucketSeconds, setup.maxBuckets,
                             setup.settleSeconds) {
        reset(start);
    }
};

bool record(SPLHistoryRecorder& recorder, double level, double elapsed) {
    return recorder.record(std::array{level}, elapsed);
}

TEST(SPLHistoryRecorder, aValueOfSilenceTouchesNothingAndLeavesAGap) {
    RecorderOfOne recorder({.bucketSeconds = 0.25});
    record(recorder, -30.0, 5.125);
    record(recorder, silence, 5.375);
    record(recorder, -200.0, 5.375);
    record(recorder, -infinity, 5.375);
    record(recorder, infinity, 5.375);
    record(recorder, nan, 5.375);
    EXPECT_EQ(recorder.latestValue(0), -30.0);
    EXPECT_EQ(recorder.extremes(0).max, (LevelHistoryExtreme{5.125, -30.0}));
    EXPECT_EQ(recorder.extremes(0).min, (LevelHistoryExtreme{5.125, -30.0}));
    EXPECT_EQ(recorder.value(0, 5.125), -30.0);
    EXPECT_FALSE(recorder.value(0, 5.375));
    EXPECT_EQ(recorder.envelope(0, 5.0, 5.5, 2),
              (std::vector<std::optional<Range>>{Range{-30.0F, -30.0F}, std::nullopt}));
}

TEST(SPLHistoryRecorder, minimumCountsFromTheSettlingTimeOnAndMaximumFromTheFirstValue) {
    RecorderOfOne recorder;
    record(recorder, 90.0, 1.0);
    record(recorder, 20.0, 2.999);
    EXPECT_EQ(recorder.extremes(0).max, (LevelHistoryExtreme{1.0, 90.0}));
    EXPECT_FALSE(recorder.extremes(0).min);
    record(recorder, 50.0, 3.0);
    EXPECT_EQ(recorder.extremes(0).max, (LevelHistoryExtreme{1.0, 90.0}));
    EXPECT_EQ(recorder.extremes(0).min, (LevelHistoryExtreme{3.0, 50.0}));
}

TEST(SPLHistoryRecorder, ofEqualExtremesTheEarlierStays) {
    RecorderOfOne recorder;
    record(recorder, 50.0, 4.0);
    record(recorder, 50.0, 5.0);
    EXPECT_EQ(recorder.extremes(0).max, (LevelHistoryExtreme{4.0, 50.0}));
    EXPECT_EQ(recorder.extremes(0).min, (LevelHistoryExtreme{4.0, 50.0}));
}

TEST(SPLHistoryRecorder, extremesAndLatestKeepMoreThanTheBuckets) {
    RecorderOfOne recorder({.settleSeconds = 0.0});
    const double level = 94.123456789012;
    record(recorder, level, 0.0);
    EXPECT_EQ(recorder.extremes(0).max->levelDB, level);
    EXPECT_EQ(recorder.extremes(0).min->levelDB, level);
    EXPECT_EQ(recorder.latestValue(0), level);
    EXPECT_EQ(recorder.value(0, 0.0), static_cast<double>(static_cast<float>(level)));
}

TEST(SPLHistoryRecorder, aJumpPutsThePendingBucketInFirstAndEmptyOnesBehindIt) {
    RecorderOfOne recorder({.bucketSeconds = 1.0});
    record(recorder, 60.0, 0.25);
    record(recorder, 40.0, 0.5);
    EXPECT_TRUE(record(recorder, 70.0, 101.5));  // buckets 1 to 100 stay empty
    EXPECT_EQ(recorder.bucketSeconds(), 1.0);
    const auto buckets = recorder.envelope(0, 0.0, 102.0, 102);
    EXPECT_EQ(buckets[0], (Range{40.0F, 60.0F}));
    for (std::size_t bucket = 1; bucket <= 100; ++bucket) {
        EXPECT_FALSE(buckets[bucket]) << bucket;
    }
    EXPECT_EQ(buckets[101], (Range{70.0F, 70.0F}));
    EXPECT_EQ(recorder.recordedSeconds(0), 2.0);
    EXPECT_EQ(recorder.duration(), 101.5);
}

TEST(SPLHistoryRecorder, mergesInTheMidstOfAJump) {
    RecorderOfOne recorder({.bucketSeconds = 1.0, .maxBuckets = 4});
    for (int second = 0; second < 3; ++second) {
        record(recorder, 50.0 + second, second);
    }
    // Bucket 13 of 1 s is bucket 6 of 2 s and bucket 3 of 4 s, the first that four can hold.
    EXPECT_TRUE(record(recorder, 80.0, 13.0));
    EXPECT_EQ(recorder.bucketSeconds(), 4.0);
    EXPECT_EQ(recorder.envelope(0, 0.0, 16.0, 4),
              (std::vector<std::optional<Range>>{Range{50.0F, 52.0F}, std::nullopt, std::nullopt,
                                                 Range{80.0F, 80.0F}}));
}

TEST(SPLHistoryRecorder, mergesWhenTheLastBucketClosesAndNotBefore) {
    RecorderOfOne recorder({.bucketSeconds = 1.0, .maxBuckets = 4});
    record(recorder, 10.0, 0.0);
    record(recorder, 20.0, 1.0);
    record(recorder, 30.0, 2.0);
    record(recorder, 40.0, 3.5);
    EXPECT_EQ(recorder.bucketSeconds(), 1.0);
    record(recorder, 50.0, 4.0);
    EXPECT_EQ(recorder.bucketSeconds(), 2.0);
    EXPECT_EQ(recorder.envelope(0, 0.0, 6.0, 3),
              (std::vector<std::optional<Range>>{Range{10.0F, 20.0F}, Range{30.0F, 40.0F},
                                                 Range{50.0F, 50.0F}}));
}

TEST(SPLHistoryRecorder, aLeapOfTheClockByAgesEndsAndStaysBounded) {
    RecorderOfOne recorder({.bucketSeconds = 0.1, .maxBuckets = 144000});
    record(recorder, 50.0, 0.0);
    EXPECT_TRUE(record(recorder, 60.0, 1e300));
    EXPECT_EQ(recorder.duration(), 1e300);
    EXPECT_LT(1e300 / recorder.bucketSeconds(), 144000.0);
    EXPECT_EQ(recorder.value(0, 0.0), 50.0);
    EXPECT_EQ(recorder.value(0, 1e300), 60.0);
}

TEST(SPLHistoryRecorder, ignoresTheWrongNumberOfValuesAndTimesThatAreNone) {
    RecorderOfOne recorder;
    record(recorder, 50.0, 5.0);
    EXPECT_FALSE(recorder.record(std::array{60.0, 60.0}, 9.0));
    EXPECT_FALSE(recorder.record({}, 9.0));
    for (const double elapsed : {-0.001, infinity, -infinity, nan}) {
        EXPECT_FALSE(record(recorder, 60.0, elapsed)) << elapsed;
    }
    EXPECT_EQ(recorder.latestValue(0), 50.0);
    EXPECT_EQ(recorder.duration(), 5.0);
    EXPECT_EQ(recorder.recordedSeconds(0), 0.1);
}

TEST(SPLHistoryRecorder, exceedanceOfHundredPercentIsTheSmallestMaximumAndOfNoneTheLargest) {
    RecorderOfOne recorder({.bucketSeconds = 1.0, .settleSeconds = 0.0});
    for (int second = 0; second < 10; ++second) {
        record(recorder, 50.0 + (second * 7) % 10, second);
    }
    EXPECT_EQ(recorder.exceedanceLevel(0, 100.0), 50.0);
    EXPECT_EQ(recorder.exceedanceLevel(0, 0.0), 59.0);
    // Of 10 levels in descending order the one at floor(0.1 × 10) and floor(0.5 × 10).
    EXPECT_EQ(recorder.exceedanceLevel(0, 10.0), 58.0);
    EXPECT_EQ(recorder.exceedanceLevel(0, 50.0), 54.0);
    for (const double percent : {-0.001, 100.001, nan}) {
        EXPECT_FALSE(recorder.exceedanceLevel(0, percent)) << percent;
    }
}

TEST(SPLHistoryRecorder, exceedanceLeavesTheSettlingTimeOut) {
    RecorderOfOne recorder({.bucketSeconds = 1.0});
    record(recorder, 120.0, 2.5);
    EXPECT_FALSE(recorder.exceedanceLevel(0, 0.0));
    record(recorder, 60.0, 3.0);
    EXPECT_EQ(recorder.exceedanceLevel(0, 0.0), 60.0);
    EXPECT_EQ(recorder.recordedSeconds(0), 2.0);
    EXPECT_EQ(recorder.secondsAtOrAbove(0, 60.0), 2.0);
    EXPECT_EQ(recorder.secondsAtOrAbove(0, 60.001), 1.0);
    EXPECT_EQ(recorder.secondsAtOrAbove(0, nan), 0.0);
}

TEST(SPLHistoryRecorder, maxBucketsIsRaisedToAnEvenNumberOfAtLeastTwo) {
    const auto raised = [](int maxBuckets) {
        return RecorderOfOne({.maxBuckets = maxBuckets}).maxBuckets();
    };
    EXPECT_EQ(raised(3), 4);
    EXPECT_EQ(raised(0), 2);
    EXPECT_EQ(raised(-7), 2);
    EXPECT_EQ(raised(1), 2);
    EXPECT_EQ(raised(144000), 144000);
}

TEST(SPLHistoryRecorder, isEmptyAfterAResetEvenWithADate) {
    SPLHistoryRecorder recorder({SPLMetric::peak(Weighting::c)}, 0.1, 100, 0.0);
    EXPECT_TRUE(recorder.isEmpty());
    EXPECT_FALSE(recorder.sessionStartDate());
    recorder.reset(start);
    EXPECT_TRUE(recorder.isEmpty());
    EXPECT_EQ(recorder.sessionStartDate(), start);
    record(recorder, silence, 0.0);
    EXPECT_TRUE(recorder.isEmpty());
    record(recorder, 50.0, 0.0);
    EXPECT_FALSE(recorder.isEmpty());
    record(recorder, 50.0, 400.0);
    EXPECT_GT(recorder.bucketSeconds(), 0.1);
    recorder.reset(start);
    EXPECT_TRUE(recorder.isEmpty());
    EXPECT_EQ(recorder.bucketSeconds(), 0.1);
    EXPECT_EQ(recorder.duration(), 0.0);
    EXPECT_EQ(recorder.extremes(0), SPLHistoryRecorder::Extremes{});
    EXPECT_FALSE(recorder.latestValue(0));
    EXPECT_FALSE(recorder.value(0, 0.0));
}

TEST(SPLHistoryRecorder, aBucketClosedWithoutAValueIsNoLongerEmpty) {
    RecorderOfOne recorder;
    record(recorder, silence, 0.0);
    record(recorder, silence, 0.1);
    EXPECT_FALSE(recorder.isEmpty());
}

TEST(SPLHistoryRecorder, aSecondRecordOfTheSameMomentJoinsTheBucket) {
    RecorderOfOne recorder({.settleSeconds = 0.0});
    EXPECT_FALSE(record(recorder, 50.0, 0.05));
    EXPECT_FALSE(record(recorder, 60.0, 0.05));
    EXPECT_EQ(recorder.envelope(0, 0.0, 0.1, 1),
              (std::vector<std::optional<Range>>{Range{50.0F, 60.0F}}));
}

TEST(SPLHistoryRecorder, tellsWhetherABucketClosed) {
    RecorderOfOne recorder({.bucketSeconds = 1.0});
    EXPECT_FALSE(record(recorder, 50.0, 0.0));
    EXPECT_FALSE(record(recorder, 50.0, 0.999));
    EXPECT_TRUE(record(recorder, 50.0, 1.0));
    EXPECT_FALSE(record(recorder, 50.0, 0.5));  // an earlier time falls to the open bucket
    EXPECT_TRUE(record(recorder, silence, 2.0));
}

TEST(SPLHistoryRecorder, everyReaderAnswersABadIndexWithNothing) {
    RecorderOfOne recorder({.settleSeconds = 0.0});
    record(recorder, 50.0, 0.0);
    for (const int metric : {-1, 1, std::numeric_limits<int>::max()}) {
        EXPECT_EQ(recorder.extremes(metric), SPLHistoryRecorder::Extremes{});
        EXPECT_TRUE(recorder.envelope(metric, 0.0, 1.0, 4).empty());
        EXPECT_FALSE(recorder.value(metric, 0.0));
        EXPECT_FALSE(recorder.latestValue(metric));
        EXPECT_EQ(recorder.recordedSeconds(metric), 0.0);
        EXPECT_EQ(recorder.secondsAtOrAbove(metric, 0.0), 0.0);
        EXPECT_FALSE(recorder.exceedanceLevel(metric, 50.0));
    }
}

TEST(SPLHistoryRecorder, withoutASessionThereAreNoStatistics) {
    SPLHistoryRecorder recorder({SPLMetric::peak(Weighting::c)}, 0.1, 100, 0.0);
    record(recorder, 50.0, 0.0);
    EXPECT_EQ(recorder.recordedSeconds(0), 0.0);
    EXPECT_FALSE(recorder.exceedanceLevel(0, 50.0));
}

TEST(SPLHistoryRecorder, envelopeOfNoRangeIsEmpty) {
    RecorderOfOne recorder;
    record(recorder, 50.0, 0.0);
    EXPECT_TRUE(recorder.envelope(0, 0.0, 1.0, 0).empty());
    EXPECT_TRUE(recorder.envelope(0, 0.0, 1.0, -3).empty());
    EXPECT_TRUE(recorder.envelope(0, 1.0, 1.0, 4).empty());
    EXPECT_TRUE(recorder.envelope(0, 2.0, 1.0, 4).empty());
    EXPECT_TRUE(recorder.envelope(0, nan, 1.0, 4).empty());
    EXPECT_TRUE(recorder.envelope(0, 0.0, nan, 4).empty());
    EXPECT_TRUE(recorder.envelope(0, 0.0, infinity, 4).empty());
    EXPECT_TRUE(recorder.envelope(0, -infinity, 1.0, 4).empty());
}

TEST(SPLHistoryRecorder, envelopeBeforeTheStartShowsTheFirstBucketAndBehindTheEndNothing) {
    RecorderOfOne recorder({.bucketSeconds = 1.0});
    record(recorder, 50.0, 0.0);
    record(recorder, 60.0, 1.0);
    EXPECT_EQ(recorder.envelope(0, -2.0, 4.0, 6),
              (std::vector<std::optional<Range>>{Range{50.0F, 50.0F}, Range{50.0F, 50.0F},
                                                 Range{50.0F, 50.0F}, Range{60.0F, 60.0F},
                                                 std::nullopt, std::nullopt}));
}

TEST(SPLHistoryRecorder, neighbouringColumnsShareTheBucketAtTheirBorder) {
    RecorderOfOne recorder({.bucketSeconds = 1.0});
    for (int second = 0; second < 3; ++second) {
        record(recorder, 50.0 + second, second);
    }
    // Two columns of 1.5 s: bucket 1, from 1 to 2 s, lies in both.
    EXPECT_EQ(recorder.envelope(0, 0.0, 3.0, 2),
              (std::vector<std::optional<Range>>{Range{50.0F, 51.0F}, Range{51.0F, 52.0F}}));
}

TEST(SPLHistoryRecorder, columnsNarrowerThanABucketRepeatIt) {
    RecorderOfOne recorder({.bucketSeconds = 1.0});
    record(recorder, 50.0, 0.0);
    EXPECT_EQ(recorder.envelope(0, 0.0, 1.0, 4),
              (std::vector<std::optional<Range>>(4, Range{50.0F, 50.0F})));
}

TEST(SPLHistoryRecorder, valueOfATimeBehindTheOpenBucketOrBeforeTheStartIsNone) {
    RecorderOfOne recorder({.bucketSeconds = 1.0});
    record(recorder, 50.0, 0.5);
    record(recorder, 60.0, 1.5);
    EXPECT_EQ(recorder.value(0, 0.0), 50.0);
    EXPECT_EQ(recorder.value(0, 1.0), 60.0);
    for (const double elapsed : {2.0, -0.1, infinity, -infinity, nan, 1e300}) {
        EXPECT_FALSE(recorder.value(0, elapsed)) << elapsed;
    }
}

TEST(SPLHistoryRecorder, standardMetricsAreAllReadingsInTheirOrder) {
    const auto metrics = SPLHistoryRecorder::standardMetrics("user");
    const SPLHistoryRecorder recorder(metrics, 0.1, 100, 3.0);
    EXPECT_EQ(recorder.index(SPLMetric::spl(Weighting::a, TimeWeighting::fast)), 0);
    EXPECT_EQ(recorder.index(SPLMetric::spl(Weighting::a, TimeWeighting::none)), 3);
    EXPECT_EQ(recorder.index(SPLMetric::spl(Weighting::c, TimeWeighting::slow)), 5);
    EXPECT_EQ(recorder.index(SPLMetric::spl(Weighting::z, TimeWeighting::none)), 11);
    EXPECT_EQ(recorder.index(SPLMetric::peak(Weighting::a)), 12);
    EXPECT_EQ(recorder.index(SPLMetric::peak(Weighting::z)), 14);
    EXPECT_EQ(recorder.index(SPLMetric::leq("user")), 15);
    EXPECT_EQ(recorder.index(SPLMetric::loudness(LoudnessMetric::momentary)), 16);
    EXPECT_EQ(recorder.index(SPLMetric::loudness(LoudnessMetric::shortTerm)), 17);
    EXPECT_EQ(recorder.index(SPLMetric::loudness(LoudnessMetric::integrated)), 18);
    EXPECT_EQ(metrics.size(), 19U);
    EXPECT_FALSE(recorder.index(SPLMetric::leq("other")));
    EXPECT_FALSE(recorder.index(SPLMetric::loudness(LoudnessMetric::range)));
    EXPECT_EQ(recorder.metrics(), metrics);
}

TEST(SPLHistoryRecorder, metricsAreKeptApart) {
    SPLHistoryRecorder recorder({SPLMetric::peak(Weighting::a), SPLMetric::peak(Weighting::c)}, 1.0,
                                4, 0.0);
    recorder.reset(start);
    for (int second = 0; second < 9; ++second) {
        recorder.record(std::array{10.0 + second, second == 4 ? silence : 90.0 - second}, second);
    }
    EXPECT_EQ(recorder.bucketSeconds(), 4.0);
    EXPECT_EQ(recorder.envelope(0, 0.0, 12.0, 3),
              (std::vector<std::optional<Range>>{Range{10.0F, 13.0F}, Range{14.0F, 17.0F},
                                                 Range{18.0F, 18.0F}}));
    EXPECT_EQ(recorder.envelope(1, 0.0, 12.0, 3),
              (std::vector<std::optional<Range>>{Range{87.0F, 90.0F}, Range{83.0F, 85.0F},
                                                 Range{82.0F, 82.0F}}));
    EXPECT_EQ(recorder.extremes(1).min, (LevelHistoryExtreme{8.0, 82.0}));
}

TEST(SPLHistoryRecorder, aWeekStaysInItsBucketsAndLosesNoExtreme) {
    RecorderOfOne recorder({.maxBuckets = 144000});
    constexpr int weekTicks = 7 * 24 * 3600 * 10;
    for (int tick = 0; tick < weekTicks; ++tick) {
        record(recorder, tick == 3'000'000 ? 101.0 : 60.0 + tick % 7, tick * 0.1);
    }
    // 604800 s in fewer than 144000 buckets of 0.1 s × 2^n: n = 6.
    EXPECT_DOUBLE_EQ(recorder.bucketSeconds(), 6.4);
    EXPECT_EQ(recorder.extremes(0).max, (LevelHistoryExtreme{3'000'000 * 0.1, 101.0}));
    EXPECT_EQ(recorder.extremes(0).min, (LevelHistoryExtreme{35 * 0.1, 60.0}));
    EXPECT_EQ(recorder.value(0, 300'000.0), 101.0);
    EXPECT_EQ(recorder.exceedanceLevel(0, 50.0), 66.0);
    EXPECT_EQ(recorder.secondsAtOrAbove(0, 100.0), recorder.bucketSeconds());
    EXPECT_DOUBLE_EQ(recorder.recordedSeconds(0), 604800.0);
}

// A session as the display tick gives it, in quarters of a second so that the buckets' borders
// are exact: levels with silences, ticks with pauses.
struct Step {
    int quarters;
    double level;
};

rc::Gen<std::vector<Step>> sessions() {
    const auto quarters = rc::gen::weightedOneOf<int>({{20, rc::gen::inRange(0, 4)},
                                                       {3, rc::gen::inRange(4, 40)},
                                                       {1, rc::gen::inRange(40, 4000)}});
    const auto level = rc::gen::weightedOneOf<double>(
        {{8, rc::gen::map(rc::gen::inRange(-1300, 1400), [](int tenths) { return tenths * 0.1; })},
         {1, rc::gen::element(silence, -200.0, -infinity, infinity, nan)}});
    return rc::gen::container<std::vector<Step>>(
        rc::gen::map(rc::gen::pair(quarters, level), [](const std::pair<int, double>& step) {
            return Step{step.first, step.second};
        }));
}

std::optional<std::pair<float, float>> asPair(const std::optional<Range>& range) {
    return range ? std::optional(std::pair(range->min, range->max)) : std::nullopt;
}

RC_GTEST_PROP(SPLHistoryRecorderLaws, answersAsIfEverySampleHadBeenKept, ()) {
    const int maxBuckets = 2 * *rc::gen::inRange(1, 30);
    RecorderOfOne recorder({.bucketSeconds = 0.5, .maxBuckets = maxBuckets, .settleSeconds = 3.0});
    ReferenceLevelHistory reference(0.5, maxBuckets, 3.0);
    double elapsed = 0.0;
    const auto session = *rc::gen::scale(3.0, sessions());
    for (const Step& step : session) {
        elapsed += step.quarters * 0.25;
        record(recorder, step.level, elapsed);
        reference.record(step.level, elapsed);
    }
    RC_ASSERT(recorder.duration() == elapsed);
    RC_ASSERT(recorder.bucketSeconds() == reference.bucketSeconds());

    const auto max = reference.max();
    const auto min = reference.min();
    const auto extremes = recorder.extremes(0);
    RC_ASSERT(extremes.max.has_value() == max.has_value());
    RC_ASSERT(extremes.min.has_value() == min.has_value());
    RC_ASSERT(!max || *extremes.max == (LevelHistoryExtreme{max->elapsed, max->level}));
    RC_ASSERT(!min || *extremes.min == (LevelHistoryExtreme{min->elapsed, min->level}));

    RC_ASSERT(recorder.recordedSeconds(0) == reference.secondsAtOrAbove(-infinity));
    const double level = *rc::gen::inRange(-1300, 1400) * 0.1;
    RC_ASSERT(recorder.secondsAtOrAbove(0, level) == reference.secondsAtOrAbove(level));
    const double percent = *rc::gen::inRange(0, 1001) * 0.1;
    RC_ASSERT(recorder.exceedanceLevel(0, percent) == reference.exceedanceLevel(percent));

    const double bucketSeconds = recorder.bucketSeconds();
    const auto buckets = reference.buckets();
    for (int bucket = 0; bucket <= static_cast<int>(elapsed / bucketSeconds); ++bucket) {
        const auto expected = buckets.find(bucket);
        RC_ASSERT(recorder.value(0, (bucket + 0.5) * bucketSeconds) ==
                  (expected != buckets.end() ? std::optional<double>(expected->second.second)
                                             : std::nullopt));
    }

    const double from = *rc::gen::inRange(-40, 400) * 0.25;
    const double width = *rc::gen::inRange(1, 16) * 0.25;
    const int columns = *rc::gen::inRange(1, 50);
    const auto envelope = recorder.envelope(0, from, from + width * columns, columns);
    for (int column = 0; column < columns; ++column) {
        const double columnStart = from + width * column;
        RC_ASSERT(asPair(envelope[static_cast<std::size_t>(column)]) ==
                  reference.column(columnStart, columnStart + width));
    }
}

}  // namespace SPLHistoryRecorderTests
}  // namespace TarvaneKit
