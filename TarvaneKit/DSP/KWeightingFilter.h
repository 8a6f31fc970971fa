// The frequency weighting of programme loudness: a high shelf for the head's effect and a
// high-pass, designed for any sample rate. ITU-R BS.1770-4, annex 1, tables 1 and 2, whose
// coefficients it reproduces at 48 kHz. `sumOfSquares` runs it through DSP/Kernels; `process` is
// the same filter one sample at a time.
// Not thread-safe: one stream of samples, in order. The states outlive a meter's reset.
#pragma once

#include <memory>
#include <span>

#include "DSP/Kernels/KWeightingKernel.h"

namespace TarvaneKit {

class KWeightingFilter {
  public:
    /// The sample rate is positive. Filters of one rate share their tables.
    explicit KWeightingFilter(double sampleRate);

    /// The first stage.
    const Biquad& shelf() const { return shelf_; }
    /// The second stage; its numerator is 1, -2, 1, not normalised.
    const Biquad& highPass() const { return highPass_; }

    /// Silence before the next sample.
    void reset();
    double process(double sample);
    /// Of the filtered samples; an empty run gives 0 and changes nothing. No allocation.
    double sumOfSquares(std::span<const float> samples);

  private:
    Biquad shelf_;
    Biquad highPass_;
    std::shared_ptr<const KWeightingTables> tables_;
    KWeightingStates states_{};
};

}  // namespace TarvaneKit
