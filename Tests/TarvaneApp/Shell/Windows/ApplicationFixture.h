// The whole application on made-up audio and a store in memory, for tests of what its windows do
// together and over a relaunch.
#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <memory>
#include <stdexcept>

#include "Shell/TarvaneApplication.h"
#include "Shell/Windows/MainWindow.h"
#include "Support/FakeAudioSystem.h"
#include "Support/MemoryStore.h"
#include "Support/TemporaryFolder.h"

namespace TarvaneTests {

class ApplicationFixture : public testing::Test {
  protected:
    explicit ApplicationFixture(const TarvaneKit::AudioInputDevice& defaultInput) {
        audio.plugIn(defaultInput);
        audio.setDefaultInput(defaultInput.id);
        launch();
    }

    void launch() {
        application = std::make_unique<TarvaneApp::TarvaneApplication>(
            audio, store, profilesFolder.path() / "Profiles");
        application->showMainWindow();
        settle();
    }
    // What the desktop and the Quit item send; then the process ends.
    void quit() {
        QEvent event(QEvent::Quit);
        QCoreApplication::sendEvent(qApp, &event);
        settle();
        application.reset();
    }
    static void settle() {
        for (int i = 0; i < 3; ++i) {
            QCoreApplication::processEvents();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
    }

    TarvaneApp::MeterEngine& engine() { return application->engine(); }
    template <class Window>
    static QList<Window*> windows() {
        QList<Window*> found;
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (auto* window = qobject_cast<Window*>(widget)) {
                found.append(window);
            }
        }
        return found;
    }
    static TarvaneApp::MainWindow& theMainWindow() {
        return *windows<TarvaneApp::MainWindow>().at(0);
    }

    FakeAudioSystem audio;
    MemoryStore store;
    TemporaryFolder profilesFolder;
    std::unique_ptr<TarvaneApp::TarvaneApplication> application;
};

}  // namespace TarvaneTests
