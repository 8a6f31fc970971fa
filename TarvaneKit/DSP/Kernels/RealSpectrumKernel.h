// The two ends of a real Fourier transform: the window ahead of it, the magnitudes behind it.
// Called by FFTAnalyzer.
#pragma once

#include <span>

namespace TarvaneKit {

/// out[i] = samples[i] window[i], for all of the window.
void applyWindow(std::span<const float> samples, std::span<const float> window,
                 std::span<float> out);

/// How a real signal of N samples was transformed: as M = N/2 complex values, the even samples
/// being the real parts and the odd samples the imaginary parts.
struct PackedSpectrum {
    const float* values;   ///< M complex values, interleaved
    const float* cosines;  ///< cos(2 pi k / N) for k from 1 to M/2
    const float* sines;    ///< sin(2 pi k / N) for k from 1 to M/2
    int count;             ///< M, a power of two
};

/// magnitudes[k] = scale |X[k]| for k from 0 to M-1, X being the transform of the N samples.
void packedMagnitudes(const PackedSpectrum& packed, float scale, float* magnitudes);

}  // namespace TarvaneKit
