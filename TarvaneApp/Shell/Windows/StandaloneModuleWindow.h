// A module in a window of its own: one panel, which has the window to itself. It goes when it is
// closed.
#pragma once

#include <QMainWindow>

#include "Shell/Windows/StandaloneModule.h"

namespace TarvaneApp {

class StandaloneModuleWindow final : public QMainWindow {
    Q_OBJECT
  public:
    StandaloneModuleWindow(StandaloneModule module, MeterEngine& engine);
};

}  // namespace TarvaneApp
