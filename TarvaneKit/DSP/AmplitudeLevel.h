// The level of an amplitude.
#pragma once

#include <cmath>

namespace TarvaneKit {

/// 20·log10 of an amplitude or a gain, in dB re 1; of 1e-12 and less, and of what is no number,
/// -240.
inline double amplitudeLevelDB(double amplitude) {
    constexpr double floor = 1e-12;
    return 20.0 * std::log10(amplitude > floor ? amplitude : floor);
}

}  // namespace TarvaneKit
