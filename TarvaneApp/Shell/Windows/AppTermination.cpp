#include "Shell/Windows/AppTermination.h"

#include <QCoreApplication>
#include <QEvent>

namespace TarvaneApp {

namespace {

bool isTerminatingNow = false;

}  // namespace

AppTermination::AppTermination() {
    QCoreApplication::instance()->installEventFilter(this);
}

AppTermination::~AppTermination() {
    isTerminatingNow = false;
}

bool AppTermination::isTerminating() {
    return isTerminatingNow;
}

// Quit reaches the application object whether it comes from the menu, from the end of the desktop
// session or from the last window, and it gets there before the windows close.
bool AppTermination::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Quit && watched == QCoreApplication::instance()) {
        isTerminatingNow = true;
    }
    return QObject::eventFilter(watched, event);
}

}  // namespace TarvaneApp
