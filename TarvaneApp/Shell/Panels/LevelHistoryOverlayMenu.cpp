#include "Shell/Panels/LevelHistoryOverlayMenu.h"

#include "Engine/MeterEngine.h"

namespace TarvaneApp {

using TarvaneKit::UUID;

LevelHistoryOverlayMenu::LevelHistoryOverlayMenu(MeterEngine& engine, const UUID& baseChannelID,
                                                 QWidget* parent)
    : ChannelOverlayMenu(engine, engine.levelHistoryOverlayChannelIDs,
                         QStringLiteral("Overlay other channels' history"), baseChannelID, parent) {
}

}  // namespace TarvaneApp
