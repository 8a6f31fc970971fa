// The level of a whole session, every metric at once, in memory that never grows: the smallest
// and the largest level of each stretch of time ("bucket"). When the buckets run out, neighbours
// merge and a bucket stands for twice the time, so that resolution falls with the session's
// length. Graph and report can therefore show the session in any metric afterwards.
//
// One recorder per channel, fed at each display tick, read by views and the report. Main thread
// only, no lock.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "Core/Date.h"
#include "Metrics/SPLMetric.h"

namespace TarvaneKit {

struct LevelHistoryExtreme {
    double elapsed = 0.0;  ///< seconds since the start of the session
    double levelDB = 0.0;

    bool operator==(const LevelHistoryExtreme&) const = default;
};

class SPLHistoryRecorder {
  public:
    /// A level at or below this, or one that isn't finite, counts as no value.
    static constexpr double noValueDB = -200.0;

    struct Extremes {
        std::optional<LevelHistoryExtreme> max;
        std::optional<LevelHistoryExtreme> min;

        bool operator==(const Extremes&) const = default;
    };
    struct Range {
        float min = 0.0F;
        float max = 0.0F;

        bool operator==(const Range&) const = default;
    };

    /// `maxBuckets` is raised to an even number, at least 2; the first bucket's length is
    /// positive. Address space for all buckets is set aside here, at 8 bytes per bucket and
    /// metric: 21 888 000 bytes for 19 metrics and 144000 buckets. The system backs it with
    /// memory as buckets are written, and nothing is allocated afterwards.
    SPLHistoryRecorder(std::vector<SPLMetric> metrics, double initialBucketSeconds, int maxBuckets,
                       double settleSeconds);

    /// Every reading that the displays can show. Their order is the metric index of a recorder
    /// made with them.
    static std::vector<SPLMetric> standardMetrics(const std::string& leqID);

    const std::vector<SPLMetric>& metrics() const { return metrics_; }
    int maxBuckets() const { return maxBuckets_; }
    double settleSeconds() const { return settleSeconds_; }
    /// The time that a bucket stands for now.
    double bucketSeconds() const { return bucketSeconds_; }
    /// Absent until the first reset with a date.
    std::optional<Date> sessionStartDate() const { return sessionStartDate_; }
    /// The largest elapsed time recorded, seconds.
    double duration() const { return duration_; }
    /// Without a session, or before its first level.
    bool isEmpty() const;
    std::optional<int> index(const SPLMetric& metric) const;

    /// Starts a new session; the storage is kept.
    void reset(std::optional<Date> startDate);

    /// One level per metric. Time without a call becomes empty buckets. Ignored when the number
    /// of values is another than that of the metrics, or `elapsed` is negative or not finite.
    /// @returns whether at least one bucket was closed.
    bool record(std::span<const double> values, double elapsed);

    // All that follows answers a bad metric index with an empty result.

    /// The session's extremes. The minimum counts from `settleSeconds` on, when the detectors
    /// have settled; of equal levels the earlier stays.
    Extremes extremes(int metric) const;

    /// What a graph of `columns` columns over that time draws: one entry per column, empty where
    /// nothing was recorded. Neighbouring columns share the bucket at their border. Time before
    /// 0 shows the first bucket. An empty list for a range that isn't finite or has no length.
    std::vector<std::optional<Range>> envelope(int metric, double fromSeconds, double toSeconds,
                                               int columns) const;

    /// The largest level of the bucket at that time.
    std::optional<double> value(int metric, double elapsed) const;

    /// The last value recorded.
    std::optional<double> latestValue(int metric) const;

    // The statistics count each bucket as its largest level, so they lean higher as buckets
    // grow longer.

    /// Time with a level, in whole buckets: silence and pauses don't count.
    double recordedSeconds(int metric) const;
    double secondsAtOrAbove(int metric, double levelDB) const;
    /// The level exceeded for that percentage of the time after `settleSeconds` (L10, L90; ISO
    /// 1996-1, 3.1.3). Empty for a percentage outside 0 to 100.
    std::optional<double> exceedanceLevel(int metric, double percent) const;

  private:
    bool isMetric(int metric) const;
    std::size_t rowStart(std::size_t metric) const;
    std::span<const float> closedMaxes(int metric) const;
    std::span<const float> closedMins(int metric) const;
    void closeBucketsUpTo(double elapsed);
    void closeBuckets(int end);
    void mergePairs();
    // The largest levels of all non-empty buckets that begin at that time or later.
    std::vector<float> bucketMaxima(int metric, double fromSeconds) const;

    const std::vector<SPLMetric> metrics_;
    const int maxBuckets_;
    const double settleSeconds_;
    const double initialBucketSeconds_;
    double bucketSeconds_;
    std::optional<Date> sessionStartDate_;
    double duration_ = 0.0;

    // Closed buckets, [metric][bucket]: graph and statistics walk one metric over time. Not
    // initialised behind `closedBucketCount_`. An empty bucket holds minus infinity as its
    // largest and plus infinity as its smallest level.
    const std::unique_ptr<float[]> maxes_;
    const std::unique_ptr<float[]> mins_;
    int closedBucketCount_ = 0;
    std::vector<float> openMax_;  // the bucket being filled, by metric
    std::vector<float> openMin_;

    std::vector<std::optional<LevelHistoryExtreme>> runningMax_;  // by metric
    std::vector<std::optional<LevelHistoryExtreme>> runningMin_;
    std::vector<std::optional<double>> latest_;
};

}  // namespace TarvaneKit
