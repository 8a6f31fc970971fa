// Values of every stored type for property tests, and walks over a record's members. A record's
// own table of keys drives both, so a new member takes part by being in the table.
#pragma once

#include <rapidcheck.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <string>
#include <tuple>
#include <vector>

#include "Core/Coding.h"

namespace TarvaneKit::Testing {

/// The ends of 64-bit floats, and numbers whose decimal forms need every digit.
inline const std::vector<double>& edgeNumbers() {
    using Limits = std::numeric_limits<double>;
    static const std::vector<double> numbers{
        0.0,
        -0.0,
        Limits::max(),
        Limits::lowest(),
        Limits::min(),
        -Limits::min(),
        Limits::denorm_min(),
        -Limits::denorm_min(),
        Limits::epsilon(),
        0.1,
        -240.0,
        0x1p53,
        0x1p53 + 2.0,
        -0x1p63,
        0x1p63,
        0x1p64,
        std::nextafter(1.0, 2.0),
        std::nextafter(Limits::max(), 0.0),
    };
    return numbers;
}

inline void appendUTF8(std::string& text, std::uint32_t point) {
    const auto byte = [&](std::uint32_t bits) { text += static_cast<char>(bits); };
    if (point < 0x80) {
        byte(point);
    } else if (point < 0x800) {
        byte(0xC0 | point >> 6);
        byte(0x80 | (point & 0x3F));
    } else if (point < 0x10000) {
        byte(0xE0 | point >> 12);
        byte(0x80 | (point >> 6 & 0x3F));
        byte(0x80 | (point & 0x3F));
    } else {
        byte(0xF0 | point >> 18);
        byte(0x80 | (point >> 12 & 0x3F));
        byte(0x80 | (point >> 6 & 0x3F));
        byte(0x80 | (point & 0x3F));
    }
}

inline rc::Gen<double> anyNumber() {
    namespace gen = rc::gen;
    return gen::oneOf(
        gen::elementOf(edgeNumbers()),
        gen::map(gen::inRange(-24000, 24000), [](int tenths) { return tenths * 0.1; }),
        gen::map(gen::suchThat(
                     gen::map(gen::pair(gen::inRange<std::uint64_t>(0, 0x7FF),
                                        gen::arbitrary<std::uint64_t>()),
                              [](const std::pair<std::uint64_t, std::uint64_t>& parts) {
                                  // Any exponent but that of infinities and NaN.
                                  return parts.first << 52 | (parts.second & 0x800F'FFFF'FFFF'FFFF);
                              }),
                     [](std::uint64_t bits) { return std::isfinite(std::bit_cast<double>(bits)); }),
                 [](std::uint64_t bits) { return std::bit_cast<double>(bits); }));
}

inline rc::Gen<std::string> anyText() {
    namespace gen = rc::gen;
    const auto point =
        gen::oneOf(gen::inRange<std::uint32_t>(0, 0x80), gen::inRange<std::uint32_t>(0x80, 0xD800),
                   gen::inRange<std::uint32_t>(0xE000, 0x110000));
    return gen::map(gen::container<std::vector<std::uint32_t>>(point),
                    [](const std::vector<std::uint32_t>& points) {
                        std::string text;
                        for (const std::uint32_t p : points) {
                            appendUTF8(text, p);
                        }
                        return text;
                    });
}

inline UUID drawnUUID() {
    std::string digits = *rc::gen::container<std::string>(
        32, rc::gen::elementOf(std::string("0123456789ABCDEFabcdef")));
    for (const std::size_t at : {8U, 13U, 18U, 23U}) {
        digits.insert(at, "-");
    }
    return *UUID::create(digits);
}

/// Up to the present size, as rapidcheck's own containers.
inline std::size_t drawnLength(double scale) {
    return *rc::gen::scale(scale, rc::gen::withSize([](int size) {
                               return rc::gen::inRange<std::size_t>(
                                   0, static_cast<std::size_t>(size) + 1);
                           }));
}

/// A value of any kind, inside a property. Generators are made of numbers and texts alone, which
/// records, lists and choices draw: a generator of each type of its own compiles for minutes.
/// What lists hold is smaller by `scale`.
template <class T>
T drawnValue(double scale = 1.0) {
    if constexpr (std::is_same_v<T, double>) {
        return *anyNumber();
    } else if constexpr (std::is_same_v<T, bool> || std::is_integral_v<T>) {
        return *rc::gen::scale(scale, rc::gen::arbitrary<T>());
    } else if constexpr (std::is_same_v<T, std::string>) {
        return *rc::gen::scale(scale, anyText());
    } else if constexpr (std::is_same_v<T, UUID>) {
        return drawnUUID();
    } else if constexpr (std::is_same_v<T, Date>) {
        // Whole seconds: what both stored forms of a date hold exactly.
        return *dateFromSecondsSinceReferenceDate(
            static_cast<double>(*rc::gen::inRange<std::int64_t>(-7'200'000'000, 7'200'000'000)));
    } else if constexpr (RawEnum<T>) {
        const auto& cases = allCases<T>();
        return cases[*rc::gen::inRange<std::size_t>(0, cases.size())];
    } else if constexpr (CodingDetail::isOptional<T>) {
        return *rc::gen::arbitrary<bool>() ? T(drawnValue<typename T::value_type>(scale)) : T{};
    } else if constexpr (CodingDetail::isVector<T>) {
        T list;
        for (std::size_t left = drawnLength(0.3 * scale); left > 0; --left) {
            list.push_back(drawnValue<typename T::value_type>(0.3 * scale));
        }
        return list;
    } else if constexpr (CodingDetail::isMap<T>) {
        T map;
        for (std::size_t left = drawnLength(0.3 * scale); left > 0; --left) {
            map.emplace(drawnUUID(), drawnValue<typename T::mapped_type>(0.3 * scale));
        }
        return map;
    } else {
        static_assert(CodedRecord<T>);
        T record{};
        const auto fill = [&](const auto& key) {
            auto& member = record.*key.member;
            member = drawnValue<std::remove_reference_t<decltype(member)>>(scale);
        };
        std::apply([&](const auto&... key) { (fill(key), ...); }, Coding<T>::keys);
        return record;
    }
}

/// Calls `draw`, which draws from that chance, outside of a property.
inline void drawFrom(const rc::Random& chance, int size, const std::function<void()>& draw) {
    rc::gen::exec([&draw] {
        draw();
        return true;
    })(chance, size)
        .value();
}

/// Whether the property, which draws, holds of whatever it draws.
inline bool holdsAlways(const std::function<void()>& property) {
    return rc::check([&property] { property(); });
}

/// Visits every `Leaf` inside the value, through lists, optionals and records.
template <class Leaf, class T, class Visit>
void forEachLeaf(T& value, const Visit& visit) {
    if constexpr (std::is_same_v<T, Leaf>) {
        visit(value);
    } else if constexpr (CodingDetail::isOptional<T>) {
        if (value) {
            forEachLeaf<Leaf>(*value, visit);
        }
    } else if constexpr (CodingDetail::isVector<T>) {
        for (auto& element : value) {
            forEachLeaf<Leaf>(element, visit);
        }
    } else if constexpr (CodingDetail::isMap<T>) {
        for (auto& [id, element] : value) {
            forEachLeaf<Leaf>(element, visit);
        }
    } else if constexpr (CodedRecord<T>) {
        std::apply([&](const auto&... key) { (forEachLeaf<Leaf>(value.*key.member, visit), ...); },
                   Coding<T>::keys);
    }
}

/// Calls `check` with the record once per `Leaf` inside it, that one put in the place of a
/// leaf, the others as they were.
template <class Leaf, class T, class Check>
void withEachLeafReplaced(const T& record, const Leaf& replacement, const Check& check) {
    int count = 0;
    T counted = record;
    forEachLeaf<Leaf>(counted, [&](Leaf&) { ++count; });
    for (int target = 0; target < count; ++target) {
        T changed = record;
        int i = 0;
        forEachLeaf<Leaf>(changed, [&](Leaf& leaf) {
            if (i++ == target) {
                leaf = replacement;
            }
        });
        check(changed);
    }
}

}  // namespace TarvaneKit::Testing
