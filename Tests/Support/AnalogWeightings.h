// IEC 61672-1:2013, annex E: the design goals of the A and C weightings, from the frequencies that
// define them and from nothing of this program.
#pragma once

#include <cmath>

#include "DSP/Weighting.h"

namespace TarvaneKit::Testing {

struct AnalogCorners {
    double f1, f2, f3, f4;  // Hz
};

/// Formulas (E.2) to (E.5): C is 3 dB down at 10^1.5 and 10^3.9 Hz, A has two poles more about
/// 10^2.45 Hz, and both are 0 dB at 1 kHz.
inline AnalogCorners analogCorners() {
    const double reference = 1000.0 * 1000.0;
    const double low = std::pow(10.0, 2.0 * 1.5);
    const double high = std::pow(10.0, 2.0 * 3.9);
    const double d = std::sqrt(0.5);
    const double b = (reference + low * high / reference - d * (low + high)) / (1.0 - d);
    const double c = low * high;
    const double root = std::sqrt(b * b - 4.0 * c);
    const double center = std::pow(10.0, 2.45);
    return {std::sqrt((-b - root) / 2.0), (3.0 - std::sqrt(5.0)) / 2.0 * center,
            (3.0 + std::sqrt(5.0)) / 2.0 * center, std::sqrt((-b + root) / 2.0)};
}

/// The weighting in dB, 0 at 1 kHz.
inline double analogWeightingDB(Weighting weighting, double frequencyHz) {
    const AnalogCorners corners = analogCorners();
    const auto magnitude = [&](double f) {
        const double outer = std::hypot(f, corners.f1) * std::hypot(f, corners.f4);
        const double inner = std::hypot(f, corners.f2) * std::hypot(f, corners.f3);
        const double c = f * f / (outer * outer);
        return weighting == Weighting::a ? c * f * f / inner : c;
    };
    return weighting == Weighting::z
               ? 0.0
               : 20.0 * std::log10(magnitude(frequencyHz) / magnitude(1000.0));
}

}  // namespace TarvaneKit::Testing
