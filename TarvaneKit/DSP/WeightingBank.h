// The three frequency weightings of one signal, reduced at once to what level meters need of
// them: per weighting the sum of squares and the largest magnitude of a run of samples.
// IEC 61672-1, 5.4. Equal to WeightingFilter sample by sample, within rounding.
// Not thread-safe: the owner's lock covers every call.
#pragma once

#include <array>
#include <memory>
#include <span>

#include "DSP/Kernels/WeightingKernel.h"
#include "DSP/Weighting.h"

namespace TarvaneKit {

/// Of a run of weighted samples.
struct WeightedRun {
    double sumOfSquares = 0.0;
    double largestMagnitude = 0.0;
};

class WeightingBank {
  public:
    /// The sample rate is positive. Banks of one rate share their tables.
    explicit WeightingBank(double sampleRate);

    /// The next samples of the signal, each times `gain` ahead of the weighting; indexed by
    /// `Weighting`. No allocation.
    std::array<WeightedRun, 3> process(std::span<const float> samples, double gain);

  private:
    std::shared_ptr<const WeightingTables> tables_;
    double scaleA_;
    double scaleC_;
    WeightingCarry carry_;
};

}  // namespace TarvaneKit
