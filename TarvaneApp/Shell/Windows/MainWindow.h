// The main window: menus, content, the error alert.
#pragma once

#include <QMainWindow>

#include "Shell/Windows/AppCommands.h"

namespace TarvaneApp {

class MeterEngine;
class ProfileStore;

class MainWindow final : public QMainWindow {
    Q_OBJECT
  public:
    MainWindow(MeterEngine& engine, ProfileStore& profiles, const AppCommands& commands);

    /// The menu items with shortcuts, which are to work in every window.
    QList<QAction*> keyedActions() const;

  private:
    void makeMenus(const AppCommands& commands);
    void makeProfilesMenu(const AppCommands& commands);
    void makeWindowMenu(const AppCommands& commands);

    MeterEngine& engine_;
    ProfileStore& profiles_;
};

}  // namespace TarvaneApp
