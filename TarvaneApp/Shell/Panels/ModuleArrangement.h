// How the modules of one window are arranged: which of them are there, and how they share the room.
#pragma once

#include "Records/LayoutEnums.h"

namespace TarvaneApp {

struct ModuleArrangement {
    bool showsSPLMeter = true;
    bool showsRTA = true;
    bool showsSpectrogram = true;
    bool showsLevelHistory = true;
    GraphOrientation graphOrientation = GraphOrientation::stacked;
    GraphOrder graphOrder = GraphOrder::rtaFirst;
    LevelHistoryPosition levelHistoryPosition = LevelHistoryPosition::aboveGraphs;
    PanelLayout panelLayout = PanelLayout::both;
    /// The analyzer's share of the graph area.
    double splitFraction = 0.5;

    bool showsGraphs() const { return showsRTA || showsSpectrogram; }
    bool showsBothGraphs() const { return showsRTA && showsSpectrogram; }

    bool operator==(const ModuleArrangement&) const = default;
};

}  // namespace TarvaneApp
