// The members of Setting that reach the store. For the one source that instantiates them.
#pragma once

#include <optional>
#include <utility>

#include "Settings/Persistence.h"
#include "Settings/Setting.h"

namespace TarvaneApp {

/// What is stored of a setting: of an optional one its content.
template <class T>
struct StoredValue {
    using Type = T;
};
template <class T>
struct StoredValue<std::optional<T>> {
    using Type = T;
};

template <class T>
Setting<T>::Setting(SettingsRegistry& registry, std::string_view key, T defaultValue)
    : Observable<T>(defaultValue),
      SettingBase(key),
      persistence_(registry.persistence()),
      default_(std::move(defaultValue)) {
    registry.add(*this);
}

template <class T>
Setting<T>::~Setting() = default;

template <class T>
void Setting<T>::set(T value) {
    assign(std::move(value), effect_);
}

template <class T>
void Setting<T>::setWithoutEffect(T value) {
    assign(std::move(value), {});
}

template <class T>
void Setting<T>::assign(T value, const Effect& effect) {
    if (constraint_) {
        value = constraint_(std::move(value));
    }
    const T old = std::exchange(this->value_, std::move(value));
    if (saving_ == Saving::beforeEffect) {
        save();
    }
    if (effect) {
        effect(old);
    }
    if (saving_ == Saving::afterEffect) {
        save();
    }
    Q_EMIT this->notifier_.changed();
}

template <class T>
void Setting<T>::load() {
    if (auto stored = persistence_.load<typename StoredValue<T>::Type>(key())) {
        this->value_ = T(std::move(*stored));
    } else {
        this->value_ = migration_ ? migration_(persistence_) : default_;
    }
    if (sanitizer_) {
        this->value_ = sanitizer_(std::move(this->value_));
    }
}

template <class T>
void Setting<T>::save() {
    persistence_.save(key(), std::optional<typename StoredValue<T>::Type>(this->value_));
}

}  // namespace TarvaneApp
