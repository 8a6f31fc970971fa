// Keeps a module's own window in step with the module's placement: a window that shouldn't be there
// closes, a second window for the same module closes, and closing the window by hand returns the
// module to the main window. The window owns it; main thread.
#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>

#include "Shell/Windows/StandaloneModule.h"

namespace TarvaneApp {

class MeterEngine;

/// The visible window of that module, other than `besides`; null if there is none.
QWidget* visibleStandaloneWindow(StandaloneModule module, const QWidget* besides = nullptr);

struct StandaloneWindowState {
    QPointer<QWidget> window;
    bool closingAsDuplicate = false;
};

class StandaloneWindowGuard final : public QObject {
    Q_OBJECT
  public:
    StandaloneWindowGuard(StandaloneModule module, MeterEngine& engine, QWidget* window);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void enforce();
    void disappeared();

    const StandaloneModule module_;
    MeterEngine& engine_;
    StandaloneWindowState state_;
};

}  // namespace TarvaneApp
