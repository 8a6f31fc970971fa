// Line spectra as a channel computes them: 4096 samples under a periodic Hann window, one-sided
// amplitudes with a full-scale sine at 0 dB, levels not below -180 dB, sixty frames a second.
// Independent of the library's transform.
#pragma once

#include <functional>
#include <span>
#include <vector>

#include "Core/Date.h"

namespace TarvaneKit::Testing {

inline constexpr double spectrumSampleRate = 48000.0;
inline constexpr int spectrumFFTSize = 4096;
inline constexpr int spectrumSamplesPerFrame = 800;

/// `spectrumFFTSize` samples to half as many amplitudes.
std::vector<float> lineMagnitudes(std::span<const float> samples);

/// 20 log10, raised to 1e-9 before.
std::vector<double> lineLevelsDB(std::span<const float> magnitudes);

/// The date of a frame, whole nanoseconds.
Date spectrumFrameDate(int frame);

/// Calls `receive` for each frame whose window lies inside the signal.
void forEachSpectrum(
    std::span<const float> signal,
    const std::function<void(std::span<const double> levelsDB, std::span<const float> magnitudes,
                             Date date)>& receive);

}  // namespace TarvaneKit::Testing
