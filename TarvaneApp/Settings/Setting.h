// A published field that the user's settings store keeps.
//
// Declaring one is a line: type, key, default. All its effects on the engine hang on it in one
// place, MeterEngine+SettingEffects.cpp. An assignment puts the value in place, saves it, runs
// the effect, and tells the watchers; an effect may assign other settings. Loading does none of
// this.
//
// What reaches the store is defined in SettingStorage.h and instantiated once for each type, in
// MeterEngine+Settings.cpp: else every source that knows the engine would compile the coding of
// every record.
#pragma once

#include <functional>
#include <vector>

#include "Settings/Persistence.h"
#include "Settings/Published.h"

namespace TarvaneApp {

class SettingBase {
  public:
    virtual ~SettingBase() = default;
    /// Takes the stored value, or the default, without any effect and without telling anyone.
    virtual void load() = 0;
};

/// The settings of one engine, in the order of their declaration.
class SettingsRegistry {
  public:
    explicit SettingsRegistry(KeyValueStore& store) : persistence_(store) {}

    Persistence& persistence() { return persistence_; }
    void add(SettingBase& setting) { settings_.push_back(&setting); }
    void loadAll() {
        for (SettingBase* setting : settings_) {
            setting->load();
        }
    }

  private:
    Persistence persistence_;
    std::vector<SettingBase*> settings_;
};

/// For T = std::optional<U> an absent value has no key in the store.
template <class T>
class Setting final : public Published<T>, public SettingBase {
  public:
    /// Whether the new value is saved ahead of the effect, as all but one are, or after it.
    enum class Saving { beforeEffect, afterEffect };
    using Effect = std::function<void(const T& old)>;

    Setting(SettingsRegistry& registry, Persistence::Key key, T defaultValue);
    ~Setting() override;
    Setting(const Setting&) = delete;
    Setting& operator=(const Setting&) = delete;

    void set(T value);

    void setEffect(Effect effect, Saving saving = Saving::beforeEffect) {
        effect_ = std::move(effect);
        saving_ = saving;
    }

    /// Makes an assigned value one that may stand.
    void setConstraint(std::function<T(T)> constraint) { constraint_ = std::move(constraint); }

    /// Mends a stored value on its way in.
    void setSanitizer(std::function<T(T)> sanitizer) { sanitizer_ = std::move(sanitizer); }

    /// Where a value comes from when none is stored and an older form of it may be.
    void setMigration(std::function<T(const Persistence&)> migration) {
        migration_ = std::move(migration);
    }

    void load() override;

  private:
    void save();

    Persistence& persistence_;
    const Persistence::Key key_;
    const T default_;
    Effect effect_;
    Saving saving_ = Saving::beforeEffect;
    std::function<T(T)> constraint_;
    std::function<T(T)> sanitizer_;
    std::function<T(const Persistence&)> migration_;
};

}  // namespace TarvaneApp
