#include "TarvaneApplication.h"

#include <QApplication>

#include "Appearance.h"
#include "Icon.h"
#include "MainWindow.h"
#include "Preferences/PreferencesWindow.h"

namespace TarvaneApp {

void TarvaneApplication::introduce() {
    QApplication::setApplicationName(QStringLiteral("Tarvane"));
    QApplication::setDesktopFileName(QStringLiteral("tarvane"));
    QApplication::setWindowIcon(Icon::application());
    applyAppearance();
}

TarvaneApplication::TarvaneApplication(TarvaneKit::AudioSystem& audio, KeyValueStore& store)
    : engine_({.audio = audio, .store = store, .clock = clock_, .displayTimer = displayTimer_}),
      mainWindow_(std::make_unique<MainWindow>(
          engine_, MainWindow::Actions{.showSettings = [this] { showSettings(); },
                                       .quit = [] { QApplication::quit(); }})) {}

TarvaneApplication::~TarvaneApplication() = default;

void TarvaneApplication::showMainWindow() {
    mainWindow_->showInFront();
}

void TarvaneApplication::showSettings() {
    if (!preferences_) {
        preferences_ = std::make_unique<PreferencesWindow>(engine_);
    }
    preferences_->showInFront();
}

}  // namespace TarvaneApp
