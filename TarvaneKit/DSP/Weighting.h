// The names of the frequency weightings (IEC 61672-1, 5.4) and of the level detectors' rules.
#pragma once

#include "Core/RawEnum.h"

namespace TarvaneKit {

enum class Weighting { a, c, z };

enum class TimeWeighting {
    fast,      ///< exponential, 0.125 s
    slow,      ///< exponential, 1 s
    infinite,  ///< mean of everything since the last reset
    none,      ///< mean square of the last block alone
};

template <>
struct RawCases<Weighting> {
    static constexpr std::array all{RawCase{Weighting::a, "A"}, RawCase{Weighting::c, "C"},
                                    RawCase{Weighting::z, "Z"}};
};

template <>
struct RawCases<TimeWeighting> {
    static constexpr std::array all{
        RawCase{TimeWeighting::fast, "Fast"}, RawCase{TimeWeighting::slow, "Slow"},
        RawCase{TimeWeighting::infinite, "Infinite"}, RawCase{TimeWeighting::none, "None"}};
};

}  // namespace TarvaneKit
