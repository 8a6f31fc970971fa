// The program's place in the desktop's tray, where the desktop has one: its state at a glance, and
// what is needed while no window is open. Main thread.
#pragma once

#include <QMenu>
#include <QSystemTrayIcon>
#include <functional>
#include <memory>

#include "LiveDisplays/LiveBinding.h"
#include "Shell/Windows/DesktopTray.h"
#include "Shell/Windows/TrayState.h"

namespace TarvaneApp {

class MeterEngine;

class TrayIcon final : public QObject {
    Q_OBJECT
  public:
    struct Commands {
        std::function<void()> showMainWindow;
        std::function<void()> quit;
    };
    /// The engine outlives it. A tray that comes later takes the icon in by itself.
    TrayIcon(MeterEngine& engine, const Commands& commands);

    const TrayState& state() const { return state_; }
    QMenu& menu() { return menu_; }

    /// The program's icon with the state's sign in its corner.
    static QIcon iconOf(TrayState::Kind kind);

  private:
    void showIcon();
    void showState();

    MeterEngine& engine_;
    QMenu menu_;
    QAction* start_;
    QAction* pause_;
    std::function<void()> showMainWindow_;
    DesktopTray tray_;
    std::unique_ptr<QSystemTrayIcon> icon_;  // null without a tray
    TrayState state_;
    LiveBinding binding_;
};

}  // namespace TarvaneApp
