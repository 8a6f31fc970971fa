// The toolbar across the top of the main window: start and stop, pause, what is metered, the menus
// of profiles, channels and layout, and the reset of held peaks.
#pragma once

#include <QWidget>

class QHBoxLayout;
class QLabel;
class QPushButton;

namespace TarvaneApp {

struct AppCommands;
class IconButton;
class IconMenuButton;
class MeterEngine;
class ProfileStore;
class Spinner;

class MainToolbar final : public QWidget {
    Q_OBJECT
  public:
    MainToolbar(MeterEngine& engine, ProfileStore& profiles, const AppCommands& commands,
                QWidget* parent = nullptr);

  protected:
    bool event(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    void showRunState();
    void showPeakHoldReset();

    MeterEngine& engine_;
    QHBoxLayout* row_;
    IconButton* startButton_;
    Spinner* spinner_;
    IconButton* pauseButton_;
    QLabel* pausedNote_;
    QPushButton* resetPeakHoldButton_;
    IconMenuButton* resetPeakHoldMenu_;
};

}  // namespace TarvaneApp
