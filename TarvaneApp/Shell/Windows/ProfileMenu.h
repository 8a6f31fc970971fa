// The profile in use, and the others to switch to, as a menu of the toolbar.
#pragma once

#include "Shell/Controls/IconTextMenuButton.h"

namespace TarvaneApp {

struct AppCommands;
class MeterEngine;
class ProfileStore;

class ProfileMenu final : public IconTextMenuButton {
    Q_OBJECT
  public:
    ProfileMenu(MeterEngine& engine, ProfileStore& profiles, const AppCommands& commands,
                QWidget* parent = nullptr);
};

}  // namespace TarvaneApp
