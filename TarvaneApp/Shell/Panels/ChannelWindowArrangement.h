// The arrangement of a channel's own window: the channel's layout, and the engine's settings where
// the layout leaves something to the main window.
#pragma once

#include "Core/UUID.h"
#include "Shell/Panels/ModuleArrangementLink.h"

namespace TarvaneApp {

class MeterEngine;

class ChannelWindowArrangement final : public ModuleArrangementLink {
    Q_OBJECT
  public:
    ChannelWindowArrangement(MeterEngine& engine, const TarvaneKit::UUID& channelID,
                             QObject* parent = nullptr);

    ModuleArrangement arrangement() const override;
    void setPanelLayout(PanelLayout layout) override;
    void setSplitFraction(double fraction) override;

  private:
    MeterEngine& engine_;
    const TarvaneKit::UUID channelID_;
};

}  // namespace TarvaneApp
