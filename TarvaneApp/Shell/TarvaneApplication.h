// The top of the application: it owns the engine and all windows, and lives as long as the process.
#pragma once

#include <QObject>
#include <filesystem>
#include <memory>

#include "AudioIO/AudioSystem.h"
#include "Engine/Clock.h"
#include "Engine/KernelTickTimer.h"
#include "Engine/MeterEngine.h"
#include "Profiles/ProfileStore.h"
#include "Settings/KeyValueStore.h"
#include "Shell/Windows/AppTermination.h"
#include "Shell/Windows/FilePanels.h"
#include "Shell/Windows/UnseenWindows.h"

namespace TarvaneApp {

class InterruptedRun;
class LevelHistoryExport;
class MainWindow;
class PreferencesWindow;
class TrayIcon;
class UpdateController;
class UpdateFetch;
class WindowScenes;

class TarvaneApplication final : public QObject {
    Q_OBJECT
  public:
    /// Both outlive the application, as does the QApplication. Metering isn't started, and no
    /// window is shown.
    TarvaneApplication(TarvaneKit::AudioSystem& audio, KeyValueStore& store,
                       const std::filesystem::path& profilesFolder);
    ~TarvaneApplication() override;

    /// The first time, all windows that were open when the program last ended come with it.
    void showMainWindow();
    void showSettings();
    /// The settings, at the profiles.
    void showProfiles();

    /// Ends it from outside: keeps that a run was cut short, and quits.
    void end();

    MeterEngine& engine() { return engine_; }

    /// Sets the program's name for the desktop, and its look. Call it right after the QApplication.
    static void introduce();

  private:
    KeyValueStore& store_;
    AppTermination termination_;
    SystemClock clock_;
    KernelTickTimer tickTimer_;
    MeterEngine engine_;
    const std::unique_ptr<InterruptedRun> interruptedRun_;
    UnseenWindows unseenWindows_;
    FilePanels panels_;
    ProfileStore profiles_;
    std::unique_ptr<MainWindow> mainWindow_;
    LevelHistoryExport* export_;
    std::unique_ptr<PreferencesWindow> preferences_;
    std::unique_ptr<WindowScenes> scenes_;
    std::unique_ptr<TrayIcon> tray_;
    std::unique_ptr<UpdateFetch> updateFetch_;   // both null
    std::unique_ptr<UpdateController> updates_;  // without a feed
    bool isRestored_ = false;
};

}  // namespace TarvaneApp
