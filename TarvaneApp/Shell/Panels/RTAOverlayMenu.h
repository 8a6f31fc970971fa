// Which other channels lie over the analyzer's own.
#pragma once

#include "Shell/ChannelControls/ChannelOverlayMenu.h"

namespace TarvaneApp {

class RTAOverlayMenu final : public ChannelOverlayMenu {
    Q_OBJECT
  public:
    RTAOverlayMenu(MeterEngine& engine, const TarvaneKit::UUID& baseChannelID,
                   QWidget* parent = nullptr);

  private:
    void fill(QMenu& menu) override;
    std::optional<QString> whyNot(const TarvaneKit::UUID& base,
                                  const TarvaneKit::UUID& overlay) const override;
};

}  // namespace TarvaneApp
