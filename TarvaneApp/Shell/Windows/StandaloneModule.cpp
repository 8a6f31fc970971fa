#include "Shell/Windows/StandaloneModule.h"

#include "Engine/MeterEngine.h"

namespace TarvaneApp {

namespace {

struct Traits {
    QString label;
    QString sceneIdentifier;
    QSize minimumSize;
    Setting<ModulePlacement> MeterSettings::*placement;
};

const Traits& traits(StandaloneModule module) {
    static const std::array all{
        Traits{.label = QStringLiteral("SPL Meter"),
               .sceneIdentifier = QStringLiteral("spl-meter"),
               .minimumSize = QSize(320, 200),
               .placement = &MeterEngine::splMeterPlacement},
        Traits{.label = QStringLiteral("Real-Time Analyzer"),
               .sceneIdentifier = QStringLiteral("rta"),
               .minimumSize = QSize(480, 260),
               .placement = &MeterEngine::rtaPlacement},
        Traits{.label = QStringLiteral("Spectrogram"),
               .sceneIdentifier = QStringLiteral("spectrogram"),
               .minimumSize = QSize(480, 260),
               .placement = &MeterEngine::spectrogramPlacement},
        Traits{.label = QStringLiteral("Level History"),
               .sceneIdentifier = QStringLiteral("level-history"),
               .minimumSize = QSize(480, 200),
               .placement = &MeterEngine::levelHistoryPlacement},
    };
    return all[static_cast<std::size_t>(module)];
}

}  // namespace

QString label(StandaloneModule module) {
    return traits(module).label;
}

QString windowTitle(StandaloneModule module) {
    return QStringLiteral("Tarvane — ") + label(module);
}

QString sceneIdentifier(StandaloneModule module) {
    return traits(module).sceneIdentifier;
}

QSize minimumWindowSize(StandaloneModule module) {
    return traits(module).minimumSize;
}

Setting<ModulePlacement>& placement(MeterEngine& engine, StandaloneModule module) {
    return engine.*traits(module).placement;
}

}  // namespace TarvaneApp
