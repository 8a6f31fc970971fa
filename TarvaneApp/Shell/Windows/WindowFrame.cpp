#include "Shell/Windows/WindowFrame.h"

#include <QEvent>
#include <QWidget>

#include "Settings/KeyValueStore.h"

namespace TarvaneApp {

namespace {

// The frame of a window is stored once it has stopped moving.
constexpr int restMilliseconds = 500;

}  // namespace

WindowFrame::WindowFrame(KeyValueStore& store, const std::string& name, QWidget& window)
    : QObject(&window), store_(store), key_("WindowFrame." + name), window_(window) {
    if (const auto bytes = store.data(key_)) {
        window.restoreGeometry(QByteArray(bytes->data(), static_cast<qsizetype>(bytes->size())));
    }
    atRest_.setSingleShot(true);
    atRest_.setInterval(restMilliseconds);
    connect(&atRest_, &QTimer::timeout, this, [this] { save(); });
    window.installEventFilter(this);
}

bool WindowFrame::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Move || event->type() == QEvent::Resize) {
        atRest_.start();
    } else if (event->type() == QEvent::Close) {
        atRest_.stop();
        save();
    }
    return QObject::eventFilter(watched, event);
}

void WindowFrame::save() {
    store_.setData(key_, window_.saveGeometry().toStdString());
    store_.synchronize();
}

}  // namespace TarvaneApp
