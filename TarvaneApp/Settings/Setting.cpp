#include "Settings/Setting.h"

#include <algorithm>

#include "Core/Contract.h"
#include "Settings/Persistence.h"

namespace TarvaneApp {

SettingsRegistry::SettingsRegistry(KeyValueStore& store)
    : persistence_(std::make_unique<Persistence>(store)) {}

SettingsRegistry::~SettingsRegistry() = default;

void SettingsRegistry::add(SettingBase& setting) {
    TARVANE_PRECONDITION(std::ranges::none_of(
        settings_, [&](const SettingBase* other) { return other->key() == setting.key(); }));
    settings_.push_back(&setting);
}

void SettingsRegistry::loadAll() {
    for (SettingBase* setting : settings_) {
        setting->load();
    }
}

}  // namespace TarvaneApp
