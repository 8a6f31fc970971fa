// What a loudness meter reads at one instant. Minus infinity: no value exists yet, or silence.
#pragma once

#include <limits>

#include "Metrics/LoudnessMetric.h"

namespace TarvaneKit {

struct LoudnessReadings {
    static constexpr double noValue = -std::numeric_limits<double>::infinity();

    double momentary = noValue;     ///< LUFS
    double shortTerm = noValue;     ///< LUFS
    double integrated = noValue;    ///< LUFS
    double range = noValue;         ///< LU
    double truePeakMax = noValue;   ///< dBTP
    double momentaryMax = noValue;  ///< LUFS
    double shortTermMax = noValue;  ///< LUFS

    constexpr double operator[](LoudnessMetric metric) const {
        switch (metric) {
            case LoudnessMetric::momentary:
                return momentary;
            case LoudnessMetric::shortTerm:
                return shortTerm;
            case LoudnessMetric::integrated:
                return integrated;
            case LoudnessMetric::range:
                return range;
            case LoudnessMetric::truePeakMax:
                return truePeakMax;
            case LoudnessMetric::momentaryMax:
                return momentaryMax;
            case LoudnessMetric::shortTermMax:
                return shortTermMax;
        }
        return noValue;
    }

    bool operator==(const LoudnessReadings&) const = default;
};

}  // namespace TarvaneKit
