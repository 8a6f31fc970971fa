// Which channel the level history shows: the meter's, or another. The button names the channel that
// is shown. Hidden while there is only one.
#pragma once

#include "Shell/Controls/MenuButton.h"

namespace TarvaneApp {

class MeterEngine;

class LevelHistoryChannelMenu final : public MenuButton {
    Q_OBJECT
  public:
    explicit LevelHistoryChannelMenu(MeterEngine& engine, QWidget* parent = nullptr);

  private:
    void showChoices();

    MeterEngine& engine_;
};

}  // namespace TarvaneApp
