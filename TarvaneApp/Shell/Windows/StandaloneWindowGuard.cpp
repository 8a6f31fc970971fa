#include "Shell/Windows/StandaloneWindowGuard.h"

#include <QApplication>
#include <QEvent>

#include "Engine/MeterEngine.h"
#include "Shell/Windows/AppTermination.h"

namespace TarvaneApp {

QWidget* visibleStandaloneWindow(StandaloneModule module, const QWidget* besides) {
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window != besides && window->isVisible() &&
            window->windowRole() == sceneIdentifier(module)) {
            return window;
        }
    }
    return nullptr;
}

StandaloneWindowGuard::StandaloneWindowGuard(StandaloneModule module, MeterEngine& engine,
                                             QWidget* window)
    : QObject(window), module_(module), engine_(engine) {
    window->installEventFilter(this);
    connect(&placement(engine, module).notifier(), &ChangeNotifier::changed, this,
            [this] { enforce(); });
}

bool StandaloneWindowGuard::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Show && state_.window == nullptr) {
        state_.window = static_cast<QWidget*>(watched);
        // A window can't be closed on its way to the screen.
        QMetaObject::invokeMethod(
            this, [this] { enforce(); }, Qt::QueuedConnection);
    } else if (event->type() == QEvent::Close) {
        disappeared();
    }
    return QObject::eventFilter(watched, event);
}

void StandaloneWindowGuard::enforce() {
    if (state_.window == nullptr || !state_.window->isVisible()) {
        return;
    }
    if (placement(engine_, module_)() != ModulePlacement::separateWindow) {
        state_.window->close();
    } else if (visibleStandaloneWindow(module_, state_.window) != nullptr) {
        state_.closingAsDuplicate = true;
        state_.window->close();
    }
}

// The placement changes only after the window is deleted, guard included.
void StandaloneWindowGuard::disappeared() {
    if (state_.closingAsDuplicate) {
        return;
    }
    QMetaObject::invokeMethod(
        &engine_,
        [&engine = engine_, module = module_] {
            Setting<ModulePlacement>& where = placement(engine, module);
            if (!AppTermination::isTerminating() && where() == ModulePlacement::separateWindow) {
                where.set(ModulePlacement::mainWindow);
            }
        },
        Qt::QueuedConnection);
}

}  // namespace TarvaneApp
