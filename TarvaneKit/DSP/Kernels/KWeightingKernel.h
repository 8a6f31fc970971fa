// The loudness meter's filter loop: the sum of squares of one channel's K-weighted samples, on the
// processor's vector unit. KWeightingKernel.cpp argues the method.
// Called on the capture thread by the filter that owns the states. No allocation.
#pragma once

#include <array>
#include <span>

namespace TarvaneKit {

/// Each stage's states: the running sum of its recursion, and the running sum of that sum.
enum KWeightingStateIndex {
    shelfSum,
    shelfDoubleSum,
    highPassSum,
    highPassDoubleSum,
    kWeightingStateCount,
};
using KWeightingStates = std::array<double, kWeightingStateCount>;

/// A second-order section (b0 + b1 w + b2 w^2) / (1 + a1 w + a2 w^2), w for z^-1.
struct Biquad {
    double b0 = 0.0;
    double b1 = 0.0;
    double b2 = 0.0;
    double a1 = 0.0;
    double a2 = 0.0;
};

/// A second-order section as two running sums; without the factor b0.
struct SummingSection {
    static SummingSection of(const Biquad& biquad);

    double beta = 0.0;    ///< recursion from the double sum
    double keep = 0.0;    ///< what the sum keeps of itself from sample to sample
    double outSum = 0.0;  ///< the sum's part in the output
    double outDoubleSum = 0.0;
};

/// The filter's behaviour over a segment of up to `maxSegmentLength` samples.
struct KWeightingTables {
    static constexpr int maxSegmentLength = 128;

    KWeightingTables(const Biquad& shelfStage, const Biquad& highPassStage);

    SummingSection shelf;
    SummingSection highPass;
    /// [age]: the states that many samples after a single sample of 1.
    alignas(64) std::array<KWeightingStates, maxSegmentLength> response{};
    /// [length][to][from]: the states after that many samples of silence; the shelf's rows don't
    /// depend on the high-pass.
    std::array<std::array<KWeightingStates, kWeightingStateCount>, maxSegmentLength + 1>
        transition{};
};

/// One sample through both sections, without their factors b0.
double kWeightSample(const KWeightingTables& tables, double sample, KWeightingStates& states);

/// The same for a run of samples, reduced to the sum of the squares; 0 for an empty run.
double kWeightedSumOfSquares(const KWeightingTables& tables, std::span<const float> samples,
                             KWeightingStates& states);

}  // namespace TarvaneKit
