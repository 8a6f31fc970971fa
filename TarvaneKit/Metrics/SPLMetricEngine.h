// The sound level meter of one mono signal: every weighting under every time weighting, the
// peaks, and any number of equivalent levels, all running all the time, so that a change of the
// reading shown finds a settled value. IEC 61672-1.
//
// It is the one place where the calibration reaches the samples: a reading is in dB re full
// scale while uncalibrated and in dB SPL with a calibration, and needs no offset afterwards.
//
// Thread-safe by one lock. `processBlock` runs on the capture thread and holds it for the whole
// block, so a reader never sees a block half applied; everything else may come from any thread.
#pragma once

#include <array>
#include <map>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "Calibration/CalibrationProfile.h"
#include "DSP/LeqAccumulator.h"
#include "DSP/LevelDetector.h"
#include "DSP/PeakDetector.h"
#include "DSP/WeightingBank.h"
#include "Metrics/SPLMetric.h"

namespace TarvaneKit {

class SPLMetricEngine {
  public:
    struct LeqProgress {
        double elapsedFraction = 0.0;
        bool isComplete = false;
        bool operator==(const LeqProgress&) const = default;
    };

    /// The sample rate is positive and fixed.
    SPLMetricEngine(double sampleRate, CalibrationProfile calibration);

    CalibrationProfile calibration() const;
    /// In force from the next block on; nothing already accumulated is rescaled.
    void setCalibration(CalibrationProfile calibration);

    /// A new accumulation under that id, in place of one that is there.
    void configureLeq(const std::string& id, Weighting weighting, double integrationSeconds);
    /// An unknown id does nothing.
    void resetLeq(const std::string& id);
    void resetPeakDetectors();
    /// Levels and peaks; neither the filters' states nor the accumulations.
    void resetAllDetectors();

    /// Samples relative to full scale, finite. An empty block changes nothing. No allocation; no
    /// wait but for the lock.
    void processBlock(std::span<const float> samples);
    /// The same for the filters alone: they settle on the samples behind a hole in the signal, and
    /// no reading counts the click that the hole is.
    void settle(std::span<const float> samples);

    /// -240 dB for silence; minus infinity for an accumulation that is unknown or has no audio
    /// yet, and for any reading that isn't this engine's.
    double value(const SPLMetric& metric) const;
    /// One value per metric, all of one instant.
    std::vector<double> values(std::span<const SPLMetric> metrics) const;
    /// The same without allocation; both spans have one length.
    void values(std::span<const SPLMetric> metrics, std::span<double> result) const;
    /// 10^(value / 10) of each, without a way over its level: what the two sides of a stereo
    /// channel are put together from. 0 where there is no value.
    void powers(std::span<const SPLMetric> metrics, std::span<double> result) const;
    /// Empty for an unknown id.
    std::optional<LeqProgress> leqProgress(const std::string& id) const;

  private:
    static constexpr std::size_t weightingCount = allCases<Weighting>().size();
    static constexpr std::size_t timeWeightingCount = allCases<TimeWeighting>().size();

    // All that measures one weighted signal.
    struct WeightedMeters {
        explicit WeightedMeters(double sampleRate);
        void reset();

        std::array<LevelDetector, timeWeightingCount> levels;  // by TimeWeighting
        PeakDetector peak;
    };
    struct WeightedLeq {
        Weighting weighting;
        LeqAccumulator accumulator;
    };

    // The caller of these holds the lock.
    double readingOf(const SPLMetric& metric) const;
    double powerOf(const SPLMetric& metric) const;

    mutable std::mutex lock_;
    CalibrationProfile calibration_;
    double gain_;  // 10^(the calibration's offset / 20)
    const double sampleRate_;
    WeightingBank weightings_;
    std::array<WeightedMeters, weightingCount> meters_;  // by Weighting
    std::map<std::string, WeightedLeq> leqAccumulators_;
};

}  // namespace TarvaneKit
