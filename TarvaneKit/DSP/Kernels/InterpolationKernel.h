// Reading an array at other places than its entries. Called by SpectrogramRow.
#pragma once

#include <cstdint>

namespace TarvaneKit {

/// out[i] = values[indexes[i]].
void gather(const float* values, const std::int32_t* indexes, float* out, int count);

/// out[i] = the value between values[indexes[i]] and the one after it, `fractions[i]` of the way.
void interpolate(const double* values, const std::int32_t* indexes, const double* fractions,
                 float* out, int count);

/// The same at positions[i] = frequencies[i] scale, taking the first of `valueCount` values, at
/// least 1, below position 0 and the last one from the last index on.
void interpolateAt(const double* values, int valueCount, const double* frequencies, double scale,
                   float* out, int count);

}  // namespace TarvaneKit
