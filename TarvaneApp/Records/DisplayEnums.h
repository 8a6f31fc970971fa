// The small choices of a channel's displays. Their raw values are what the interface shows, and of
// those that are settings also what is stored. `MeterEngine` offers each under its own name.
#pragma once

#include "Core/RawEnum.h"
#include "Records/SpectrumViewMode.h"

namespace TarvaneApp {

enum class MetricMode { spl, peak, leq };

/// In which unit a channel reads; it follows from settings and is none itself.
enum class ReadoutUnit { spl, dbfs, lufs };

}  // namespace TarvaneApp

template <>
struct TarvaneKit::RawCases<TarvaneApp::MetricMode> {
    using Mode = TarvaneApp::MetricMode;
    static constexpr std::array all{RawCase{Mode::spl, "SPL"}, RawCase{Mode::peak, "Peak"},
                                    RawCase{Mode::leq, "Leq"}};
};

template <>
struct TarvaneKit::RawCases<TarvaneApp::ReadoutUnit> {
    using Unit = TarvaneApp::ReadoutUnit;
    static constexpr std::array all{RawCase{Unit::spl, "SPL"}, RawCase{Unit::dbfs, "dBFS"},
                                    RawCase{Unit::lufs, "LUFS"}};
};
