// A value that the user's settings store keeps.
//
// Declaring one is a line: type, stored key, default. An assignment puts the value in place,
// saves it, runs its effect, and tells the watchers; an effect may assign other settings. Loading
// does none of this.
//
// What reaches the store is defined in SettingStorage.h and instantiated once for each type, beside
// the settings: else every source that knows a setting would compile the coding of every record.
#pragma once

#include <functional>
#include <memory>
#include <string_view>
#include <vector>

#include "Settings/Observable.h"

namespace TarvaneApp {

class KeyValueStore;
class Persistence;

class SettingBase {
  public:
    virtual ~SettingBase() = default;
    /// Takes the stored value, or the default, without any effect and without telling anyone.
    virtual void load() = 0;
    virtual const ChangeNotifier& changes() const = 0;

    std::string_view key() const { return key_; }

  protected:
    explicit SettingBase(std::string_view key) : key_(key) {}

  private:
    const std::string_view key_;
};

/// The settings of one owner, in the order of their declaration.
class SettingsRegistry {
  public:
    explicit SettingsRegistry(KeyValueStore& store);
    ~SettingsRegistry();
    SettingsRegistry(const SettingsRegistry&) = delete;
    SettingsRegistry& operator=(const SettingsRegistry&) = delete;

    Persistence& persistence() { return *persistence_; }
    /// Two settings under one key stop the program.
    void add(SettingBase& setting);
    const std::vector<SettingBase*>& settings() const { return settings_; }
    void loadAll();

  private:
    std::unique_ptr<Persistence> persistence_;
    std::vector<SettingBase*> settings_;
};

/// For T = std::optional<U> an absent value has no key in the store.
template <class T>
class Setting : public Observable<T>, public SettingBase {
  public:
    /// Whether the new value is saved ahead of the effect, as all but one are, or after it.
    enum class Saving { beforeEffect, afterEffect };
    using Effect = std::function<void(const T& old)>;

    /// `key` is a literal.
    Setting(SettingsRegistry& registry, std::string_view key, T defaultValue);
    ~Setting() override;
    Setting(const Setting&) = delete;
    Setting& operator=(const Setting&) = delete;

    void set(T value);
    /// The same without the effect, for a value that takes it together with the next one.
    void setWithoutEffect(T value);

    void setEffect(Effect effect, Saving saving = Saving::beforeEffect) {
        effect_ = std::move(effect);
        saving_ = saving;
    }

    /// Makes an assigned value one that may stand.
    void setConstraint(std::function<T(T)> constraint) { constraint_ = std::move(constraint); }

    /// Repairs a stored value on its way in.
    void setSanitizer(std::function<T(T)> sanitizer) { sanitizer_ = std::move(sanitizer); }

    /// Where a value comes from when none is stored and an older form of it may be.
    void setMigration(std::function<T(const Persistence&)> migration) {
        migration_ = std::move(migration);
    }

    void load() override;
    const ChangeNotifier& changes() const override { return this->notifier(); }

  private:
    void assign(T value, const Effect& effect);
    void save();

    Persistence& persistence_;
    const T default_;
    Effect effect_;
    Saving saving_ = Saving::beforeEffect;
    std::function<T(T)> constraint_;
    std::function<T(T)> sanitizer_;
    std::function<T(const Persistence&)> migration_;
};

}  // namespace TarvaneApp
