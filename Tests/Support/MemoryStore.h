// A settings store in memory.
#pragma once

#include <map>
#include <string>
#include <variant>
#include <vector>

#include "Settings/KeyValueStore.h"
#include "Settings/Published.h"

namespace TarvaneTests {

class MemoryStore final : public TarvaneApp::KeyValueStore {
  public:
    std::optional<std::string> text(std::string_view key) const override {
        const auto* value = find<Text>(key);
        return value != nullptr ? std::optional(value->text) : std::nullopt;
    }
    std::optional<double> number(std::string_view key) const override {
        const auto* value = find<double>(key);
        return value != nullptr ? std::optional(*value) : std::nullopt;
    }
    std::optional<std::string> data(std::string_view key) const override {
        const auto* value = find<Data>(key);
        return value != nullptr ? std::optional(value->bytes) : std::nullopt;
    }
    void setText(std::string_view key, const std::string& value) override { put(key, Text{value}); }
    void setNumber(std::string_view key, double value) override { put(key, value); }
    void setData(std::string_view key, const std::string& bytes) override { put(key, Data{bytes}); }
    void remove(std::string_view key) override {
        isFlushed_ = false;
        values_.erase(std::string(key));
    }
    void synchronize() override { isFlushed_ = true; }
    const TarvaneApp::Observable<std::optional<std::string>>& saveFailure() const override {
        return failure;
    }

    TarvaneApp::Published<std::optional<std::string>> failure;

    bool contains(const std::string& key) const { return values_.contains(key); }
    std::vector<std::string> keys() const {
        std::vector<std::string> keys;
        for (const auto& [key, value] : values_) {
            keys.push_back(key);
        }
        return keys;
    }
    void clear() { values_.clear(); }
    /// Whether a flush followed the last write.
    bool isFlushed() const { return isFlushed_; }

  private:
    struct Text {
        std::string text;
    };
    struct Data {
        std::string bytes;
    };
    using Value = std::variant<Text, double, Data>;

    template <class T>
    const T* find(std::string_view key) const {
        const auto found = values_.find(std::string(key));
        return found != values_.end() ? std::get_if<T>(&found->second) : nullptr;
    }
    void put(std::string_view key, Value value) {
        isFlushed_ = false;
        values_.insert_or_assign(std::string(key), std::move(value));
    }

    std::map<std::string, Value> values_;
    bool isFlushed_ = true;
};

}  // namespace TarvaneTests
