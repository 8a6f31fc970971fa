// Where each module goes and how the main window is arranged, as a menu of the toolbar.
#pragma once

#include "Shell/Controls/IconMenuButton.h"

namespace TarvaneApp {

class MeterEngine;

class MainWindowLayoutMenu final : public IconMenuButton {
    Q_OBJECT
  public:
    explicit MainWindowLayoutMenu(MeterEngine& engine, QWidget* parent = nullptr);
};

}  // namespace TarvaneApp
