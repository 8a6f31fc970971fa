// Raises an alert when a sound system starts to ring: acoustic feedback on its way up. Feedback is
// told apart from music by its behaviour: one steady frequency that keeps growing and has no
// harmonic family. Every tonal peak is tracked from frame to frame with a short history, and a
// track alerts once, when all tests on it hold. One per channel, fed on the analysis queue with
// the line spectrum as it is, neither smoothed nor tilted. Not thread-safe. All time is the
// frames' own.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "Core/Date.h"
#include "DSP/PeakPicker.h"
#include "DSP/RingAlert.h"
#include "DSP/RingOutSensitivity.h"

namespace TarvaneKit {

class RingOutDetector {
  public:
    using Sensitivity = RingOutSensitivity;

    /// The search in a spectrum in dB full scale. In one in dB SPL only `minPeakLevelDB` differs.
    static constexpr PeakPicker::Configuration fullScalePeakPicker{.minFrequencyHz = 80.0,
                                                                   .maxFrequencyHz = 16000.0,
                                                                   .prominenceThresholdDB = 6.0,
                                                                   .minPeakLevelDB = -60.0,
                                                                   .noiseFloorWindowHz = 100.0,
                                                                   .noiseFloorGuardHz = 12.0,
                                                                   .maxPeaks = 24};

    struct Configuration {
        Configuration(Sensitivity sensitivity, const PeakPicker::Configuration& peakPickerOptions);

        /// Overwrites the five fields that depend on the sensitivity, and nothing else.
        void apply(Sensitivity sensitivity);

        PeakPicker::Configuration peakPicker;
        /// A peak belongs to a track within the larger of the two.
        double trackingToleranceMinBins = 2.0;
        double trackingToleranceSemitoneFraction = 0.25;
        double emaTimeConstantSeconds = 0.3;
        double historyDurationSeconds = 2.0;
        /// A track that goes unmatched for longer is dropped: four frames at 60 a second.
        double maxMissedSeconds = 0.075;
        double minTrackAgeSeconds;
        double minGrowthRateDBPerSecond;
        /// Over the history.
        double minTotalRiseDB;
        double nearRunningMaxToleranceDB = 0.3;
        int bandwidthMaxSearchBins = 50;
        /// A narrower bandwidth is the window's, not the ring's: it allows `qResolutionCeiling`.
        double minBandwidthResolutionBins = 3.0;
        double minQ = 0.7;
        double maxQ = 30.0;
        double qResolutionCeiling = 15.0;
        double minSuggestedCutDB = 3.0;
        double maxSuggestedCutDB = 12.0;
        double recentGrowthWindowSeconds = 0.5;
        /// The pitch's standard deviation over the history may reach the larger of the two.
        double maxFrequencyDeviationCents;
        double minFrequencyDeviationBins = 0.25;
        double minAlertProminenceDB;
        /// So many harmonic partners are a musical tone; below 1 nobody looks for partners.
        int harmonicPartnerLimit = 2;
        int maxHarmonicNumber = 6;
        double harmonicRatioTolerance = 0.015;

        bool operator==(const Configuration&) const = default;
    };

    RingOutDetector(double sampleRate, int fftSize, const Configuration& initialConfiguration);

    /// May be changed between updates.
    Configuration configuration;

    double sampleRate() const { return sampleRate_; }
    int fftSize() const { return fftSize_; }
    /// Tones under watch.
    int trackCount() const { return static_cast<int>(tracks_.size()); }

    /// The alert for the ring that sounds in the last frame, the strongest of several; made anew
    /// in every frame, with the frequency of that frame.
    const std::optional<RingAlert>& currentLiveAlert() const { return currentLiveAlert_; }

    /// Forgets all tracks and the live alert.
    void reset();

    /// Takes the next frame in time and returns the alerts that it raised, one per track in that
    /// track's life, with the smoothed frequency. Allocates only for tones it had no room for.
    std::vector<RingAlert> update(std::span<const double> spectrumDB, Date frameDate);
    std::vector<RingAlert> update(const LineSpectrum& spectrum, Date frameDate);

  private:
    struct Sample {
        Date date;
        double levelDB;      ///< smoothed, after this frame
        double rawLevelDB;   ///< the peak's
        double frequencyHz;  ///< the peak's
    };

    // Samples in the order of their frames. What falls out at the front is passed over and its
    // memory taken back now and then, so that a frame costs no more than its one sample.
    class History {
      public:
        std::span<const Sample> samples() const { return std::span(samples_).subspan(begin_); }
        /// What `append` and `removeOlderThan` will touch.
        void prefetch() const;
        void append(const Sample& sample);
        void removeOlderThan(double seconds, Date now);
        void clear();

      private:
        std::vector<Sample> samples_;
        std::size_t begin_ = 0;
        bool isOrdered_ = true;  // until a clock steps back
    };

    struct RingTrack {
        Date firstSeenDate;
        Date lastUpdateDate;
        double emaLevelDB;
        double emaFrequencyHz;
        double runningMaxEmaLevelDB;
        History history;
        bool hasAlerted = false;
        bool isMatched = false;  // by a peak of the frame at hand
    };

    double binWidthHz() const { return sampleRate_ / fftSize_; }
    RingTrack* trackNear(double frequencyHz);
    void addTrack(const TonalPeak& peak, Date date);
    void updateTrack(RingTrack& track, const TonalPeak& peak, Date date) const;
    bool trackSatisfiesGrowth(const RingTrack& track) const;
    bool isSteadyInPitch(std::span<const Sample> samples) const;
    bool looksLikeFeedback(const TonalPeak& peak) const;
    bool hasHarmonicFamily(double fundamentalHz, double ownFrequencyHz) const;
    std::optional<RingAlert> alertFor(const TonalPeak& peak, double frequencyHz,
                                      std::span<const double> spectrumDB, Date date) const;
    void expireTracks(Date now);

    double sampleRate_;
    int fftSize_;
    std::vector<RingTrack> tracks_;  // in order of creation
    std::optional<RingAlert> currentLiveAlert_;
    // Memory kept from frame to frame.
    std::vector<TonalPeak> peaks_;
    std::vector<History> spareHistories_;
};

}  // namespace TarvaneKit
