// The sound level meter's inner loop: sums of squares and peaks of the A, C and Z weighted
// signal of one block, on the processor's vector unit. WeightingKernel.cpp argues the method.
// Called on the capture thread, under the lock of the engine that owns the state.
// No allocation; as fast as its block is long.
#pragma once

#include <array>
#include <span>

namespace TarvaneKit {

/// What each state of the A and C filters, which share poles, holds. A row depends on rows above.
enum WeightingStateIndex {
    stateU1,  ///< behind the first f1 pole
    stateU2,  ///< behind the second f1 pole
    stateV1,  ///< behind the first f4 pole
    stateV2,  ///< behind the second f4 pole
    stateD,   ///< v2's last step
    stateQ2,  ///< behind the f2 pole
    stateQ3,  ///< behind the f3 pole
    weightingStateCount,
};
using WeightingStates = std::array<double, weightingStateCount>;

/// The pole of each corner frequency in the z plane.
struct WeightingPoles {
    double p1 = 0.0;
    double p2 = 0.0;
    double p3 = 0.0;
    double p4 = 0.0;
};

/// The filters' behaviour over a segment of up to `maxSegmentLength` samples.
struct WeightingTables {
    static constexpr int maxSegmentLength = 128;
    static constexpr int responseStride = 8;
    static_assert(weightingStateCount <= responseStride);

    explicit WeightingTables(const WeightingPoles& filterPoles);

    WeightingPoles poles;
    /// [age][state]: each state that many samples after a single input step of 1.
    alignas(64) std::array<double, maxSegmentLength * responseStride> response{};
    /// [length][to][from]: the states after that many samples without input; lower triangular.
    std::array<std::array<WeightingStates, weightingStateCount>, maxSegmentLength + 1> transition{};
};

/// What the filters carry from block to block, in units of the scaled samples.
struct WeightingCarry {
    double previousSample = 0.0;
    WeightingStates states{};
};

/// A and C without the factors of their sections and without `WeightingFilter::gain()`.
struct WeightingSums {
    double sumOfSquaresA = 0.0;
    double sumOfSquaresC = 0.0;
    double sumOfSquaresZ = 0.0;
    double squaredPeakA = 0.0;
    double squaredPeakC = 0.0;
    double peakZ = 0.0;
};

/// Filters the samples, each times `gain`.
WeightingSums weightBlock(const WeightingTables& tables, double gain,
                          std::span<const float> samples, WeightingCarry& carry);

}  // namespace TarvaneKit
