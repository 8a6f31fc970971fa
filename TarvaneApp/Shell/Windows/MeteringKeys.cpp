#include "Shell/Windows/MeteringKeys.h"

#include <QAbstractButton>
#include <QKeyEvent>
#include <QShortcut>
#include <QToolButton>

#include "Engine/MeterEngine.h"

namespace TarvaneApp {

void toggleRunning(MeterEngine& engine) {
    if (engine.isRunning() || engine.isStarting()) {
        engine.stop();
    } else {
        engine.start();
    }
}

void togglePause(MeterEngine& engine) {
    if (engine.isPaused()) {
        engine.resume();
    } else {
        engine.pause();
    }
}

// A text field that has the focus takes the keys as text before any shortcut sees them.
MeteringKeys::MeteringKeys(MeterEngine& engine, QWidget& window) : QObject(&window) {
    const auto add = [this, &engine, &window](Qt::Key key, void (*action)(MeterEngine&)) {
        auto* shortcut = new QShortcut(QKeySequence(key), &window);
        shortcut->setAutoRepeat(false);
        connect(shortcut, &QShortcut::activated, this, [&engine, action] { action(engine); });
    };
    add(Qt::Key_Space, &toggleRunning);
    add(Qt::Key_P, &togglePause);
    window.installEventFilter(this);
}

bool MeteringKeys::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        QWidget* focused = static_cast<QWidget*>(watched)->focusWidget();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            if (auto* menuButton = qobject_cast<QToolButton*>(focused);
                menuButton != nullptr && menuButton->menu() != nullptr) {
                menuButton->showMenu();
                return true;
            }
            if (auto* button = qobject_cast<QAbstractButton*>(focused)) {
                button->click();
                return true;
            }
        }
    }
    return QObject::eventFilter(watched, event);
}

}  // namespace TarvaneApp
