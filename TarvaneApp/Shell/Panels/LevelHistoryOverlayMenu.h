// Which other channels' histories lie over the one that is shown, as lines.
#pragma once

#include "Shell/ChannelControls/ChannelOverlayMenu.h"

namespace TarvaneApp {

class LevelHistoryOverlayMenu final : public ChannelOverlayMenu {
    Q_OBJECT
  public:
    LevelHistoryOverlayMenu(MeterEngine& engine, const TarvaneKit::UUID& baseChannelID,
                            QWidget* parent = nullptr);
};

}  // namespace TarvaneApp
