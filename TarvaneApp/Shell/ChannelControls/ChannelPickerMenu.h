// Which channel a panel shows. Hidden while there is only one.
#pragma once

#include "Core/UUID.h"
#include "Shell/Controls/MenuButton.h"

namespace TarvaneApp {

class MeterEngine;
template <class T>
class Setting;

class ChannelPickerMenu final : public MenuButton {
    Q_OBJECT
  public:
    /// `selection` is one of the engine's settings.
    ChannelPickerMenu(MeterEngine& engine, Setting<TarvaneKit::UUID>& selection,
                      QWidget* parent = nullptr);

  private:
    void showChoices();

    MeterEngine& engine_;
    Setting<TarvaneKit::UUID>& selection_;
};

}  // namespace TarvaneApp
