// The largest value of the signal between and at its samples: oversampled by a windowed sinc, four
// times below 96 kHz, twice below 192 kHz, from there on the samples alone. ITU-R BS.1770-4,
// annex 2. The samples stand for themselves, the interpolated neighbours are 64-bit sums.
// Not thread-safe: one stream of samples, in order. The history outlives a meter's reset.
#pragma once

#include <memory>
#include <span>
#include <vector>

#include "DSP/Kernels/TruePeakKernel.h"

namespace TarvaneKit {

class TruePeakDetector {
  public:
    /// The sample rate is positive; the taps 1 to `TruePeakTable::maxTapsPerPhase`, of no effect
    /// from 192 kHz on. Detectors of one kind share their table.
    TruePeakDetector(double sampleRate, int tapsPerPhase);

    int oversamplingFactor() const { return table_->oversamplingFactor; }
    int tapsPerPhase() const { return table_->tapsPerPhase; }
    /// [phase][tap].
    std::span<const double> coefficients() const { return table_->coefficients; }

    /// Silence before the next sample, and no maximum.
    void reset();
    /// The history stays.
    void resetMax();

    /// Taken as a 32-bit float.
    void process(double sample);
    /// The largest magnitude of this block alone, 0 for an empty one. No allocation.
    double processBlock(std::span<const float> samples);
    /// Takes the samples in as `processBlock` does, for a caller that keeps the maximum itself:
    /// the larger of the block's largest magnitude and `floor`. Leaves `maxLinear` alone. The
    /// higher the floor, the less there is to compute.
    double raise(double floor, std::span<const float> samples);

    /// Over everything since the last reset.
    double maxLinear() const { return maxAbs_; }
    /// re full scale; minus infinity for silence.
    double maxDBTP() const;

    /// The past that the next samples meet, to take a detector back to it.
    std::span<const float> history() const { return history_; }
    /// Of the length of `history()`.
    void setHistory(std::span<const float> history);

  private:
    std::shared_ptr<const TruePeakTable> table_;
    std::vector<float> history_;
    double maxAbs_ = 0.0;
};

}  // namespace TarvaneKit
