// The application's top: it makes the engine and all windows, and lives as long as the process.
#pragma once

#include <QObject>
#include <memory>

#include "AudioIO/AudioSystem.h"
#include "Engine/Clock.h"
#include "Engine/DisplayTimer.h"
#include "Engine/MeterEngine.h"
#include "Settings/KeyValueStore.h"
#include "Shell/Windows/AppTermination.h"

namespace TarvaneApp {

class MainWindow;
class PreferencesWindow;
class WindowScenes;

class TarvaneApplication final : public QObject {
    Q_OBJECT
  public:
    /// Both outlive the application. A QApplication is there, and stays. Metering doesn't start
    /// by itself, and no window is shown yet.
    TarvaneApplication(TarvaneKit::AudioSystem& audio, KeyValueStore& store);
    ~TarvaneApplication() override;

    /// The first time, all other windows that were there when the program last ended come with it.
    void showMainWindow();
    void showSettings();

    MeterEngine& engine() { return engine_; }

    /// What the desktop knows the program by, and its look. Right after the QApplication.
    static void introduce();

  private:
    AppTermination termination_;
    SystemClock clock_;
    DisplayTimer displayTimer_;
    MeterEngine engine_;
    std::unique_ptr<MainWindow> mainWindow_;
    std::unique_ptr<PreferencesWindow> preferences_;
    std::unique_ptr<WindowScenes> scenes_;
    bool isRestored_ = false;
};

}  // namespace TarvaneApp
