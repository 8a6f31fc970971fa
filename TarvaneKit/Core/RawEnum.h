// Enums with raw values: the text or number under which a case is stored.
//
// An enum takes part by a specialisation of `RawCases` beside its definition:
//
//     template <>
//     struct RawCases<Weighting> {
//         static constexpr std::array all{RawCase{Weighting::a, "A"}, ...};
//     };
//
// The array's order is the order of the cases in menus and lists.
#pragma once

#include <array>
#include <optional>
#include <string_view>
#include <type_traits>

#include "Core/Contract.h"

namespace TarvaneKit {

template <class E, class Raw>
struct RawCase {
    E value;
    Raw raw;
};

template <class E>
RawCase(E, const char*) -> RawCase<E, std::string_view>;
template <class E>
RawCase(E, int) -> RawCase<E, int>;

/// Specialised for each enum with raw values.
template <class E>
struct RawCases;

template <class E>
concept RawEnum = std::is_enum_v<E> && requires {
    RawCases<E>::all;
};

/// `std::string_view` or `int`.
template <RawEnum E>
using RawValue = std::remove_cvref_t<decltype(RawCases<E>::all[0].raw)>;

template <RawEnum E>
constexpr RawValue<E> rawValue(E value) {
    for (const auto& entry : RawCases<E>::all) {
        if (entry.value == value) {
            return entry.raw;
        }
    }
    contractViolation("enum value is one of its cases", __FILE__, __LINE__);
}

/// Empty for a raw value that names no case.
template <RawEnum E>
constexpr std::optional<E> fromRawValue(RawValue<E> raw) {
    for (const auto& entry : RawCases<E>::all) {
        if (entry.raw == raw) {
            return entry.value;
        }
    }
    return std::nullopt;
}

/// All cases in the order in which they are listed.
template <RawEnum E>
constexpr auto allCases() {
    constexpr std::size_t count = RawCases<E>::all.size();
    std::array<E, count> cases{};
    for (std::size_t i = 0; i < count; ++i) {
        cases[i] = RawCases<E>::all[i].value;
    }
    return cases;
}

}  // namespace TarvaneKit
