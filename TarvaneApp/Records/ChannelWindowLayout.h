// How a channel's own window arranges its copy of the modules.
#pragma once

#include <optional>

#include "Core/Coding.h"
#include "Records/LayoutEnums.h"

namespace TarvaneApp {

struct ChannelWindowLayout {
    bool showsSPLMeter = true;
    bool showsRTA = true;
    bool showsSpectrogram = true;
    bool showsLevelHistory = true;
    /// Absent, these three are as in the main window.
    std::optional<GraphOrientation> graphOrientation;
    std::optional<GraphOrder> graphOrder;
    std::optional<LevelHistoryPosition> levelHistoryPosition;
    PanelLayout panelLayout = PanelLayout::both;
    /// The spectrum's share of the graph area.
    double splitFraction = 0.5;

    int visibleModuleCount() const {
        return int{showsSPLMeter} + int{showsRTA} + int{showsSpectrogram} + int{showsLevelHistory};
    }

    bool operator==(const ChannelWindowLayout&) const = default;
};

}  // namespace TarvaneApp

template <>
struct TarvaneKit::Coding<TarvaneApp::ChannelWindowLayout> {
    using Record = TarvaneApp::ChannelWindowLayout;
    static constexpr auto keys = std::tuple{
        defaulted("showsSPLMeter", &Record::showsSPLMeter),
        defaulted("showsRTA", &Record::showsRTA),
        defaulted("showsSpectrogram", &Record::showsSpectrogram),
        defaulted("showsLevelHistory", &Record::showsLevelHistory),
        optional("graphOrientation", &Record::graphOrientation),
        optional("graphOrder", &Record::graphOrder),
        optional("levelHistoryPosition", &Record::levelHistoryPosition),
        defaulted("panelLayout", &Record::panelLayout),
        defaulted("splitFraction", &Record::splitFraction),
    };
};
