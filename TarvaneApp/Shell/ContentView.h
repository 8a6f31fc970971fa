// What the main window holds: the toolbar, a divider, the modules.
#pragma once

#include <QWidget>

namespace TarvaneApp {

class MainToolbar;
class MeterEngine;

class ContentView final : public QWidget {
    Q_OBJECT
  public:
    explicit ContentView(MeterEngine& engine, QWidget* parent = nullptr);

    MainToolbar& toolbar() { return *toolbar_; }

  private:
    MainToolbar* toolbar_;
};

}  // namespace TarvaneApp
