// IEC 61260-1:2014, table 1, class 1: the relative attenuation of a band, in dB, at the breakpoints
// of the frequency re the band's middle.
#pragma once

#include <array>
#include <cmath>
#include <limits>

namespace TarvaneKit::Testing {

struct ClassOneAttenuation {
    /// Of an octave band: the frequency lies at the octave ratio to this power, above the middle or
    /// below it.
    double exponent;
    double lowest, highest;
};

/// The octave ratio, 5.2.
inline const double octaveRatio = std::pow(10.0, 0.3);

/// Just inside the edge, so that it isn't the edge itself.
inline constexpr double insideTheEdge = 0.4999;

inline constexpr double noLimit = std::numeric_limits<double>::infinity();
inline constexpr std::array classOneAttenuations{
    ClassOneAttenuation{0.0, -0.4, 0.4},           ClassOneAttenuation{1.0 / 8.0, -0.4, 0.5},
    ClassOneAttenuation{1.0 / 4.0, -0.4, 0.7},     ClassOneAttenuation{3.0 / 8.0, -0.4, 1.4},
    ClassOneAttenuation{insideTheEdge, -0.4, 5.3}, ClassOneAttenuation{0.5, 1.2, noLimit},
    ClassOneAttenuation{1.0, 16.6, noLimit},       ClassOneAttenuation{2.0, 40.5, noLimit},
    ClassOneAttenuation{3.0, 60.0, noLimit},       ClassOneAttenuation{4.0, 70.0, noLimit}};

/// The breakpoint above the middle of a band of 1/b octave, re the middle;
/// the one below is its reciprocal.
inline double breakpoint(double exponent, int bandsPerOctave) {
    const double ofOctave = std::pow(octaveRatio, exponent) - 1.0;
    const double halfBand = std::pow(octaveRatio, 1.0 / (2.0 * bandsPerOctave)) - 1.0;
    const double halfOctave = std::pow(octaveRatio, 0.5) - 1.0;
    return 1.0 + halfBand / halfOctave * ofOctave;
}

}  // namespace TarvaneKit::Testing
