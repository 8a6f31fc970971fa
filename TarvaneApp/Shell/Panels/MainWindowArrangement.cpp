#include "Shell/Panels/MainWindowArrangement.h"

#include "Engine/MeterSettings.h"
#include "Settings/Observable.h"

namespace TarvaneApp {

MainWindowArrangement::MainWindowArrangement(MeterSettings& settings, QObject* parent)
    : ModuleArrangementLink(parent), settings_(settings) {
    followAll(
        this, [this] { Q_EMIT changed(); }, settings.splMeterPlacement, settings.rtaPlacement,
        settings.spectrogramPlacement, settings.levelHistoryPlacement, settings.graphOrientation,
        settings.graphOrder, settings.levelHistoryPosition, settings.panelLayout,
        settings.panelSplitFraction);
}

ModuleArrangement MainWindowArrangement::arrangement() const {
    const auto isHere = [](const Setting<ModulePlacement>& placement) {
        return placement() == ModulePlacement::mainWindow;
    };
    return {.showsSPLMeter = isHere(settings_.splMeterPlacement),
            .showsRTA = isHere(settings_.rtaPlacement),
            .showsSpectrogram = isHere(settings_.spectrogramPlacement),
            .showsLevelHistory = isHere(settings_.levelHistoryPlacement),
            .graphOrientation = settings_.graphOrientation(),
            .graphOrder = settings_.graphOrder(),
            .levelHistoryPosition = settings_.levelHistoryPosition(),
            .panelLayout = settings_.panelLayout(),
            .splitFraction = settings_.panelSplitFraction()};
}

void MainWindowArrangement::setPanelLayout(PanelLayout layout) {
    settings_.panelLayout.set(layout);
}

void MainWindowArrangement::setSplitFraction(double fraction) {
    settings_.panelSplitFraction.set(fraction);
}

}  // namespace TarvaneApp
