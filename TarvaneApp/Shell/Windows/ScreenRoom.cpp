#include "Shell/Windows/ScreenRoom.h"

#include <QEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QWidget>
#include <QWindow>

namespace TarvaneApp {

namespace {

// Of a window that has none yet; desktops' title bars are about as high.
constexpr QSize assumedFrame(2, 38);

// Under Wayland no program is told of the desktop's panels: the room is that of the whole screen.
constexpr QSize assumedPanel(0, 40);

QSize panels() {
    return QGuiApplication::platformName().startsWith(QLatin1String("wayland")) ? assumedPanel
                                                                                : QSize(0, 0);
}

}  // namespace

ScreenRoom::ScreenRoom(QWidget& window) : QObject(&window), window_(window) {
    window.installEventFilter(this);
    followScreen();
}

QSize ScreenRoom::of(const QWidget& window) {
    const QSize frame = window.frameGeometry().size() - window.geometry().size();
    return window.screen()->availableGeometry().size() - panels() - frame.expandedTo(assumedFrame);
}

QSize ScreenRoom::size() const {
    return of(window_);
}

// Only a window that has been shown has what tells of its screens.
bool ScreenRoom::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Show && !isShown_ && window_.windowHandle() != nullptr) {
        isShown_ = true;
        // The window's own change of screen comes after the signal.
        connect(
            window_.windowHandle(), &QWindow::screenChanged, this,
            [this] {
                followScreen();
                Q_EMIT changed();
            },
            Qt::QueuedConnection);
        followScreen();
        Q_EMIT changed();
    }
    return QObject::eventFilter(watched, event);
}

void ScreenRoom::followScreen() {
    disconnect(room_);
    room_ =
        connect(window_.screen(), &QScreen::availableGeometryChanged, this, &ScreenRoom::changed);
}

}  // namespace TarvaneApp
