// The level history read plainly: every sample kept, each bucket summed up anew at each question.
// What the recorder, which keeps buckets alone, is compared with. One metric.
#pragma once

#include <algorithm>
#include <cmath>
#include <functional>
#include <map>
#include <optional>
#include <utility>
#include <vector>

namespace TarvaneTests {

class ReferenceLevelHistory {
  public:
    ReferenceLevelHistory(double initialBucketSeconds, int maxBuckets, double settleSeconds)
        : bucketSeconds_(initialBucketSeconds),
          maxBuckets_(maxBuckets),
          settleSeconds_(settleSeconds) {}

    struct Sample {
        double elapsed;
        double level;
    };

    /// Elapsed times don't decrease.
    void record(double level, double elapsed) {
        // `maxBuckets` closed buckets merge in pairs, until the time falls into an open one.
        while (std::floor(elapsed / bucketSeconds_) >= maxBuckets_) {
            bucketSeconds_ *= 2.0;
        }
        if (level > -200.0 && std::isfinite(level)) {
            samples_.push_back({elapsed, level});
        }
    }

    double bucketSeconds() const { return bucketSeconds_; }

    /// Of all samples of a bucket, as they are stored.
    std::map<int, std::pair<float, float>> buckets() const {
        std::map<int, std::pair<float, float>> result;
        for (const Sample& sample : samples_) {
            const auto narrow = static_cast<float>(sample.level);
            const int bucket = static_cast<int>(std::floor(sample.elapsed / bucketSeconds_));
            const auto [entry, isNew] = result.try_emplace(bucket, narrow, narrow);
            entry->second.first = std::min(entry->second.first, narrow);
            entry->second.second = std::max(entry->second.second, narrow);
        }
        return result;
    }

    std::optional<Sample> max() const {
        const auto found = std::ranges::max_element(samples_, {}, &Sample::level);
        return found != samples_.end() ? std::optional(*found) : std::nullopt;
    }
    std::optional<Sample> min() const {
        std::optional<Sample> result;
        for (const Sample& sample : samples_) {
            if (sample.elapsed >= settleSeconds_ && (!result || sample.level < result->level)) {
                result = sample;
            }
        }
        return result;
    }

    /// Highest first.
    std::vector<float> maximaFrom(double seconds) const {
        std::vector<float> result;
        for (const auto& [bucket, range] : buckets()) {
            if (bucket >= std::ceil(seconds / bucketSeconds_)) {
                result.push_back(range.second);
            }
        }
        std::ranges::sort(result, std::greater{});
        return result;
    }

    double secondsAtOrAbove(double level) const {
        const auto maxima = maximaFrom(0.0);
        return bucketSeconds_ * static_cast<double>(std::ranges::count_if(maxima, [&](float max) {
                   return max >= static_cast<float>(level);
               }));
    }

    std::optional<double> exceedanceLevel(double percent) const {
        const auto maxima = maximaFrom(settleSeconds_);
        if (maxima.empty()) {
            return std::nullopt;
        }
        const auto count = static_cast<double>(maxima.size());
        return maxima[static_cast<std::size_t>(
            std::min(count - 1.0, std::floor(percent / 100.0 * count)))];
    }

    /// The samples of all buckets that touch the column from `start` to `end`.
    std::optional<std::pair<float, float>> column(double start, double end) const {
        std::optional<std::pair<float, float>> result;
        const double firstTouched = std::max(0.0, std::floor(start / bucketSeconds_));
        const double lastTouched = std::max(firstTouched, std::ceil(end / bucketSeconds_) - 1.0);
        for (const auto& [bucket, range] : buckets()) {
            if (bucket >= firstTouched && bucket <= lastTouched) {
                result = result ? std::pair(std::min(result->first, range.first),
                                            std::max(result->second, range.second))
                                : range;
            }
        }
        return result;
    }

  private:
    double bucketSeconds_;
    const int maxBuckets_;
    const double settleSeconds_;
    std::vector<Sample> samples_;
};

}  // namespace TarvaneTests
