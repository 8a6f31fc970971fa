// The program. It takes no options.

#include <QApplication>

#include "AudioIO/PipeWire/PipeWireAudioSystem.h"
#include "TarvaneApplication.h"
#include "UserDefaults.h"

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    TarvaneApp::TarvaneApplication::introduce();
    TarvaneKit::PipeWireAudioSystem audio;
    TarvaneApp::UserDefaults store;
    TarvaneApp::TarvaneApplication tarvane(audio, store);
    tarvane.showMainWindow();
    return QApplication::exec();
}
