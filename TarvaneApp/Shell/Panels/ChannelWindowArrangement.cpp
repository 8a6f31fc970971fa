#include "Shell/Panels/ChannelWindowArrangement.h"

#include "Engine/MeterEngine.h"
#include "Settings/Observable.h"

namespace TarvaneApp {

ChannelWindowArrangement::ChannelWindowArrangement(MeterEngine& engine,
                                                   const TarvaneKit::UUID& channelID,
                                                   QObject* parent)
    : ModuleArrangementLink(parent), engine_(engine), channelID_(channelID) {
    followAll(
        this, [this] { Q_EMIT changed(); }, engine.channelWindowLayouts, engine.graphOrientation,
        engine.graphOrder, engine.levelHistoryPosition);
}

ModuleArrangement ChannelWindowArrangement::arrangement() const {
    const ChannelWindowLayout layout = engine_.windowLayout(channelID_);
    return {
        .showsSPLMeter = layout.showsSPLMeter,
        .showsRTA = layout.showsRTA,
        .showsSpectrogram = layout.showsSpectrogram,
        .showsLevelHistory = layout.showsLevelHistory,
        .graphOrientation = layout.graphOrientation.value_or(engine_.graphOrientation()),
        .graphOrder = layout.graphOrder.value_or(engine_.graphOrder()),
        .levelHistoryPosition =
            layout.levelHistoryPosition.value_or(engine_.levelHistoryPosition()),
        .panelLayout = layout.panelLayout,
        .splitFraction = layout.splitFraction,
    };
}

void ChannelWindowArrangement::setPanelLayout(PanelLayout layout) {
    engine_.updateWindowLayout(
        channelID_, [layout](ChannelWindowLayout& stored) { stored.panelLayout = layout; });
}

void ChannelWindowArrangement::setSplitFraction(double fraction) {
    engine_.updateWindowLayout(
        channelID_, [fraction](ChannelWindowLayout& stored) { stored.splitFraction = fraction; });
}

}  // namespace TarvaneApp
