// Reading an array at other places than its entries. Called by SpectrogramRow.
#pragma once

#include <cstdint>
#include <span>

namespace TarvaneKit {

/// out[i] = values[indexes[i]]; as many of either.
void gather(std::span<const float> values, std::span<const std::int32_t> indexes,
            std::span<float> out);

/// out[i] = the value between values[indexes[i]] and the one after it, `fractions[i]` of the way.
void interpolate(std::span<const double> values, std::span<const std::int32_t> indexes,
                 std::span<const double> fractions, std::span<float> out);

/// The same at positions[i] = frequencies[i] scale, taking the first value, of at least one, below
/// position 0 and the last one from the last index on.
void interpolateAt(std::span<const double> values, std::span<const double> frequencies,
                   double scale, std::span<float> out);

}  // namespace TarvaneKit
