// Programme loudness of one channel of the application, mono or stereo: momentary, short-term and
// integrated loudness, loudness range, true peak and the maxima, streaming and in fixed memory.
// ITU-R BS.1770-4, EBU R128, EBU Tech 3341 and 3342.
//
// Audio is cut into steps of 100 ms. A momentary block is the last four of them, a short-term
// block the last thirty, and each new step ends one of either. Statistics count the blocks that
// lie wholly behind the last reset; the running windows don't know of it.
//
// `process` runs on the capture thread and alone touches the filters, the detectors and the step
// under way. The lock guards all the rest: it is taken for an instant at a call's ends and for
// each completed step, so a reader never waits for the filters. Everything else may come from any
// thread.
#pragma once

#include <array>
#include <mutex>
#include <optional>
#include <span>
#include <vector>

#include "DSP/KWeightingFilter.h"
#include "DSP/TruePeakDetector.h"
#include "Metrics/GatingHistogram.h"
#include "Metrics/LoudnessReadings.h"

namespace TarvaneKit {

class LoudnessMeter {
  public:
    /// The sample rate is positive and fixed. One weight per channel, at least one: BS.1770-4,
    /// table 3.
    LoudnessMeter(double sampleRate, std::vector<double> channelWeights);

    double sampleRate() const { return sampleRate_; }
    std::span<const double> channelWeights() const { return channelWeights_; }
    int channelCount() const { return static_cast<int>(channelWeights_.size()); }

    /// [channel][frame], relative to full scale, finite. The shortest channel cuts the others;
    /// channels beyond the weights are dropped. No allocation, no wait but for the lock.
    void process(std::span<const std::span<const float>> channels);
    /// The same for the filters alone: they settle on the samples behind a hole in the signal, and
    /// no reading counts the click that the hole is.
    void settle(std::span<const std::span<const float>> channels);

    /// Starts the statistics anew: integrated, range and all maxima. The running windows, and
    /// with them momentary and short-term, go on.
    void reset();

    /// All of one instant.
    LoudnessReadings readings() const;
    double value(LoudnessMetric metric) const;

  private:
    static constexpr int momentarySteps = 4;   // 400 ms
    static constexpr int shortTermSteps = 30;  // 3 s

    struct Channel {
        explicit Channel(double sampleRate);

        KWeightingFilter filter;
        TruePeakDetector truePeak;
        std::vector<float> truePeakPast;  // the detector's, ahead of the call under way
    };

    double truePeakAbove(double floor, std::span<const std::span<const float>> channels,
                         std::size_t frames);
    void updateTruePeak(std::span<const std::span<const float>> channels, std::size_t frames);
    void integrate(std::span<const std::span<const float>> channels, std::size_t frames);

    // The caller of these holds the lock.
    void completeStep(double energy);
    void completeMomentaryBlock();
    void completeShortTermBlock();
    double meanOfNewest(int stepCount) const;
    double integratedLoudness() const;
    double loudnessRange() const;

    const double sampleRate_;
    const std::vector<double> channelWeights_;
    const int stepLength_;  // frames

    // The capture thread's own.
    std::vector<Channel> channels_;
    double stepEnergy_ = 0.0;
    int stepFrames_ = 0;

    mutable std::mutex lock_;
    double truePeakMaxLinear_ = 0.0;
    unsigned resetCount_ = 0;
    std::array<double, shortTermSteps> steps_{};  // ring of mean squares
    int stepWrite_ = 0;
    int stepsFilled_ = 0;
    int stepsSinceReset_ = 0;  // counts no further than a short-term block
    std::optional<double> momentaryEnergy_;
    std::optional<double> shortTermEnergy_;
    double maxMomentary_ = LoudnessReadings::noValue;
    double maxShortTerm_ = LoudnessReadings::noValue;
    GatingHistogram integratedHistogram_;
    GatingHistogram rangeHistogram_;
    mutable std::optional<double> cachedIntegrated_;
    mutable std::optional<double> cachedRange_;
};

}  // namespace TarvaneKit
