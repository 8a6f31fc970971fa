// The level of an amplitude, or of its square.
#pragma once

#include <cmath>

namespace TarvaneKit {

/// 20·log10 of an amplitude or a gain, in dB re 1; of 1e-12 and less, and of what is no number,
/// -240.
inline double amplitudeLevelDB(double amplitude) {
    constexpr double floor = 1e-12;
    return 20.0 * std::log10(amplitude > floor ? amplitude : floor);
}

/// The power that the lowest level stands for.
inline constexpr double lowestPower = 1e-24;

/// 10·log10 of a power, in dB re 1; of 1e-24 and less, and of what is no number, -240.
inline double powerLevelDB(double power) {
    return 10.0 * std::log10(power > lowestPower ? power : lowestPower);
}

}  // namespace TarvaneKit
