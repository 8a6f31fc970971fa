#include "Core/JSONValue.h"

#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>

namespace TarvaneKit {

namespace {

constexpr std::size_t maxNesting = 128;

// Builds the value while the parser walks the text, so that a hostile document is turned down
// at its 129th bracket and not after it has filled the memory.
class Builder final : public nlohmann::json_sax<nlohmann::json> {
  public:
    JSONValue take() { return std::move(root_); }

    bool null() override { return put(JSONValue{}); }
    bool boolean(bool value) override { return put(JSONValue{{value}}); }
    bool number_integer(number_integer_t value) override {
        return put(JSONValue{{std::int64_t{value}}});
    }
    bool number_unsigned(number_unsigned_t value) override {
        if (value <= static_cast<number_unsigned_t>(std::numeric_limits<std::int64_t>::max())) {
            return put(JSONValue{{static_cast<std::int64_t>(value)}});
        }
        return put(JSONValue{{static_cast<double>(value)}});
    }
    bool number_float(number_float_t value, const string_t&) override {
        return std::isfinite(value) && put(JSONValue{{value}});
    }
    bool string(string_t& value) override { return put(JSONValue{{std::move(value)}}); }
    bool binary(binary_t&) override { return false; }

    bool start_object(std::size_t) override { return open(JSONValue{{JSONValue::Object{}}}); }
    bool start_array(std::size_t) override { return open(JSONValue{{JSONValue::Array{}}}); }
    bool end_object() override { return close(); }
    bool end_array() override { return close(); }
    bool key(string_t& name) override {
        open_.back().name = std::move(name);
        return true;
    }
    bool parse_error(std::size_t, const std::string&, const nlohmann::json::exception&) override {
        return false;
    }

  private:
    struct Open {
        JSONValue value;
        std::string name;  // of the member being read
    };

    bool open(JSONValue&& value) {
        if (open_.size() == maxNesting) {
            return false;
        }
        open_.push_back({std::move(value), {}});
        return true;
    }

    bool close() {
        JSONValue value = std::move(open_.back().value);
        open_.pop_back();
        return put(std::move(value));
    }

    bool put(JSONValue&& value) {
        if (open_.empty()) {
            root_ = std::move(value);
        } else if (auto* array = std::get_if<JSONValue::Array>(&open_.back().value.content)) {
            array->push_back(std::move(value));
        } else {
            std::get<JSONValue::Object>(open_.back().value.content)
                .push_back({std::move(open_.back().name), std::move(value)});
        }
        return true;
    }

    JSONValue root_;
    std::vector<Open> open_;
};

struct NotRepresentable {};

// The library's value says how an object keeps its members: as they come, or by name.
template <class Json>
Json toLibrary(const JSONValue& value) {
    struct Visitor {
        Json operator()(std::monostate) const { return nullptr; }
        Json operator()(bool v) const { return v; }
        Json operator()(std::int64_t v) const { return v; }
        Json operator()(double v) const {
            if (!std::isfinite(v)) {
                throw NotRepresentable{};
            }
            return v;
        }
        Json operator()(const std::string& v) const { return v; }
        Json operator()(const JSONValue::Array& v) const {
            Json result = Json::array();
            for (const JSONValue& element : v) {
                result.push_back(toLibrary<Json>(element));
            }
            return result;
        }
        Json operator()(const JSONValue::Object& v) const {
            Json result = Json::object();
            for (const auto& [name, element] : v) {
                result[name] = toLibrary<Json>(element);
            }
            return result;
        }
    };
    return std::visit(Visitor{}, value.content);
}

}  // namespace

bool JSONValue::operator==(const JSONValue& other) const {
    return content == other.content;
}

const JSONValue* JSONValue::member(std::string_view name) const {
    const auto* object = std::get_if<Object>(&content);
    if (object == nullptr) {
        return nullptr;
    }
    for (auto it = object->rbegin(); it != object->rend(); ++it) {
        if (it->name == name) {
            return &it->value;
        }
    }
    return nullptr;
}

std::optional<JSONValue> JSONValue::parse(std::string_view text) {
    Builder builder;
    if (!nlohmann::json::sax_parse(text.begin(), text.end(), &builder)) {
        return std::nullopt;
    }
    return builder.take();
}

std::optional<std::string> JSONValue::write(Layout layout) const {
    try {
        return layout == Layout::document ? toLibrary<nlohmann::json>(*this).dump(2)
                                          : toLibrary<nlohmann::ordered_json>(*this).dump();
    } catch (const NotRepresentable&) {
        return std::nullopt;
    } catch (const nlohmann::json::exception&) {
        return std::nullopt;
    }
}

}  // namespace TarvaneKit
