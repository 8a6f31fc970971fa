// The one accessor of the user's stored settings: under which name and in what form each type is
// stored. Texts and identifiers are stored as text, 64-bit floats as numbers,
// everything else as the JSON of its value. Main thread only.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <type_traits>

#include "Core/Coding.h"
#include "Core/UUID.h"
#include "Settings/KeyValueStore.h"

namespace TarvaneApp {

class Persistence {
  public:
    explicit Persistence(KeyValueStore& store) : store_(store) {}

    /// Stores the value and flushes; absent removes the key. A value that has no stored form
    /// (a number that is not finite inside a record) leaves what is stored as it is.
    template <class T>
    void save(std::string_view key, const std::optional<T>& value) {
        const std::string name = storedName(key);
        if (!value) {
            store_.remove(name);
        } else if constexpr (std::is_same_v<T, std::string>) {
            store_.setText(name, *value);
        } else if constexpr (std::is_same_v<T, TarvaneKit::UUID>) {
            store_.setText(name, value->text());
        } else if constexpr (std::is_same_v<T, double>) {
            store_.setNumber(name, *value);
        } else if (const auto bytes = TarvaneKit::encode(*value)) {
            store_.setData(name, *bytes);
        }
        store_.synchronize();
    }

    template <class T>
    void save(std::string_view key, const T& value) {
        save(key, std::optional<T>(value));
    }

    /// Absent, of another form, or not decodable: empty.
    template <class T>
    std::optional<T> load(std::string_view key) const {
        const std::string name = storedName(key);
        if constexpr (std::is_same_v<T, std::string>) {
            return store_.text(name);
        } else if constexpr (std::is_same_v<T, TarvaneKit::UUID>) {
            const auto text = store_.text(name);
            return text ? TarvaneKit::UUID::create(*text) : std::nullopt;
        } else if constexpr (std::is_same_v<T, double>) {
            return store_.number(name);
        } else {
            const auto bytes = store_.data(name);
            return bytes ? TarvaneKit::decode<T>(*bytes) : std::nullopt;
        }
    }

    /// "Tarvane." and the key.
    static std::string storedName(std::string_view key);

  private:
    KeyValueStore& store_;
};

}  // namespace TarvaneApp
