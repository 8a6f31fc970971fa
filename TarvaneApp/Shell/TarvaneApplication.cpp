#include "Shell/TarvaneApplication.h"

#include <QApplication>
#include <QDesktopServices>
#include <QUrl>

#include "Build/UpdateFeed.h"
#include "Build/Version.h"
#include "Shell/Appearance.h"
#include "Shell/Controls/ControlAccessibility.h"
#include "Shell/Controls/Icon.h"
#include "Shell/InterruptedRun.h"
#include "Shell/Preferences/PreferencesWindow.h"
#include "Shell/Updates/NetworkUpdateFetch.h"
#include "Shell/Updates/UpdateController.h"
#include "Shell/Windows/InFront.h"
#include "Shell/Windows/LevelHistoryExport.h"
#include "Shell/Windows/MainWindow.h"
#include "Shell/Windows/MeterHeightMemory.h"
#include "Shell/Windows/TrayIcon.h"
#include "Shell/Windows/WindowFrame.h"
#include "Shell/Windows/WindowScenes.h"

namespace TarvaneApp {

using TarvaneKit::UUID;

namespace {

// Empty in a build that looks for no updates.
QUrl feed() {
    return QUrl(QString::fromLatin1(Build::updateFeed), QUrl::StrictMode);
}

}  // namespace

void TarvaneApplication::introduce() {
    QApplication::setApplicationName(QStringLiteral("Tarvane"));
    QApplication::setApplicationVersion(QString::fromLatin1(Build::version));
    QApplication::setDesktopFileName(QStringLiteral("org.brenlow.tarvane"));
    QApplication::setWindowIcon(Icon::application());
    applyAppearance();
    installControlAccessibility();
}

TarvaneApplication::TarvaneApplication(TarvaneKit::AudioSystem& audio, KeyValueStore& store,
                                       const std::filesystem::path& profilesFolder)
    : store_(store),
      engine_({.audio = audio, .store = store, .clock = clock_, .tickTimer = tickTimer_}),
      interruptedRun_(std::make_unique<InterruptedRun>(
          InterruptedRun::Environment{.engine = engine_, .store = store, .clock = clock_})),
      profiles_({.folder = profilesFolder, .store = store, .clock = clock_, .panels = panels_}),
      mainWindow_(std::make_unique<MainWindow>(
          engine_, profiles_,
          AppCommands{.showSettings = [this] { showSettings(); },
                      .exportLevelHistory = [this] { export_->begin(); },
                      .showProfiles = [this] { showProfiles(); },
                      .openStandaloneWindow =
                          [this](StandaloneModule module) { scenes_->openModule(module); },
                      .openChannelWindow = [this](const UUID& id) { scenes_->openChannel(id); },
                      .openHelp = [this] { scenes_->openHelp(); },
                      .openReleaseNotes = [this] { scenes_->openReleaseNotes(); },
                      .openAbout = [this] { scenes_->openAbout(); },
                      .toggleFullScreenMeter = [this] { scenes_->toggleFullScreenMeter(); },
                      .checkForUpdates = feed().isEmpty() ? std::function<void()>()
                                                          : [this] { updates_->checkForUpdates(); },
                      .quit = [] { QApplication::quit(); }})),
      export_(new LevelHistoryExport(
          {.engine = engine_, .store = store, .note = mainWindow_->note()}, mainWindow_.get())),
      scenes_(std::make_unique<WindowScenes>(engine_, store, mainWindow_->keyedActions())),
      tray_(std::make_unique<TrayIcon>(
          engine_, TrayIcon::Commands{.showMainWindow = [this] { showMainWindow(); },
                                      .quit = [] { QApplication::quit(); }})) {
    new WindowFrame(store, "main", *mainWindow_);
    MeterHeightMemory::keep(store, "main", *mainWindow_);
    if (!feed().isEmpty()) {
        updateFetch_ = std::make_unique<NetworkUpdateFetch>();
        updates_ = std::make_unique<UpdateController>(UpdateController::Environment{
            .feed = feed(),
            .runningVersion = Build::version,
            .fetch = *updateFetch_,
            .note = mainWindow_->note(),
            .openPage = [](const QUrl& page) { QDesktopServices::openUrl(page); }});
    }
    // A session manager's way of saying that the desktop's session ends.
    connect(qApp, &QGuiApplication::commitDataRequest, this,
            [this] { interruptedRun_->programEnds(); });
}

TarvaneApplication::~TarvaneApplication() = default;

void TarvaneApplication::showMainWindow() {
    if (!isRestored_) {
        isRestored_ = true;
        scenes_->restoreChannels();
        interruptedRun_->tell(mainWindow_->note());
        if (updates_) {
            updates_->checkAtLaunch();
        }
    }
    bringToFront(*mainWindow_);
}

void TarvaneApplication::end() {
    interruptedRun_->programEnds();
    QApplication::quit();
}

void TarvaneApplication::showSettings() {
    if (!preferences_) {
        preferences_ = std::make_unique<PreferencesWindow>(PreferencesWindow::Environment{
            .engine = engine_,
            .profiles = profiles_,
            .store = store_,
            .openChannelWindow = [this](const UUID& id) { scenes_->openChannel(id); }});
        new WindowFrame(store_, "settings", *preferences_);
        preferences_->addActions(mainWindow_->keyedActions());
    }
    bringToFront(*preferences_);
}

void TarvaneApplication::showProfiles() {
    showSettings();
    preferences_->showProfiles();
}

}  // namespace TarvaneApp
