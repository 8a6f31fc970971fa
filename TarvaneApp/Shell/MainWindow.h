// The main window: menus, content, the keys that work wherever the focus is, the error alert.
#pragma once

#include <QMainWindow>
#include <functional>

namespace TarvaneApp {

class MeterEngine;

class MainWindow final : public QMainWindow {
    Q_OBJECT
  public:
    struct Actions {
        std::function<void()> showSettings;
        std::function<void()> quit;
    };
    MainWindow(MeterEngine& engine, const Actions& actions);

    /// Brings the window back, whether it is closed, minimised or behind others.
    void showInFront();

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent* event) override;

  private:
    void makeMenus(const Actions& actions);
    void makeShortcuts();

    MeterEngine& engine_;
};

}  // namespace TarvaneApp
