// Ties the modules of a window to where their arrangement is kept: for the main window that is the
// engine's own settings, for a channel's window the channel's layout. The window's content owns it;
// main thread.
#pragma once

#include <QObject>

#include "Shell/Panels/ModuleArrangement.h"

namespace TarvaneApp {

class ModuleArrangementLink : public QObject {
    Q_OBJECT
  public:
    using QObject::QObject;

    virtual ModuleArrangement arrangement() const = 0;

    // What is changed from within the arranged modules: the expand buttons and the handle.
    virtual void setPanelLayout(PanelLayout layout) = 0;
    virtual void setSplitFraction(double fraction) = 0;

  Q_SIGNALS:
    void changed();
};

}  // namespace TarvaneApp
