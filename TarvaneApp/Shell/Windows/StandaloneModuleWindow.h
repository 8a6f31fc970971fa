// A module in a window of its own: one panel, which fills the window. Closing deletes it.
#pragma once

#include <QMainWindow>

#include "Shell/Windows/StandaloneModule.h"

namespace TarvaneApp {

class MeterEngine;

class StandaloneModuleWindow final : public QMainWindow {
    Q_OBJECT
  public:
    StandaloneModuleWindow(StandaloneModule module, MeterEngine& engine);
};

}  // namespace TarvaneApp
