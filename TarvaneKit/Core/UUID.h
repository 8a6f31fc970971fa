// Identifiers of channels: RFC 4122 UUIDs, stored as their upper-case text.
#pragma once

#include <boost/uuid/uuid.hpp>
#include <compare>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace TarvaneKit {

class UUID {
  public:
    /// A new random (version 4) identifier.
    static UUID random();

    /// The canonical 36-character form with hyphens, in either case; anything else is empty.
    static std::optional<UUID> create(std::string_view text);

    /// The main input's fixed identifier.
    static const UUID& main();

    /// 36 characters, upper case.
    std::string text() const;

    friend bool operator==(const UUID& a, const UUID& b) { return a.value_ == b.value_; }
    friend std::strong_ordering operator<=>(const UUID& a, const UUID& b) {
        return a.value_ < b.value_   ? std::strong_ordering::less
               : b.value_ < a.value_ ? std::strong_ordering::greater
                                     : std::strong_ordering::equal;
    }
    std::size_t hash() const { return hash_value(value_); }

  private:
    explicit UUID(const boost::uuids::uuid& value) : value_(value) {}
    boost::uuids::uuid value_;
};

}  // namespace TarvaneKit

template <>
struct std::hash<TarvaneKit::UUID> {
    std::size_t operator()(const TarvaneKit::UUID& id) const noexcept { return id.hash(); }
};
