// Where the arrangement of a window's modules is kept: for the main window in the engine's
// settings, for a channel's window in the channel's layout. The window's content owns it; main
// thread.
#pragma once

#include <QObject>

#include "Shell/Panels/ModuleArrangement.h"

namespace TarvaneApp {

class ModuleArrangementLink : public QObject {
    Q_OBJECT
  public:
    using QObject::QObject;

    virtual ModuleArrangement arrangement() const = 0;

    // What the arranged modules change themselves, by expand buttons and handle.
    virtual void setPanelLayout(PanelLayout layout) = 0;
    virtual void setSplitFraction(double fraction) = 0;

  Q_SIGNALS:
    void changed();
};

}  // namespace TarvaneApp
