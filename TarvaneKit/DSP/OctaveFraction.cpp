#include "DSP/OctaveFraction.h"

#include <fmt/format.h>

namespace TarvaneKit {

std::string label(OctaveFraction fraction) {
    return fmt::format("1/{} Octave", rawValue(fraction));
}

}  // namespace TarvaneKit
