// The entrance of samples from a device: what isn't a number counts as silence from here on, so
// that nothing behind has to ask. Called on the capture thread for every block.
#pragma once

#include <span>

namespace TarvaneKit {

/// Copies the samples, each NaN or infinity as 0, and returns the largest magnitude copied; 0 for
/// no samples. `in` and `out` are of one length and may be the same buffer.
float copySanitized(std::span<const float> in, std::span<float> out);

}  // namespace TarvaneKit
