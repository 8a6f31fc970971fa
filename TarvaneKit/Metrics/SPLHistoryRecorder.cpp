#include "Metrics/SPLHistoryRecorder.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <limits>
#include <utility>

#include "Core/Contract.h"

namespace TarvaneKit {

namespace {

constexpr float emptyMax = -std::numeric_limits<float>::infinity();
constexpr float emptyMin = std::numeric_limits<float>::infinity();

// The envelope of a long session is read at every repaint. Independent lanes, so that the
// compiler can keep them in one vector register each.
constexpr std::size_t laneCount = 8;

template <class Picks>
float pickOf(std::span<const float> values, float start, Picks picks) {
    std::array<float, laneCount> lanes;
    lanes.fill(start);
    std::size_t i = 0;
    for (; i + laneCount <= values.size(); i += laneCount) {
        for (std::size_t lane = 0; lane < laneCount; ++lane) {
            lanes[lane] = picks(values[i + lane], lanes[lane]) ? values[i + lane] : lanes[lane];
        }
    }
    for (; i < values.size(); ++i) {
        lanes[0] = picks(values[i], lanes[0]) ? values[i] : lanes[0];
    }
    for (const float lane : lanes) {
        start = picks(lane, start) ? lane : start;
    }
    return start;
}

int raisedToEven(int maxBuckets) {
    const int atLeastTwo = std::max(maxBuckets, 2);
    TARVANE_PRECONDITION(atLeastTwo < std::numeric_limits<int>::max());
    return atLeastTwo + atLeastTwo % 2;
}

}  // namespace

SPLHistoryRecorder::SPLHistoryRecorder(std::vector<SPLMetric> metrics, double initialBucketSeconds,
                                       int maxBuckets, double settleSeconds)
    : metrics_(std::move(metrics)),
      maxBuckets_(raisedToEven(maxBuckets)),
      settleSeconds_(settleSeconds),
      initialBucketSeconds_(initialBucketSeconds),
      bucketSeconds_(initialBucketSeconds),
      maxes_(new float[metrics_.size() * static_cast<std::size_t>(maxBuckets_)]),
      mins_(new float[metrics_.size() * static_cast<std::size_t>(maxBuckets_)]),
      openMax_(metrics_.size(), emptyMax),
      openMin_(metrics_.size(), emptyMin),
      runningMax_(metrics_.size()),
      runningMin_(metrics_.size()),
      latest_(metrics_.size()) {
    TARVANE_PRECONDITION(initialBucketSeconds > 0.0 && std::isfinite(initialBucketSeconds));
}

std::vector<SPLMetric> SPLHistoryRecorder::standardMetrics(const std::string& leqID) {
    std::vector<SPLMetric> metrics;
    for (const Weighting weighting : allCases<Weighting>()) {
        for (const TimeWeighting timeWeighting : allCases<TimeWeighting>()) {
            metrics.push_back(SPLMetric::spl(weighting, timeWeighting));
        }
    }
    for (const Weighting weighting : allCases<Weighting>()) {
        metrics.push_back(SPLMetric::peak(weighting));
    }
    metrics.push_back(SPLMetric::leq(leqID));
    for (const LoudnessMetric metric :
         {LoudnessMetric::momentary, LoudnessMetric::shortTerm, LoudnessMetric::integrated}) {
        metrics.push_back(SPLMetric::loudness(metric));
    }
    return metrics;
}

bool SPLHistoryRecorder::isEmpty() const {
    return !sessionStartDate_ ||
           (closedBucketCount_ == 0 &&
            std::ranges::all_of(openMax_, [](float max) { return max == emptyMax; }));
}

std::optional<int> SPLHistoryRecorder::index(const SPLMetric& metric) const {
    const auto found = std::ranges::find(metrics_, metric);
    return found != metrics_.end() ? std::optional(static_cast<int>(found - metrics_.begin()))
                                   : std::nullopt;
}

void SPLHistoryRecorder::reset(std::optional<Date> startDate) {
    sessionStartDate_ = startDate;
    duration_ = 0.0;
    bucketSeconds_ = initialBucketSeconds_;
    closedBucketCount_ = 0;
    std::ranges::fill(openMax_, emptyMax);
    std::ranges::fill(openMin_, emptyMin);
    std::ranges::fill(runningMax_, std::nullopt);
    std::ranges::fill(runningMin_, std::nullopt);
    std::ranges::fill(latest_, std::nullopt);
}

bool SPLHistoryRecorder::record(std::span<const double> values, double elapsed) {
    if (values.size() != metrics_.size() || !(elapsed >= 0.0) || !std::isfinite(elapsed)) {
        return false;
    }
    const bool closes = closedBucketCount_ < std::trunc(elapsed / bucketSeconds_);
    if (closes) {
        closeBucketsUpTo(elapsed);
    }
    const bool hasSettled = elapsed >= settleSeconds_;
    for (std::size_t i = 0; i < values.size(); ++i) {
        const double level = values[i];
        if (!(level > noValueDB) || !std::isfinite(level)) {
            continue;
        }
        latest_[i] = level;
        const float narrow = static_cast<float>(level);
        openMax_[i] = std::max(openMax_[i], narrow);
        openMin_[i] = std::min(openMin_[i], narrow);
        if (!runningMax_[i] || runningMax_[i]->levelDB < level) {
            runningMax_[i] = {.elapsed = elapsed, .levelDB = level};
        }
        if (hasSettled && (!runningMin_[i] || runningMin_[i]->levelDB > level)) {
            runningMin_[i] = {.elapsed = elapsed, .levelDB = level};
        }
    }
    duration_ = std::max(duration_, elapsed);
    return closes;
}

// Buckets merge whenever `maxBuckets_` of them are closed, that is, whenever the index that is
// headed for reaches `maxBuckets_`. A jump over hours would close empty buckets up to there,
// merge, and start again. Empty ones add nothing to a pair, so what is there is merged as it
// stands, and the empty rest is written once, at the final length. The index stays a float until
// it is known to fit: a clock may jump by any number of years.
void SPLHistoryRecorder::closeBucketsUpTo(double elapsed) {
    closeBuckets(closedBucketCount_ + 1);
    double index = std::trunc(elapsed / bucketSeconds_);
    while (index >= maxBuckets_) {
        mergePairs();
        index = std::trunc(elapsed / bucketSeconds_);
    }
    closeBuckets(static_cast<int>(index));
}

// The open bucket goes in first, empty ones behind it; a new one is open then.
void SPLHistoryRecorder::closeBuckets(int end) {
    if (end == closedBucketCount_) {
        return;
    }
    for (std::size_t i = 0; i < metrics_.size(); ++i) {
        float* const maxes = &maxes_[rowStart(i)];
        float* const mins = &mins_[rowStart(i)];
        maxes[closedBucketCount_] = std::exchange(openMax_[i], emptyMax);
        mins[closedBucketCount_] = std::exchange(openMin_[i], emptyMin);
        std::fill(maxes + closedBucketCount_ + 1, maxes + end, emptyMax);
        std::fill(mins + closedBucketCount_ + 1, mins + end, emptyMin);
    }
    closedBucketCount_ = end;
}

void SPLHistoryRecorder::mergePairs() {
    closeBuckets(closedBucketCount_ + closedBucketCount_ % 2);
    const int merged = closedBucketCount_ / 2;
    for (std::size_t i = 0; i < metrics_.size(); ++i) {
        float* const maxes = &maxes_[rowStart(i)];
        float* const mins = &mins_[rowStart(i)];
        for (int k = 0; k < merged; ++k) {
            maxes[k] = std::max(maxes[2 * k], maxes[2 * k + 1]);
            mins[k] = std::min(mins[2 * k], mins[2 * k + 1]);
        }
    }
    closedBucketCount_ = merged;
    bucketSeconds_ *= 2.0;
}

bool SPLHistoryRecorder::isMetric(int metric) const {
    return metric >= 0 && std::cmp_less(metric, metrics_.size());
}

std::size_t SPLHistoryRecorder::rowStart(std::size_t metric) const {
    return metric * static_cast<std::size_t>(maxBuckets_);
}

std::span<const float> SPLHistoryRecorder::closedMaxes(int metric) const {
    return {&maxes_[rowStart(static_cast<std::size_t>(metric))],
            static_cast<std::size_t>(closedBucketCount_)};
}

std::span<const float> SPLHistoryRecorder::closedMins(int metric) const {
    return {&mins_[rowStart(static_cast<std::size_t>(metric))],
            static_cast<std::size_t>(closedBucketCount_)};
}

SPLHistoryRecorder::Extremes SPLHistoryRecorder::extremes(int metric) const {
    if (!isMetric(metric)) {
        return {};
    }
    const auto i = static_cast<std::size_t>(metric);
    return {.max = runningMax_[i], .min = runningMin_[i]};
}

std::vector<std::optional<SPLHistoryRecorder::Range>> SPLHistoryRecorder::envelope(
    int metric, double fromSeconds, double toSeconds, int columns) const {
    if (columns < 1 || !(fromSeconds < toSeconds) || !std::isfinite(toSeconds - fromSeconds) ||
        !isMetric(metric)) {
        return {};
    }
    const double columnSeconds = (toSeconds - fromSeconds) / columns;
    std::vector<std::optional<Range>> result(static_cast<std::size_t>(columns));
    const std::span maxes = closedMaxes(metric);
    const std::span mins = closedMins(metric);
    const double openIndex = closedBucketCount_;
    for (int column = 0; column < columns; ++column) {
        const double start = fromSeconds + columnSeconds * column;
        const double first = std::max(std::floor(start / bucketSeconds_), 0.0);
        if (!(first <= openIndex)) {
            break;
        }
        const double last = std::min(
            std::max(std::ceil((start + columnSeconds) / bucketSeconds_) - 1.0, first), openIndex);
        const auto from = static_cast<std::size_t>(first);
        const auto closedCount = static_cast<std::size_t>(std::min(last + 1.0, openIndex)) - from;
        const bool seesOpenBucket = last == openIndex;
        const auto i = static_cast<std::size_t>(metric);
        const float max = pickOf(maxes.subspan(from, closedCount),
                                 seesOpenBucket ? openMax_[i] : emptyMax, std::greater{});
        if (max != emptyMax) {
            const float min = pickOf(mins.subspan(from, closedCount),
                                     seesOpenBucket ? openMin_[i] : emptyMin, std::less{});
            result[static_cast<std::size_t>(column)] = Range{.min = min, .max = max};
        }
    }
    return result;
}

std::optional<double> SPLHistoryRecorder::value(int metric, double elapsed) const {
    const double bucket = std::trunc(elapsed / bucketSeconds_);
    if (!isMetric(metric) || !(elapsed >= 0.0) || bucket > closedBucketCount_) {
        return std::nullopt;
    }
    const float max = bucket < closedBucketCount_
                          ? closedMaxes(metric)[static_cast<std::size_t>(bucket)]
                          : openMax_[static_cast<std::size_t>(metric)];
    return max != emptyMax ? std::optional<double>(max) : std::nullopt;
}

std::optional<double> SPLHistoryRecorder::latestValue(int metric) const {
    return isMetric(metric) ? latest_[static_cast<std::size_t>(metric)] : std::nullopt;
}

std::vector<float> SPLHistoryRecorder::bucketMaxima(int metric, double fromSeconds) const {
    const double first = std::max(std::ceil(fromSeconds / bucketSeconds_), 0.0);
    if (!isMetric(metric) || !sessionStartDate_ || !(first <= closedBucketCount_)) {
        return {};
    }
    const std::span closed = closedMaxes(metric).subspan(static_cast<std::size_t>(first));
    std::vector<float> maxima(closed.begin(), closed.end());
    maxima.push_back(openMax_[static_cast<std::size_t>(metric)]);
    std::erase(maxima, emptyMax);
    return maxima;
}

double SPLHistoryRecorder::recordedSeconds(int metric) const {
    return bucketSeconds_ * static_cast<double>(bucketMaxima(metric, 0.0).size());
}

double SPLHistoryRecorder::secondsAtOrAbove(int metric, double levelDB) const {
    const auto threshold = static_cast<float>(levelDB);
    const auto count = std::ranges::count_if(bucketMaxima(metric, 0.0),
                                             [&](float max) { return max >= threshold; });
    return bucketSeconds_ * static_cast<double>(count);
}

std::optional<double> SPLHistoryRecorder::exceedanceLevel(int metric, double percent) const {
    std::vector<float> maxima = bucketMaxima(metric, settleSeconds_);
    if (maxima.empty() || !(percent >= 0.0 && percent <= 100.0)) {
        return std::nullopt;
    }
    const auto count = static_cast<double>(maxima.size());
    const double rank = std::min(count - 1.0, std::floor(percent / 100.0 * count));
    const auto ranked = maxima.begin() + static_cast<std::ptrdiff_t>(rank);
    std::ranges::nth_element(maxima, ranked, std::greater{});
    return *ranked;
}

}  // namespace TarvaneKit
