#include "Shell/Windows/ContentView.h"

#include <QShowEvent>
#include <QVBoxLayout>

#include "Engine/MeterEngine.h"
#include "Shell/Controls/BareLayout.h"
#include "Shell/Controls/Divider.h"
#include "Shell/Controls/NoteBar.h"
#include "Shell/Panels/MainWindowArrangement.h"
#include "Shell/Panels/ModuleLayoutView.h"
#include "Shell/Windows/IdlePrompt.h"
#include "Shell/Windows/MainToolbar.h"
#include "Shell/Windows/StandaloneWindowGuard.h"

namespace TarvaneApp {

ContentView::ContentView(MeterEngine& engine, ProfileStore& profiles, const AppCommands& commands,
                         QWidget* parent)
    : QWidget(parent), engine_(engine), commands_(commands), note_(new NoteBar(this)) {
    auto* column = layOutColumn(this, 0);
    column->addWidget(new MainToolbar(engine, profiles, commands, this));
    column->addWidget(makeDivider(this));
    auto* arrangement = new MainWindowArrangement(engine, this);
    column->addWidget(new ModuleLayoutView(engine, *arrangement, std::nullopt, this), 1);
    column->addWidget(note_);
    new IdlePrompt(engine, *this);
    for (const StandaloneModule module : standaloneModules) {
        const Setting<ModulePlacement>& where = placement(engine, module);
        connect(&where.notifier(), &ChangeNotifier::changed, this,
                [this, module, &where] { syncStandaloneWindow(module, where()); });
    }
}

void ContentView::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (!event->spontaneous()) {
        // Only once the window itself is being shown: an alert or a module's window that came first
        // would be behind it.
        QMetaObject::invokeMethod(this, &ContentView::appeared, Qt::QueuedConnection);
    }
}

void ContentView::appeared() {
    engine_.refreshDevices();
    for (const StandaloneModule module : standaloneModules) {
        syncStandaloneWindow(module, placement(engine_, module)());
    }
}

void ContentView::syncStandaloneWindow(StandaloneModule module, ModulePlacement placement) {
    QWidget* window = visibleStandaloneWindow(module);
    if (placement == ModulePlacement::separateWindow && window == nullptr) {
        commands_.openStandaloneWindow(module);
    } else if (placement != ModulePlacement::separateWindow && window != nullptr) {
        window->close();
    }
}

}  // namespace TarvaneApp
