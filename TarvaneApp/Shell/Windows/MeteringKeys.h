// The keys of every window that shows modules, wherever in it the focus is: Space starts and stops,
// P pauses and resumes, Return presses the control that has the focus, since Space is taken.
#pragma once

#include <QObject>

class QWidget;

namespace TarvaneApp {

class MeterEngine;

/// What the toolbar's buttons and the keys do.
void toggleRunning(MeterEngine& engine);
/// Does nothing while stopped.
void togglePause(MeterEngine& engine);

class MeteringKeys final : public QObject {
    Q_OBJECT
  public:
    /// The window owns them.
    MeteringKeys(MeterEngine& engine, QWidget& window);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};

}  // namespace TarvaneApp
