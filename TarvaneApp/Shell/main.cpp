// The program.

#include <QApplication>
#include <cstdio>
#include <optional>

#include "AudioIO/PipeWire/PipeWireAudioSystem.h"
#include "Profiles/ProfileStore.h"
#include "Settings/UserDefaults.h"
#include "Shell/CommandLine.h"
#include "Shell/RunningInstance.h"
#include "Shell/TarvaneApplication.h"
#include "Shell/TerminationSignals.h"
#include "Shell/UnansweredLaunch.h"

int main(int argc, char** argv) {
    if (const auto answer =
            TarvaneApp::CommandLine::answer({argv + (argc > 0 ? 1 : 0), argv + argc})) {
        std::fputs(answer->text.c_str(), answer->isRefusal ? stderr : stdout);
        return answer->exitCode();
    }
    std::optional<TarvaneApp::CommandLine::DisplaySearch> search(std::in_place);
    QApplication application(argc, argv);
    search.reset();
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
    const TarvaneApp::TerminationSignals signals;
    QObject::connect(&signals, &TarvaneApp::TerminationSignals::endAsked, &tarvane,
                     &TarvaneApp::TarvaneApplication::end);
    tarvane.showMainWindow();
    const int code = QApplication::exec();
    // Not by Quit, then: the display has gone.
    if (code != 0) {
        tarvane.end();
    }
    return code;
}
