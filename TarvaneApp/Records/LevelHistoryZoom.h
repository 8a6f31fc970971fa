// How much of the session a level history shows. The raw values are both what is stored and what
// the interface shows.
#pragma once

#include "Core/RawEnum.h"

namespace TarvaneApp {

enum class LevelHistoryZoom { session, last1Min, last5Min, last15Min };

}  // namespace TarvaneApp

template <>
struct TarvaneKit::RawCases<TarvaneApp::LevelHistoryZoom> {
    using Zoom = TarvaneApp::LevelHistoryZoom;
    static constexpr std::array all{
        RawCase{Zoom::session, "Session"}, RawCase{Zoom::last1Min, "Last 1 min"},
        RawCase{Zoom::last5Min, "Last 5 min"}, RawCase{Zoom::last15Min, "Last 15 min"}};
};
