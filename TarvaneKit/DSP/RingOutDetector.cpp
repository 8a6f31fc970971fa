#include "DSP/RingOutDetector.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <utility>

namespace TarvaneKit {

namespace {

constexpr double centsPerOctave = 1200.0;
constexpr double semitonesPerOctave = 12.0;
// Keeps the smoothing alive when two frames carry one date.
constexpr double minFrameSpacingSeconds = 1e-6;
constexpr std::size_t minSlopeSamples = 3;
constexpr double fallbackBandwidthBins = 4.0;

double secondsBetween(Date from, Date to) {
    return std::chrono::duration<double>(to - from).count();
}

// Least-squares line through levels over time, in dB per second.
class LevelSlope {
  public:
    void add(Date date, double levelDB) {
        if (count_ == 0) {
            origin_ = date;
        }
        const double x = secondsBetween(origin_, date);
        ++count_;
        sumX_ += x;
        sumY_ += levelDB;
        sumXX_ += x * x;
        sumXY_ += x * levelDB;
    }

    std::size_t count() const { return count_; }

    // False too where no line is defined: fewer than 2 points, or all at one time.
    bool isAtLeast(double slope) const {
        const double n = static_cast<double>(count_);
        const double spread = n * sumXX_ - sumX_ * sumX_;
        return count_ >= 2 && spread != 0.0 && (n * sumXY_ - sumX_ * sumY_) / spread >= slope;
    }

