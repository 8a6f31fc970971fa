// The readings of programme loudness by name, as settings store them.
// ITU-R BS.1770-4, EBU R128, EBU Tech 3341 and 3342.
#pragma once

#include "Core/RawEnum.h"

namespace TarvaneKit {

enum class LoudnessMetric {
    momentary,     ///< LUFS, over 400 ms
    shortTerm,     ///< LUFS, over 3 s
    integrated,    ///< LUFS, gated, since the last reset
    range,         ///< LU, between percentiles of short-term loudness
    truePeakMax,   ///< dBTP
    momentaryMax,  ///< LUFS
    shortTermMax,  ///< LUFS
};

template <>
struct RawCases<LoudnessMetric> {
    static constexpr std::array all{
        RawCase{LoudnessMetric::momentary, "momentary"},
        RawCase{LoudnessMetric::shortTerm, "shortTerm"},
        RawCase{LoudnessMetric::integrated, "integrated"},
        RawCase{LoudnessMetric::range, "range"},
        RawCase{LoudnessMetric::truePeakMax, "truePeakMax"},
        RawCase{LoudnessMetric::momentaryMax, "momentaryMax"},
        RawCase{LoudnessMetric::shortTermMax, "shortTermMax"},
    };
};

}  // namespace TarvaneKit
