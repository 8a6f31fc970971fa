// Which other channels' histories lie over the one that is shown, as lines.
#pragma once

#include "Shell/ChannelControls/ChannelOverlayMenu.h"

namespace TarvaneApp {

class LevelHistoryOverlayMenu final : public ChannelOverlayMenu {
    Q_OBJECT
  public:
    LevelHistoryOverlayMenu(MeterEngine& engine, const TarvaneKit::UUID& baseChannelID,
                            QWidget* parent = nullptr);

  private:
    std::optional<QString> whyNot(const TarvaneKit::UUID& base,
                                  const TarvaneKit::UUID& overlay) const override;
};

}  // namespace TarvaneApp