  private:
    Date origin_{};
    std::size_t count_ = 0;
    double sumX_ = 0.0;
    double sumY_ = 0.0;
    double sumXX_ = 0.0;
    double sumXY_ = 0.0;
};

}  // namespace

RingOutDetector::Configuration::Configuration(Sensitivity sensitivity,
                                              const PeakPicker::Configuration& peakPickerOptions)
    : peakPicker(peakPickerOptions) {
    apply(sensitivity);
}

// The steadiness limit opens as the others tighten: a more eager detector takes a ring earlier,
// when its pitch has had less time to settle.
void RingOutDetector::Configuration::apply(Sensitivity sensitivity) {
    switch (sensitivity) {
        case Sensitivity::low:
            minTrackAgeSeconds = 1.5;
            minGrowthRateDBPerSecond = 3.0;
            minTotalRiseDB = 9.0;
            maxFrequencyDeviationCents = 6.0;
            minAlertProminenceDB = 15.0;
            break;
        case Sensitivity::normal:
            minTrackAgeSeconds = 1.0;
            minGrowthRateDBPerSecond = 2.0;
            minTotalRiseDB = 6.0;
            maxFrequencyDeviationCents = 10.0;
            minAlertProminenceDB = 12.0;
            break;
        case Sensitivity::high:
            minTrackAgeSeconds = 0.6;
            minGrowthRateDBPerSecond = 1.0;
            minTotalRiseDB = 4.0;
            maxFrequencyDeviationCents = 20.0;
            minAlertProminenceDB = 9.0;
            break;
    }
}

void RingOutDetector::History::append(const Sample& sample) {
    isOrdered_ = isOrdered_ && (samples_.empty() || samples_.back().date <= sample.date);
    samples_.push_back(sample);
}

void RingOutDetector::History::removeOlderThan(double seconds, Date now) {
    const auto isOld = [&](const Sample& sample) {
        return secondsBetween(sample.date, now) > seconds;
    };
    while (begin_ < samples_.size() && isOld(samples_[begin_])) {
        ++begin_;
    }
    if (!isOrdered_ || 2 * begin_ >= samples_.size()) {
        samples_.erase(samples_.begin(), samples_.begin() + static_cast<std::ptrdiff_t>(begin_));
        begin_ = 0;
    }
    if (!isOrdered_) {
        std::erase_if(samples_, isOld);
        isOrdered_ = std::ranges::is_sorted(samples_, {}, &Sample::date);
    }
}

void RingOutDetector::History::prefetch() const {
    if (!samples_.empty()) {
        __builtin_prefetch(&samples_.back());
        __builtin_prefetch(samples_.data() + begin_);
    }
}

void RingOutDetector::History::clear() {
    samples_.clear();
    begin_ = 0;
    isOrdered_ = true;
}

RingOutDetector::RingOutDetector(double sampleRate, int fftSize,
                                 const Configuration& initialConfiguration)
    : configuration(initialConfiguration), sampleRate_(sampleRate), fftSize_(fftSize) {}

void RingOutDetector::reset() {
    for (RingTrack& track : tracks_) {
        spareHistories_.push_back(std::move(track.history));
    }
    tracks_.clear();
    currentLiveAlert_.reset();
}

std::vector<RingAlert> RingOutDetector::update(std::span<const double> spectrumDB, Date frameDate) {
    return update(LineSpectrum{.levelsDB = spectrumDB}, frameDate);
}

std::vector<RingAlert> RingOutDetector::update(const LineSpectrum& spectrum, Date frameDate) {
    // Each history is memory of its own, and the search for peaks is long enough to fetch them all.
    for (RingTrack& track : tracks_) {
        track.isMatched = false;
        track.history.prefetch();
    }
    // The thread's, one for all detectors that it runs: it stays in the cache, where each
    // detector's own would have left it between two frames.
    thread_local PeakPicker::Workspace workspace;
    PeakPicker::findPeaks(spectrum, sampleRate_, fftSize_, configuration.peakPicker, workspace,
                          peaks_);
    std::vector<RingAlert> alerts;
    std::optional<RingAlert> strongest;
    double strongestLevelDB = 0.0;
    for (const TonalPeak& peak : peaks_) {
        RingTrack* track = trackNear(peak.frequencyHz);
        if (track == nullptr) {
            addTrack(peak, frameDate);
            continue;
        }
        track->isMatched = true;
        updateTrack(*track, peak, frameDate);
        if (!track->hasAlerted && trackSatisfiesGrowth(*track) && looksLikeFeedback(peak)) {
            track->hasAlerted = true;
            if (auto alert = alertFor(peak, track->emaFrequencyHz, spectrum.levelsDB, frameDate)) {
                alerts.push_back(*std::move(alert));
            }
        }
        if (track->hasAlerted && (!strongest || track->emaLevelDB > strongestLevelDB)) {
            if (auto alert = alertFor(peak, peak.frequencyHz, spectrum.levelsDB, frameDate)) {
                strongest = std::move(alert);
                strongestLevelDB = track->emaLevelDB;
            }
        }
    }
    expireTracks(frameDate);
    currentLiveAlert_ = std::move(strongest);
    return alerts;
}

// The nearest within tolerance that no peak of this frame has matched yet; of two equally near
// the older.
RingOutDetector::RingTrack* RingOutDetector::trackNear(double frequencyHz) {
    const double semitones = configuration.trackingToleranceSemitoneFraction;
    double nearest = std::max(frequencyHz * (std::exp2(semitones / semitonesPerOctave) - 1.0),
                              binWidthHz() * configuration.trackingToleranceMinBins);
    RingTrack* found = nullptr;
    for (RingTrack& track : tracks_) {
        const double distance = std::abs(track.emaFrequencyHz - frequencyHz);
        if (!track.isMatched && (found == nullptr ? distance <= nearest : distance < nearest)) {
            nearest = distance;
            found = &track;
        }
    }
    return found;
}

// The new track counts as unmatched: a neighbouring peak of the same frame may still find it.
void RingOutDetector::addTrack(const TonalPeak& peak, Date date) {
    History history;
    if (!spareHistories_.empty()) {
        history = std::move(spareHistories_.back());
        spareHistories_.pop_back();
        history.clear();
    }
    history.append({.date = date,
                    .levelDB = peak.levelDB,
                    .rawLevelDB = peak.levelDB,
                    .frequencyHz = peak.frequencyHz});
    tracks_.push_back({.firstSeenDate = date,
                       .lastUpdateDate = date,
                       .emaLevelDB = peak.levelDB,
                       .emaFrequencyHz = peak.frequencyHz,
                       .runningMaxEmaLevelDB = peak.levelDB,
                       .history = std::move(history)});
}

void RingOutDetector::updateTrack(RingTrack& track, const TonalPeak& peak, Date date) const {
    const double elapsed =
        std::max(secondsBetween(track.lastUpdateDate, date), minFrameSpacingSeconds);
    const double alpha = 1.0 - std::exp(-elapsed / configuration.emaTimeConstantSeconds);
    track.emaLevelDB += alpha * (peak.levelDB - track.emaLevelDB);
    track.emaFrequencyHz += alpha * (peak.frequencyHz - track.emaFrequencyHz);
    track.lastUpdateDate = date;
    track.runningMaxEmaLevelDB = std::max(track.runningMaxEmaLevelDB, track.emaLevelDB);
    track.history.append({.date = date,
                          .levelDB = track.emaLevelDB,
                          .rawLevelDB = peak.levelDB,
                          .frequencyHz = peak.frequencyHz});
    track.history.removeOlderThan(configuration.historyDurationSeconds, date);
}

// All tests must hold, so their order is free: those that cost nothing come first and spare a
// steady tone the rest.
bool RingOutDetector::trackSatisfiesGrowth(const RingTrack& track) const {
    const std::span<const Sample> samples = track.history.samples();
    const double minSlope = configuration.minGrowthRateDBPerSecond;
    const double age = secondsBetween(track.firstSeenDate, track.lastUpdateDate);
    if (!(age >= configuration.minTrackAgeSeconds) || samples.size() < minSlopeSamples ||
        !(track.emaLevelDB - samples.front().levelDB >= configuration.minTotalRiseDB) ||
        !(track.emaLevelDB >=
          track.runningMaxEmaLevelDB - configuration.nearRunningMaxToleranceDB)) {
        return false;
    }
    // Smoothed over the whole history, and raw over its last part: the growth goes on now.
    LevelSlope longSlope;
    LevelSlope recentSlope;
    for (const Sample& sample : samples) {
        longSlope.add(sample.date, sample.levelDB);
        if (secondsBetween(sample.date, track.lastUpdateDate) <=
            configuration.recentGrowthWindowSeconds) {
            recentSlope.add(sample.date, sample.rawLevelDB);
        }
    }
    return longSlope.isAtLeast(minSlope) && recentSlope.count() >= minSlopeSamples &&
           recentSlope.isAtLeast(minSlope) && isSteadyInPitch(samples);
}

bool RingOutDetector::isSteadyInPitch(std::span<const Sample> samples) const {
    const double n = static_cast<double>(samples.size());
    double sum = 0.0;
    for (const Sample& sample : samples) {
        sum += sample.frequencyHz;
    }
    const double mean = sum / n;
    double sumOfSquares = 0.0;
    for (const Sample& sample : samples) {
        sumOfSquares += (sample.frequencyHz - mean) * (sample.frequencyHz - mean);
    }
    const double cents = configuration.maxFrequencyDeviationCents;
    const double limit = std::max(mean * (std::exp2(cents / centsPerOctave) - 1.0),
                                  configuration.minFrequencyDeviationBins * binWidthHz());
    return std::sqrt(sumOfSquares / n) <= limit;
}

// A lone tone, well out of the noise: neither a fundamental with harmonics nor itself the
// harmonic of a lower peak that has others.
bool RingOutDetector::looksLikeFeedback(const TonalPeak& peak) const {
    const double f = peak.frequencyHz;
    if (peak.prominenceDB() < configuration.minAlertProminenceDB) {
        return false;
    }
    if (configuration.harmonicPartnerLimit < 1) {
        return true;
    }
    if (hasHarmonicFamily(f, f)) {
        return false;
    }
    return std::ranges::none_of(peaks_, [&](const TonalPeak& lower) {
        const double p = lower.frequencyHz;
        const double number = std::round(f / p);
        return std::abs(p - f) > binWidthHz() && p < f && number >= 2.0 &&
               number <= configuration.maxHarmonicNumber &&
               std::abs(f - p * number) <= p * number * configuration.harmonicRatioTolerance &&
               hasHarmonicFamily(p, f);
    });
}

// Whether enough peaks, the tone's own apart, lie on multiples of the fundamental.
bool RingOutDetector::hasHarmonicFamily(double fundamentalHz, double ownFrequencyHz) const {
    const auto isPartner = [&](const TonalPeak& peak) {
        if (!(std::abs(peak.frequencyHz - ownFrequencyHz) > binWidthHz())) {
            return false;
        }
        for (int number = 1; number <= configuration.maxHarmonicNumber; ++number) {
            const double harmonic = fundamentalHz * number;
            if (std::abs(peak.frequencyHz - harmonic) <=
                configuration.harmonicRatioTolerance * harmonic) {
                return true;
            }
        }
        return false;
    };
    return std::ranges::count_if(peaks_, isPartner) >= configuration.harmonicPartnerLimit;
}

// Empty where the frequency has no note.
std::optional<RingAlert> RingOutDetector::alertFor(const TonalPeak& peak, double frequencyHz,
                                                   std::span<const double> spectrumDB,
                                                   Date date) const {
    auto note = MusicalNoteNaming::nearestNote(frequencyHz, MusicalNoteNaming::a4Frequency);
    if (!note) {
        return std::nullopt;
    }
    const double bandwidthHz =
        PeakPicker::measureBandwidth(spectrumDB, peak.binIndex, peak.levelDB, binWidthHz(),
                                     configuration.bandwidthMaxSearchBins)
            .value_or(fallbackBandwidthBins * binWidthHz());
    double q = frequencyHz / bandwidthHz;
    if (bandwidthHz < binWidthHz() * configuration.minBandwidthResolutionBins) {
        q = std::min(q, configuration.qResolutionCeiling);
    }
    const double cutDB =
        std::clamp(std::round(peak.prominenceDB()), configuration.minSuggestedCutDB,
                   configuration.maxSuggestedCutDB);
    return RingAlert{.id = UUID::random(),
                     .frequencyHz = frequencyHz,
                     .note = *std::move(note),
                     .suggestedCutDB = -cutDB,
                     .suggestedQ = std::clamp(q, configuration.minQ, configuration.maxQ),
                     .bandwidthHz = bandwidthHz,
                     .date = date};
}

void RingOutDetector::expireTracks(Date now) {
    const auto isGone = [&](const RingTrack& track) {
        return secondsBetween(track.lastUpdateDate, now) > configuration.maxMissedSeconds;
    };
    auto kept = tracks_.begin();
    for (auto track = tracks_.begin(); track != tracks_.end(); ++track) {
        if (isGone(*track)) {
            spareHistories_.push_back(std::move(track->history));
        } else {
            if (kept != track) {
                *kept = std::move(*track);
            }
            ++kept;
        }
    }
    tracks_.erase(kept, tracks_.end());
}

}  // namespace TarvaneKit
