#include "Shell/Windows/StandaloneModule.h"

#include "Engine/MeterSettings.h"

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
               .placement = &MeterSettings::splMeterPlacement},
        Traits{.label = QStringLiteral("Real-Time Analyzer"),
               .sceneIdentifier = QStringLiteral("rta"),
               .minimumSize = QSize(480, 260),
               .placement = &MeterSettings::rtaPlacement},
        Traits{.label = QStringLiteral("Spectrogram"),
               .sceneIdentifier = QStringLiteral("spectrogram"),
               .minimumSize = QSize(480, 260),
               .placement = &MeterSettings::spectrogramPlacement},
        Traits{.label = QStringLiteral("Level History"),
               .sceneIdentifier = QStringLiteral("level-history"),
               .minimumSize = QSize(480, 200),
               .placement = &MeterSettings::levelHistoryPlacement},
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

Setting<ModulePlacement>& placement(MeterSettings& settings, StandaloneModule module) {
    return settings.*traits(module).placement;
}

}  // namespace TarvaneApp
