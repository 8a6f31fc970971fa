// How readily a rising tone counts as feedback.
#pragma once

#include <string_view>

#include "Core/RawEnum.h"

namespace TarvaneKit {

enum class RingOutSensitivity { low, normal, high };

template <>
struct RawCases<RingOutSensitivity> {
    static constexpr std::array all{RawCase{RingOutSensitivity::low, "low"},
                                    RawCase{RingOutSensitivity::normal, "normal"},
                                    RawCase{RingOutSensitivity::high, "high"}};
};

/// As menus show it.
constexpr std::string_view label(RingOutSensitivity sensitivity) {
    switch (sensitivity) {
        case RingOutSensitivity::low:
            return "Low";
        case RingOutSensitivity::high:
            return "High";
        case RingOutSensitivity::normal:
            break;
    }
    return "Normal";
}

}  // namespace TarvaneKit
