// The small choices of a channel's displays. Their raw values are both what is stored and what
// the interface shows. `MeterEngine` offers each under its own name.
#pragma once

#include "Core/RawEnum.h"
#include "SpectrumViewMode.h"

namespace TarvaneApp {

enum class MetricMode { spl, peak, leq };

}  // namespace TarvaneApp

template <>
struct TarvaneKit::RawCases<TarvaneApp::MetricMode> {
    using Mode = TarvaneApp::MetricMode;
    static constexpr std::array all{RawCase{Mode::spl, "SPL"}, RawCase{Mode::peak, "Peak"},
                                    RawCase{Mode::leq, "Leq"}};
};
