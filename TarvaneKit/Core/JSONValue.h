// A JSON document in memory. The parser and writer behind it are seen here alone.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace TarvaneKit {

struct JSONMember;

struct JSONValue {
    using Array = std::vector<JSONValue>;
    /// Members in their written order.
    using Object = std::vector<JSONMember>;

    /// A whole number without fraction or exponent that fits 64 bits is an integer, any other
    /// number a float.
    std::variant<std::monostate, bool, std::int64_t, double, std::string, Array, Object> content;

    bool isNull() const { return std::holds_alternative<std::monostate>(content); }

    /// The member of that name; null for an unknown name or anything but an object.
    const JSONValue* member(std::string_view name) const;

    bool operator==(const JSONValue&) const;

    /// Any JSON text, a lone value included. Of a repeated name the last one counts. Empty on
    /// malformed text, bytes that are not UTF-8, a number beyond 64-bit floats, or more than
    /// 128 levels of nesting.
    static std::optional<JSONValue> parse(std::string_view text);

    enum class Layout {
        compact,
        document,  ///< for people: indented, the members of each object in the order of their names
    };

    /// Empty when a number is not finite or a text is not UTF-8: JSON has no form for either.
    std::optional<std::string> write(Layout layout = Layout::compact) const;
};

struct JSONMember {
    std::string name;
    JSONValue value;

    bool operator==(const JSONMember&) const = default;
};

}  // namespace TarvaneKit
