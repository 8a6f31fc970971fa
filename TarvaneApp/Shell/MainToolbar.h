// The toolbar across the top of the main window: start and stop, pause, the input's name.
#pragma once

#include <QWidget>

class QLabel;

namespace TarvaneApp {

class IconButton;
class MeterEngine;
class Spinner;

class MainToolbar final : public QWidget {
    Q_OBJECT
  public:
    explicit MainToolbar(MeterEngine& engine, QWidget* parent = nullptr);

    /// What the buttons and their keys do.
    void toggleRunning();
    /// Does nothing while stopped.
    void togglePause();

  private:
    void showRunState();
    void showDeviceName();

    MeterEngine& engine_;
    IconButton* startButton_;
    Spinner* spinner_;
    IconButton* pauseButton_;
    QLabel* pausedNote_;
    QLabel* deviceName_;
};

}  // namespace TarvaneApp
