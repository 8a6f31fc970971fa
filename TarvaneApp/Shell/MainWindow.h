// The main window: menus, content, the error alert.
#pragma once

#include <QMainWindow>

#include "AppCommands.h"

namespace TarvaneApp {

class MeterEngine;

class MainWindow final : public QMainWindow {
    Q_OBJECT
  public:
    using Actions = AppCommands;
    MainWindow(MeterEngine& engine, const Actions& actions);

    /// The items of the menus that have keys of their own, which are to work in every window.
    QList<QAction*> keyedActions() const;

  private:
    void makeMenus(const Actions& actions);
    void makeWindowMenu(const Actions& actions);

    MeterEngine& engine_;
};

}  // namespace TarvaneApp
