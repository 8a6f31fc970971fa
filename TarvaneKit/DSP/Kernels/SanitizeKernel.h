// The entrance of samples from a device: what isn't a number counts as silence from here on, so
// that nothing behind has to ask. Called on the capture thread for every block.
#pragma once

#include <span>

namespace TarvaneKit {

/// 60 dB above full scale. No converter delivers more, and no mix that a mixer could hold; a single
/// sample of 1e38 would leave detectors and averages far above everything for seconds.
constexpr float largestSample = 1000.0F;

/// Copies the samples, each NaN or infinity as 0 and none beyond `largestSample`, and returns the
/// largest magnitude copied; 0 for no samples. `in` and `out` are of one length and may be the same
/// buffer.
float copySanitized(std::span<const float> in, std::span<float> out);

}  // namespace TarvaneKit
