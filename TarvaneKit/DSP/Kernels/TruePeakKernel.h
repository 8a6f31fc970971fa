// The true-peak meter's inner loop: the largest magnitude of a signal's samples and of the values
// interpolated between them, on the processor's vector unit. TruePeakKernel.cpp argues the method
// and why its result is the plain 64-bit reading to the last bit.
// Called on the capture thread by the detector that owns the history. No allocation.
#pragma once

#include <span>
#include <vector>

namespace TarvaneKit {

/// An interpolation filter, polyphase, with what the kernel prepares from it.
struct TruePeakTable {
    static constexpr int maxTapsPerPhase = 128;

    /// A factor of 1, 2 or 4, at least one and at most `maxTapsPerPhase` taps; the coefficients
    /// as below, and for an even number of taps each other's mirror image.
    TruePeakTable(int oversampling, int taps, std::vector<double> phases);

    int oversamplingFactor;
    int tapsPerPhase;
    /// [phase][tap]; tap 0 meets the newest sample. Phase 0 is a sample itself and not used.
    std::vector<double> coefficients;

    /// No interpolated value exceeds this times the largest magnitude under the taps.
    double gainBound = 0.0;
    /// For the 32-bit search, by pairs of taps (j, T-1-j): [j below T/2][phase 2, half sum and
    /// half difference of phase 1] at factor 4, [j][phase 1] at factor 2. Empty where the number
    /// of taps is odd, or above 32: there the kernel does without the search.
    std::vector<float> foldedCoefficients;
    /// How many past samples the kernel needs, at least T-1.
    int historyLength = 0;
};

/// The largest magnitude of the samples and the values interpolated at them, where that is above
/// `floor`; otherwise `floor`. The history, `historyLength` samples, oldest first, moves on.
double largestTruePeak(const TruePeakTable& table, std::span<const float> samples,
                       std::span<float> history, double floor);

}  // namespace TarvaneKit
