#include "Shell/Panels/MainWindowArrangement.h"

#include "Engine/MeterEngine.h"
#include "Settings/Observable.h"

namespace TarvaneApp {

MainWindowArrangement::MainWindowArrangement(MeterEngine& engine, QObject* parent)
    : ModuleArrangementLink(parent), engine_(engine) {
    followAll(
        this, [this] { Q_EMIT changed(); }, engine.splMeterPlacement, engine.rtaPlacement,
        engine.spectrogramPlacement, engine.levelHistoryPlacement, engine.graphOrientation,
        engine.graphOrder, engine.levelHistoryPosition, engine.panelLayout,
        engine.panelSplitFraction);
}

ModuleArrangement MainWindowArrangement::arrangement() const {
    const auto isHere = [](const Setting<ModulePlacement>& placement) {
        return placement() == ModulePlacement::mainWindow;
    };
    return {.showsSPLMeter = isHere(engine_.splMeterPlacement),
            .showsRTA = isHere(engine_.rtaPlacement),
            .showsSpectrogram = isHere(engine_.spectrogramPlacement),
            .showsLevelHistory = isHere(engine_.levelHistoryPlacement),
            .graphOrientation = engine_.graphOrientation(),
            .graphOrder = engine_.graphOrder(),
            .levelHistoryPosition = engine_.levelHistoryPosition(),
            .panelLayout = engine_.panelLayout(),
            .splitFraction = engine_.panelSplitFraction()};
}

void MainWindowArrangement::setPanelLayout(PanelLayout layout) {
    engine_.panelLayout.set(layout);
}

void MainWindowArrangement::setSplitFraction(double fraction) {
    engine_.panelSplitFraction.set(fraction);
}

}  // namespace TarvaneApp
