// What a spectrum shows of its channel. The raw values are both what is stored and what the
// interface shows.
#pragma once

#include "Core/RawEnum.h"

namespace TarvaneApp {

enum class SpectrumViewMode { banded, line, both };

}  // namespace TarvaneApp

template <>
struct TarvaneKit::RawCases<TarvaneApp::SpectrumViewMode> {
    using Mode = TarvaneApp::SpectrumViewMode;
    static constexpr std::array all{RawCase{Mode::banded, "Banded"}, RawCase{Mode::line, "Line"},
                                    RawCase{Mode::both, "Both"}};
};
