// Lengths of the Fourier transforms, in samples.
#pragma once

namespace TarvaneApp::TransformSizes {

/// Of the spectrum with its bands and ring-out detection.
constexpr int spectrum = 4096;
/// Of the spectrogram: finer lines at the cost of time.
constexpr int spectrogram = 8192;

}  // namespace TarvaneApp::TransformSizes
