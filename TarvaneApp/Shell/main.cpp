// The program. It takes no options.

#include <QApplication>

#include "AudioIO/PipeWire/PipeWireAudioSystem.h"
#include "Profiles/ProfileStore.h"
#include "Settings/UserDefaults.h"
#include "Shell/RunningInstance.h"
#include "Shell/TarvaneApplication.h"
#include "Shell/UnansweredLaunch.h"

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    TarvaneApp::TarvaneApplication::introduce();
    TarvaneApp::RunningInstance instance;
    if (instance.hasHandedOver()) {
        return 0;
    }
    if (instance.isUnanswered()) {
        if (!TarvaneApp::askWhetherToStartAnyway()) {
            return 1;
        }
        instance.takeOver();
    }
    // Metering outlives the windows, as long as there is a way to bring them back.
    QApplication::setQuitOnLastWindowClosed(!instance.isListening());
    TarvaneKit::PipeWireAudioSystem audio;
    TarvaneApp::UserDefaults store;
    TarvaneApp::TarvaneApplication tarvane(audio, store, TarvaneApp::ProfileStore::usersFolder());
    QObject::connect(&instance, &TarvaneApp::RunningInstance::launchedAgain, &tarvane,
                     &TarvaneApp::TarvaneApplication::showMainWindow);
    tarvane.showMainWindow();
    return QApplication::exec();
}
