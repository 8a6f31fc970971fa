// Band resolutions of the analyzer: bands per octave (IEC 61260-1).
#pragma once

#include <string>

#include "Core/RawEnum.h"

namespace TarvaneKit {

enum class OctaveFraction {
    oneOctave = 1,
    thirdOctave = 3,
    sixthOctave = 6,
    twelfthOctave = 12,
    twentyFourthOctave = 24,
    fortyEighthOctave = 48,
};

template <>
struct RawCases<OctaveFraction> {
    static constexpr std::array all{RawCase{OctaveFraction::oneOctave, 1},
                                    RawCase{OctaveFraction::thirdOctave, 3},
                                    RawCase{OctaveFraction::sixthOctave, 6},
                                    RawCase{OctaveFraction::twelfthOctave, 12},
                                    RawCase{OctaveFraction::twentyFourthOctave, 24},
                                    RawCase{OctaveFraction::fortyEighthOctave, 48}};
};

/// "1/3 Octave", as menus show it.
std::string label(OctaveFraction fraction);

}  // namespace TarvaneKit
