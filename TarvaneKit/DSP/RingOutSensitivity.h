// How readily a rising tone counts as feedback.
#pragma once

#include "Core/RawEnum.h"

namespace TarvaneKit {

enum class RingOutSensitivity { low, normal, high };

template <>
struct RawCases<RingOutSensitivity> {
    static constexpr std::array all{RawCase{RingOutSensitivity::low, "low"},
                                    RawCase{RingOutSensitivity::normal, "normal"},
                                    RawCase{RingOutSensitivity::high, "high"}};
};

}  // namespace TarvaneKit
