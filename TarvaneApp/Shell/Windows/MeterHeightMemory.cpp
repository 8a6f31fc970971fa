#include "Shell/Windows/MeterHeightMemory.h"

#include <QWidget>

#include "Settings/KeyValueStore.h"
#include "Shell/Panels/ModuleLayoutView.h"

namespace TarvaneApp {

void MeterHeightMemory::keep(KeyValueStore& store, const std::string& name, QWidget& window) {
    if (auto* modules = window.findChild<ModuleLayoutView*>()) {
        new MeterHeightMemory(store, name, *modules);
    }
}

MeterHeightMemory::MeterHeightMemory(KeyValueStore& store, const std::string& name,
                                     ModuleLayoutView& modules)
    : QObject(&modules), store_(store), key_("WindowMeterShare." + name), modules_(modules) {
    // What can't be a share is passed over.
    const auto stored = store.number(key_);
    if (stored && *stored > 0.0 && *stored < 1.0) {
        modules.setMeterShare(stored);
    }
    connect(&modules, &ModuleLayoutView::meterShareChanged, this, [this] { save(); });
}

void MeterHeightMemory::save() {
    if (const auto share = modules_.meterShare()) {
        store_.setNumber(key_, *share);
    } else {
        store_.remove(key_);
    }
    store_.synchronize();
}

}  // namespace TarvaneApp
