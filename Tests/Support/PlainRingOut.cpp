#include "Support/PlainRingOut.h"

#include <algorithm>
#include <cmath>
#include <set>

namespace TarvaneKit::Testing {

namespace {

std::optional<double> slopePerSecond(const std::vector<std::pair<double, double>>& points) {
    if (points.size() < 2) {
        return std::nullopt;
    }
    double sumX = 0.0, sumY = 0.0, sumXX = 0.0, sumXY = 0.0;
    for (const auto& [time, y] : points) {
        const double x = time - points.front().first;
        sumX += x;
        sumY += y;
        sumXX += x * x;
        sumXY += x * y;
    }
    const double n = static_cast<double>(points.size());
    const double d = n * sumXX - sumX * sumX;
    if (d == 0.0) {
        return std::nullopt;
    }
    return (n * sumXY - sumX * sumY) / d;
}

}  // namespace

std::vector<double> plainBoxAveragePower(std::span<const double> values, int windowBins,
                                         int guardBins) {
    const int n = static_cast<int>(values.size());
    std::vector<double> p(static_cast<std::size_t>(n) + 1, 0.0);
    for (std::size_t k = 0; k < values.size(); ++k) {
        p[k + 1] = p[k] + values[k];
    }
    const auto at = [&](int k) { return p[static_cast<std::size_t>(k)]; };
    std::vector<double> averages;
    for (int i = 0; i < n; ++i) {
        const int outerLow = std::max(i - windowBins, 0);
        const int outerHigh = std::min(i + windowBins, n - 1);
        const int innerLow = std::max(i - guardBins, 0);
        const int innerHigh = std::min(i + guardBins, n - 1);
        const int outerCount = outerHigh - outerLow + 1;
        const int innerCount = innerHigh - innerLow + 1;
        const double outerSum = at(outerHigh + 1) - at(outerLow);
        if (outerCount - innerCount >= 1) {
            averages.push_back((outerSum - (at(innerHigh + 1) - at(innerLow))) /
                               (outerCount - innerCount));
        } else {
            averages.push_back(outerSum / std::max(outerCount, 1));
        }
    }
    return averages;
}

std::vector<TonalPeak> plainFindPeaks(std::span<const double> spectrumDB, double sampleRate,
                                      int fftSize, const PeakPicker::Configuration& c) {
    const double binWidth = sampleRate / fftSize;
    const int n = static_cast<int>(spectrumDB.size());
    if (!(binWidth > 0.0) || n < 5) {
        return {};
    }
    const auto bins = [&](double hz) { return static_cast<int>(std::round(hz / binWidth)); };
    const int windowBins = std::max(bins(c.noiseFloorWindowHz), 1);
    const int guardBins = std::max(bins(c.noiseFloorGuardHz), 0);
    const int firstBin = std::max(bins(c.minFrequencyHz), 2);
    const int lastBin = std::min(n - 3, bins(c.maxFrequencyHz));
    if (!(firstBin < lastBin)) {
        return {};
    }
    std::vector<double> power;
    for (const double level : spectrumDB) {
        power.push_back(std::pow(10.0, level / 10.0));
    }
    const std::vector<double> average = plainBoxAveragePower(power, windowBins, guardBins);
    const double t = std::pow(10.0, c.prominenceThresholdDB / 10.0);
    std::vector<double> copy = power;
    for (std::size_t i = 0; i < copy.size(); ++i) {
        if (t * average[i] < power[i]) {
            copy[i] = 0.0;
        }
    }
    std::vector<double> floorDB = plainBoxAveragePower(copy, windowBins, guardBins);
    for (double& floor : floorDB) {
        floor = 10.0 * std::log10(std::max(floor, 1e-12));
    }
    std::vector<TonalPeak> peaks;
    for (int k = firstBin; k <= lastBin; ++k) {
        const auto i = static_cast<std::size_t>(k);
        const double left = spectrumDB[i - 1], center = spectrumDB[i], right = spectrumDB[i + 1];
        const double skirt = floorDB[i] + c.prominenceThresholdDB * 0.5;
        if (!(left < center) || right > center || c.minPeakLevelDB > center ||
            c.prominenceThresholdDB > center - floorDB[i] || skirt > left || skirt > right) {
            continue;
        }
        TonalPeak peak{.frequencyHz = binWidth * k,
                       .levelDB = center,
                       .noiseFloorDB = floorDB[i],
                       .binIndex = k};
        const double d = left - 2.0 * center + right;
        if (d != 0.0) {
            const double delta = 0.5 * (left - right) / d;
            peak.frequencyHz = binWidth * (k + delta);
            peak.levelDB = center - 0.25 * (left - right) * delta;
        }
        peaks.push_back(peak);
    }
    std::ranges::stable_sort(peaks, [](const TonalPeak& a, const TonalPeak& b) {
        return a.levelDB - a.noiseFloorDB > b.levelDB - b.noiseFloorDB;
    });
    if (peaks.size() > static_cast<std::size_t>(c.maxPeaks)) {
        peaks.resize(static_cast<std::size_t>(c.maxPeaks));
    }
    std::ranges::stable_sort(peaks, {}, &TonalPeak::frequencyHz);
    return peaks;
}

std::vector<PlainAlert> PlainRingOutDetector::update(std::span<const double> spectrumDB,
                                                     double time) {
    const auto peaks = plainFindPeaks(spectrumDB, sampleRate_, fftSize_, configuration.peakPicker);
    const double binWidth = sampleRate_ / fftSize_;
    std::set<std::size_t> matched;
    std::vector<PlainAlert> alerts;
    std::vector<std::pair<double, PlainAlert>> liveAlerts;
    for (const TonalPeak& peak : peaks) {
        const double f = peak.frequencyHz;
        const double tolerance = std::max(
            f * (std::pow(2.0, configuration.trackingToleranceSemitoneFraction / 12.0) - 1.0),
            binWidth * configuration.trackingToleranceMinBins);
        std::optional<std::size_t> best;
        for (std::size_t i = 0; i < tracks_.size(); ++i) {
            const double distance = std::abs(tracks_[i].frequency - f);
            if (matched.count(i) == 0 && distance <= tolerance &&
                (!best || distance < std::abs(tracks_[*best].frequency - f))) {
                best = i;
            }
        }
        if (!best) {
            tracks_.push_back({time,
                               time,
                               peak.levelDB,
                               f,
                               peak.levelDB,
                               {{time, peak.levelDB, peak.levelDB, f}}});
            continue;
        }
        matched.insert(*best);
        Track& track = tracks_[*best];
        updateTrack(track, f, peak.levelDB, time);
        if (!track.hasAlerted) {
            if (satisfiesGrowth(track) && looksLikeFeedback(peak, peaks)) {
                track.hasAlerted = true;
                alerts.push_back(alertFor(peak, track.frequency, spectrumDB));
            }
        }
        if (track.hasAlerted) {
            liveAlerts.emplace_back(track.level, alertFor(peak, f, spectrumDB));
        }
    }
    std::erase_if(tracks_, [&](const Track& track) {
        return time - track.lastUpdate > configuration.maxMissedSeconds;
    });
    live.reset();
    const auto strongest =
        std::ranges::max_element(liveAlerts, {}, [](const auto& entry) { return entry.first; });
    if (strongest != liveAlerts.end()) {
        live = strongest->second;
    }
    return alerts;
}

void PlainRingOutDetector::updateTrack(Track& track, double f, double level, double time) const {
    const double dt = std::max(time - track.lastUpdate, 1e-6);
    const double alpha = 1.0 - std::exp(-dt / configuration.emaTimeConstantSeconds);
    track.level += alpha * (level - track.level);
    track.frequency += alpha * (f - track.frequency);
    track.lastUpdate = time;
    track.maxLevel = std::max(track.maxLevel, track.level);
    track.history.push_back({time, track.level, level, f});
    std::erase_if(track.history, [&](const Sample& sample) {
        return time - sample.time > configuration.historyDurationSeconds;
    });
}

bool PlainRingOutDetector::satisfiesGrowth(const Track& track) const {
    const auto& c = configuration;
    if (track.lastUpdate - track.firstSeen < c.minTrackAgeSeconds || track.history.size() < 3) {
        return false;
    }
    std::vector<std::pair<double, double>> all, recent;
    for (const Sample& sample : track.history) {
        all.emplace_back(sample.time, sample.level);
        if (track.lastUpdate - sample.time <= c.recentGrowthWindowSeconds) {
            recent.emplace_back(sample.time, sample.rawLevel);
        }
    }
    const auto longSlope = slopePerSecond(all);
    if (!longSlope || *longSlope < c.minGrowthRateDBPerSecond) {
        return false;
    }
    if (track.level - track.history.front().level < c.minTotalRiseDB) {
        return false;
    }
    if (track.level < track.maxLevel - c.nearRunningMaxToleranceDB) {
        return false;
    }
    const auto recentSlope = slopePerSecond(recent);
    if (recent.size() < 3 || !recentSlope || *recentSlope < c.minGrowthRateDBPerSecond) {
        return false;
    }
    const double n = static_cast<double>(track.history.size());
    double mean = 0.0, variance = 0.0;
    for (const Sample& sample : track.history) {
        mean += sample.frequency / n;
    }
    for (const Sample& sample : track.history) {
        variance += (sample.frequency - mean) * (sample.frequency - mean) / n;
    }
    const double limit = std::max(mean * (std::pow(2.0, c.maxFrequencyDeviationCents / 1200) - 1.0),
                                  c.minFrequencyDeviationBins * sampleRate_ / fftSize_);
    return !(std::sqrt(variance) > limit);
}

bool PlainRingOutDetector::looksLikeFeedback(const TonalPeak& peak,
                                             const std::vector<TonalPeak>& peaks) const {
    const auto& c = configuration;
    const double f = peak.frequencyHz;
    if (peak.levelDB - peak.noiseFloorDB < c.minAlertProminenceDB) {
        return false;
    }
    if (c.harmonicPartnerLimit < 1) {
        return true;
    }
    std::vector<double> others;
    for (const TonalPeak& other : peaks) {
        if (std::abs(other.frequencyHz - f) > sampleRate_ / fftSize_) {
            others.push_back(other.frequencyHz);
        }
    }
    std::vector<double> candidates{f};
    for (const double p : others) {
        const double n = std::round(f / p);
        if (p < f && n >= 2 && n <= c.maxHarmonicNumber &&
            !(std::abs(f - p * n) > p * n * c.harmonicRatioTolerance)) {
            candidates.push_back(p);
        }
    }
    for (const double candidate : candidates) {
        int partners = 0;
        for (const double p : others) {
            bool isPartner = false;
            for (int h = 1; h <= c.maxHarmonicNumber; ++h) {
                isPartner = isPartner || !(std::abs(p - candidate * h) >
                                           c.harmonicRatioTolerance * candidate * h);
            }
            partners += isPartner ? 1 : 0;
        }
        if (partners >= c.harmonicPartnerLimit) {
            return false;
        }
    }
    return true;
}

// The -3 dB points by walking out from the peak, bin by bin.
PlainAlert PlainRingOutDetector::alertFor(const TonalPeak& peak, double frequency,
                                          std::span<const double> spectrumDB) const {
    const auto& c = configuration;
    const double binWidth = sampleRate_ / fftSize_;
    const double target = peak.levelDB - 3.0;
    const int n = static_cast<int>(spectrumDB.size());
    const auto at = [&](int i) { return spectrumDB[static_cast<std::size_t>(i)]; };
    double edges[2] = {0.0, 0.0};
    bool found = true;
    for (const int side : {0, 1}) {
        const int direction = side == 0 ? -1 : 1;
        int i = peak.binIndex;
        int steps = 1;
        while (i + direction >= 0 && i + direction < n && at(i + direction) > target) {
            i += direction;
            ++steps;
        }
        if (i + direction < 0 || i + direction >= n || steps > c.bandwidthMaxSearchBins) {
            found = false;
            break;
        }
        const double a = at(i + direction), b = at(i);
        edges[side] = i + direction * (a == b ? 1.0 : (b - target) / (b - a));
    }
    const double bandwidth =
        found && edges[0] < edges[1] ? binWidth * (edges[1] - edges[0]) : 4.0 * binWidth;
    double q = frequency / bandwidth;
    if (bandwidth < binWidth * c.minBandwidthResolutionBins) {
        q = std::min(q, c.qResolutionCeiling);
    }
    q = std::min(std::max(q, c.minQ), c.maxQ);
    double cut = std::round(peak.levelDB - peak.noiseFloorDB);
    cut = std::min(std::max(cut, c.minSuggestedCutDB), c.maxSuggestedCutDB);
    return {.frequencyHz = frequency,
            .suggestedCutDB = -cut,
            .suggestedQ = q,
            .bandwidthHz = bandwidth};
}

}  // namespace TarvaneKit::Testing
