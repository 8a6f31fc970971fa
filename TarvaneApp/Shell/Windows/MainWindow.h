// The main window: menus, content, the error alert.
#pragma once

#include <QMainWindow>

#include "Shell/Windows/AppCommands.h"

namespace TarvaneApp {

class ContentView;
class MeterEngine;
class NoteBar;
class ProfileStore;
class ScreenRoom;

class MainWindow final : public QMainWindow {
    Q_OBJECT
  public:
    MainWindow(MeterEngine& engine, ProfileStore& profiles, const AppCommands& commands);

    /// Under the modules, for what has just happened.
    NoteBar& note();
    /// The menu items with shortcuts, which are to work in every window.
    QList<QAction*> keyedActions() const;

  private:
    void limitSize();
    void makeMenus(const AppCommands& commands);
    void makeProfilesMenu(const AppCommands& commands);
    void makeWindowMenu(const AppCommands& commands);
    void makeHelpMenu(const AppCommands& commands);

    MeterEngine& engine_;
    ProfileStore& profiles_;
    ScreenRoom* room_;
    ContentView* content_;
};

}  // namespace TarvaneApp
