// The channels as windows of their own, as a menu of the toolbar. Hidden without extra channels.
#pragma once

#include "Shell/Controls/IconMenuButton.h"
#include "Shell/Windows/AppCommands.h"

namespace TarvaneApp {

class MeterEngine;

class ExtraChannelsMenu final : public IconMenuButton {
    Q_OBJECT
  public:
    ExtraChannelsMenu(MeterEngine& engine, const AppCommands& commands, QWidget* parent = nullptr);

  private:
    void fill(QMenu& menu);

    MeterEngine& engine_;
    const AppCommands commands_;
};

}  // namespace TarvaneApp
