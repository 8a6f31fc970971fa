// How modules and graphs are arranged in windows. The raw values are both what is stored and
// what the interface shows. `MeterEngine` offers each under its own name.
#pragma once

#include "Core/RawEnum.h"

namespace TarvaneApp {

/// Where one of the four modules is.
enum class ModulePlacement { mainWindow, separateWindow, hidden };

/// Which of the two graphs fill the graph area.
enum class PanelLayout { both, rtaOnly, spectrogramOnly };

enum class GraphOrientation { stacked, sideBySide };

enum class GraphOrder { rtaFirst, spectrogramFirst };

enum class LevelHistoryPosition { aboveGraphs, belowGraphs };

/// Placements of all four modules at once. Not stored: the placements are.
enum class LayoutPreset {
    allInMainWindow,
    splMeterOnly,
    levelHistoryOnly,
    splInSeparateWindow,
    rtaInSeparateWindow,
    spectrogramInSeparateWindow,
};

}  // namespace TarvaneApp

template <>
struct TarvaneKit::RawCases<TarvaneApp::ModulePlacement> {
    using Placement = TarvaneApp::ModulePlacement;
    static constexpr std::array all{RawCase{Placement::mainWindow, "Main Window"},
                                    RawCase{Placement::separateWindow, "Separate Window"},
                                    RawCase{Placement::hidden, "Hidden"}};
};

template <>
struct TarvaneKit::RawCases<TarvaneApp::PanelLayout> {
    using Layout = TarvaneApp::PanelLayout;
    static constexpr std::array all{RawCase{Layout::both, "Both"},
                                    RawCase{Layout::rtaOnly, "RTA Only"},
                                    RawCase{Layout::spectrogramOnly, "Spectrogram Only"}};
};

template <>
struct TarvaneKit::RawCases<TarvaneApp::GraphOrientation> {
    using Orientation = TarvaneApp::GraphOrientation;
    static constexpr std::array all{RawCase{Orientation::stacked, "Stacked"},
                                    RawCase{Orientation::sideBySide, "Side by Side"}};
};

template <>
struct TarvaneKit::RawCases<TarvaneApp::GraphOrder> {
    using Order = TarvaneApp::GraphOrder;
    static constexpr std::array all{RawCase{Order::rtaFirst, "RTA First"},
                                    RawCase{Order::spectrogramFirst, "Spectrogram First"}};
};

template <>
struct TarvaneKit::RawCases<TarvaneApp::LevelHistoryPosition> {
    using Position = TarvaneApp::LevelHistoryPosition;
    static constexpr std::array all{RawCase{Position::aboveGraphs, "Above Graphs"},
                                    RawCase{Position::belowGraphs, "Below Graphs"}};
};

template <>
struct TarvaneKit::RawCases<TarvaneApp::LayoutPreset> {
    using Preset = TarvaneApp::LayoutPreset;
    static constexpr std::array all{
        RawCase{Preset::allInMainWindow, "All in Main Window"},
        RawCase{Preset::splMeterOnly, "SPL Meter Only"},
        RawCase{Preset::levelHistoryOnly, "Level History Only"},
        RawCase{Preset::splInSeparateWindow, "SPL Meter in Its Own Window"},
        RawCase{Preset::rtaInSeparateWindow, "RTA in Its Own Window"},
        RawCase{Preset::spectrogramInSeparateWindow, "Spectrogram in Its Own Window"}};
};
