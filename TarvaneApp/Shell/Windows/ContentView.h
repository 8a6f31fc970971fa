// What the main window holds: the toolbar, a divider, the modules, and until the first start what
// to do. It opens and closes the windows of modules that are placed elsewhere.
#pragma once

#include <QWidget>

#include "Shell/Windows/AppCommands.h"

namespace TarvaneApp {

class MeterEngine;
class NoteBar;
class ProfileStore;

class ContentView final : public QWidget {
    Q_OBJECT
  public:
    ContentView(MeterEngine& engine, ProfileStore& profiles, const AppCommands& commands,
                QWidget* parent = nullptr);

    NoteBar& note() { return *note_; }

  protected:
    void showEvent(QShowEvent* event) override;

  private:
    void appeared();
    void syncStandaloneWindow(StandaloneModule module, ModulePlacement placement);

    MeterEngine& engine_;
    const AppCommands commands_;
    NoteBar* note_;
};

}  // namespace TarvaneApp
