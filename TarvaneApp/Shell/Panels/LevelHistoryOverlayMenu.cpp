#include "Shell/Panels/LevelHistoryOverlayMenu.h"

#include "Engine/MeterEngine.h"
#include "LiveDisplays/OverlayAxis.h"

namespace TarvaneApp {

using TarvaneKit::UUID;

LevelHistoryOverlayMenu::LevelHistoryOverlayMenu(MeterEngine& engine, const UUID& baseChannelID,
                                                 QWidget* parent)
    : ChannelOverlayMenu(engine, engine.levelHistoryOverlayChannelIDs,
                         QStringLiteral("Overlay other channels' history"), baseChannelID, parent) {
}

std::optional<QString> LevelHistoryOverlayMenu::whyNot(const UUID& base,
                                                       const UUID& overlay) const {
    return whyNotOverHistory(engine_, base, overlay);
}

}  // namespace TarvaneApp
