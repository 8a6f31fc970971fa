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

// Quit reaches the application object from the menu, from the desktop's end and from the last
// window alike, and closes the windows on its way.
bool AppTermination::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Quit && watched == QCoreApplication::instance()) {
        isTerminatingNow = true;
    }
    return QObject::eventFilter(watched, event);
}

}  // namespace TarvaneApp
