// How records become JSON and come back, through one table per record.
//
// Beside each stored record stands its table, the only place that knows its keys:
//
//     template <>
//     struct Coding<MicCalFile> {
//         static constexpr auto keys = std::tuple{
//             optional("sensFactorDB", &MicCalFile::sensFactorDB),
//             required("points", &MicCalFile::points),
//         };
//     };
//
// - `required`: a missing key fails the record.
// - `optional`: for a std::optional member; absent is written by leaving the key out.
// - `defaulted`: a missing key keeps what a new record holds.
//
// A key that is present with a value of the wrong type fails the record in all three; null
// counts as missing; keys that the table doesn't name are passed over. A record whose defaults
// depend on its other members has a `static void complete(Record&, const JSONValue&)` in its
// `Coding`, called last with the object that was read.
//
// A map from identifiers is an object with their texts as its names.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "Core/Date.h"
#include "Core/JSONValue.h"
#include "Core/RawEnum.h"
#include "Core/UUID.h"

namespace TarvaneKit {

/// Specialised beside each record.
template <class Record>
struct Coding;

template <class T>
concept CodedRecord = requires {
    Coding<T>::keys;
};

enum class KeyKind { required, optional, defaulted };

template <KeyKind kind, class Record, class Member>
struct CodingKey {
    std::string_view name;
    Member Record::*member;
};

template <class Record, class Member>
constexpr auto required(std::string_view name, Member Record::*member) {
    return CodingKey<KeyKind::required, Record, Member>{name, member};
}
template <class Record, class Member>
constexpr auto optional(std::string_view name, std::optional<Member> Record::*member) {
    return CodingKey<KeyKind::optional, Record, std::optional<Member>>{name, member};
}
template <class Record, class Member>
constexpr auto defaulted(std::string_view name, Member Record::*member) {
    return CodingKey<KeyKind::defaulted, Record, Member>{name, member};
}

/// The form of dates: a number in the settings store, text in files that people exchange.
enum class DateForm { secondsSinceReferenceDate, iso8601 };

namespace CodingDetail {

std::optional<double> decodeNumber(const JSONValue& value);
std::optional<std::int64_t> decodeWholeNumber(const JSONValue& value);
std::optional<Date> decodeDate(const JSONValue& value, DateForm form);

template <class T>
inline constexpr bool isVector = false;
template <class T>
inline constexpr bool isVector<std::vector<T>> = true;

template <class T>
inline constexpr bool isMap = false;
template <class T>
inline constexpr bool isMap<std::map<UUID, T>> = true;

template <class T>
inline constexpr bool isOptional = false;
template <class T>
inline constexpr bool isOptional<std::optional<T>> = true;

}  // namespace CodingDetail

template <class T>
JSONValue encodeJSON(const T& value, DateForm dates) {
    if constexpr (std::is_same_v<T, bool> || std::is_same_v<T, std::string> ||
                  std::is_same_v<T, double>) {
        return JSONValue{{value}};
    } else if constexpr (std::is_integral_v<T>) {
        return JSONValue{{static_cast<std::int64_t>(value)}};
    } else if constexpr (std::is_same_v<T, UUID>) {
        return JSONValue{{value.text()}};
    } else if constexpr (std::is_same_v<T, Date>) {
        return dates == DateForm::iso8601 ? JSONValue{{iso8601(value)}}
                                          : JSONValue{{secondsSinceReferenceDate(value)}};
    } else if constexpr (RawEnum<T>) {
        if constexpr (std::is_same_v<RawValue<T>, int>) {
            return JSONValue{{std::int64_t{rawValue(value)}}};
        } else {
            return JSONValue{{std::string(rawValue(value))}};
        }
    } else if constexpr (CodingDetail::isOptional<T>) {
        return value ? encodeJSON(*value, dates) : JSONValue{};
    } else if constexpr (CodingDetail::isVector<T>) {
        JSONValue::Array array;
        array.reserve(value.size());
        for (const auto& element : value) {
            array.push_back(encodeJSON(element, dates));
        }
        return JSONValue{{std::move(array)}};
    } else if constexpr (CodingDetail::isMap<T>) {
        JSONValue::Object object;
        for (const auto& [id, element] : value) {
            object.push_back({id.text(), encodeJSON(element, dates)});
        }
        return JSONValue{{std::move(object)}};
    } else {
        static_assert(CodedRecord<T>, "a stored record has a Coding table");
        JSONValue::Object object;
        const auto write = [&](const auto& key) {
            const auto& member = value.*key.member;
            if constexpr (CodingDetail::isOptional<std::remove_cvref_t<decltype(member)>>) {
                if (!member) {
                    return;
                }
            }
            object.push_back({std::string(key.name), encodeJSON(member, dates)});
        };
        std::apply([&](const auto&... key) { (write(key), ...); }, Coding<T>::keys);
        return JSONValue{{std::move(object)}};
    }
}

template <class T>
std::optional<T> decodeJSON(const JSONValue& json, DateForm dates);

namespace CodingDetail {

template <KeyKind kind, class Record, class Member>
bool readMember(const CodingKey<kind, Record, Member>& key, const JSONValue& object, Record& into,
                DateForm dates) {
    const JSONValue* found = object.member(key.name);
    if (found == nullptr || found->isNull()) {
        if constexpr (kind == KeyKind::optional) {
            into.*key.member = std::nullopt;
        }
        return kind != KeyKind::required;
    }
    auto value = decodeJSON<Member>(*found, dates);
    if (!value) {
        return false;
    }
    into.*key.member = std::move(*value);
    return true;
}

}  // namespace CodingDetail

/// Empty when the JSON is not of the type's form. A whole number is taken from any number
/// without a fraction, a float from any number, a boolean from true and false alone.
template <class T>
std::optional<T> decodeJSON(const JSONValue& json, DateForm dates) {
    if constexpr (std::is_same_v<T, bool> || std::is_same_v<T, std::string>) {
        const T* value = std::get_if<T>(&json.content);
        return value != nullptr ? std::optional<T>(*value) : std::nullopt;
    } else if constexpr (std::is_same_v<T, double>) {
        return CodingDetail::decodeNumber(json);
    } else if constexpr (std::is_integral_v<T>) {
        const auto value = CodingDetail::decodeWholeNumber(json);
        return value && std::in_range<T>(*value) ? std::optional<T>(static_cast<T>(*value))
                                                 : std::nullopt;
    } else if constexpr (std::is_same_v<T, UUID>) {
        const auto* text = std::get_if<std::string>(&json.content);
        return text != nullptr ? UUID::create(*text) : std::nullopt;
    } else if constexpr (std::is_same_v<T, Date>) {
        return CodingDetail::decodeDate(json, dates);
    } else if constexpr (RawEnum<T>) {
        if constexpr (std::is_same_v<RawValue<T>, int>) {
            const auto raw = decodeJSON<int>(json, dates);
            return raw ? fromRawValue<T>(*raw) : std::nullopt;
        } else {
            const auto* raw = std::get_if<std::string>(&json.content);
            return raw != nullptr ? fromRawValue<T>(*raw) : std::nullopt;
        }
    } else if constexpr (CodingDetail::isOptional<T>) {
        if (json.isNull()) {
            return T{};
        }
        auto value = decodeJSON<typename T::value_type>(json, dates);
        return value ? std::optional<T>(std::move(value)) : std::nullopt;
    } else if constexpr (CodingDetail::isVector<T>) {
        const auto* array = std::get_if<JSONValue::Array>(&json.content);
        if (array == nullptr) {
            return std::nullopt;
        }
        T result;
        result.reserve(array->size());
        for (const JSONValue& element : *array) {
            auto value = decodeJSON<typename T::value_type>(element, dates);
            if (!value) {
                return std::nullopt;
            }
            result.push_back(std::move(*value));
        }
        return result;
    } else if constexpr (CodingDetail::isMap<T>) {
        const auto* object = std::get_if<JSONValue::Object>(&json.content);
        if (object == nullptr) {
            return std::nullopt;
        }
        T result;
        for (const auto& [name, element] : *object) {
            const auto id = UUID::create(name);
            auto value = decodeJSON<typename T::mapped_type>(element, dates);
            if (!id || !value) {
                return std::nullopt;
            }
            result.insert_or_assign(*id, std::move(*value));
        }
        return result;
    } else {
        static_assert(CodedRecord<T>, "a stored record has a Coding table");
        if (!std::holds_alternative<JSONValue::Object>(json.content)) {
            return std::nullopt;
        }
        T record{};
        const bool complete = std::apply(
            [&](const auto&... key) {
                return (CodingDetail::readMember(key, json, record, dates) && ...);
            },
            Coding<T>::keys);
        if (!complete) {
            return std::nullopt;
        }
        if constexpr (requires { Coding<T>::complete(record, json); }) {
            Coding<T>::complete(record, json);
        }
        return record;
    }
}

/// Empty when the value has no JSON form (a number that is not finite).
template <class T>
std::optional<std::string> encode(const T& value,
                                  DateForm dates = DateForm::secondsSinceReferenceDate) {
    return encodeJSON(value, dates).write();
}

/// Empty on malformed text or a value of another form.
template <class T>
std::optional<T> decode(std::string_view text,
                        DateForm dates = DateForm::secondsSinceReferenceDate) {
    const auto json = JSONValue::parse(text);
    return json ? decodeJSON<T>(*json, dates) : std::nullopt;
}

}  // namespace TarvaneKit
