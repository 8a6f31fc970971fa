#include "Core/Coding.h"

#include <cmath>

namespace TarvaneKit::CodingDetail {

std::optional<double> decodeNumber(const JSONValue& value) {
    if (const auto* whole = std::get_if<std::int64_t>(&value.content)) {
        return static_cast<double>(*whole);
    }
    if (const auto* number = std::get_if<double>(&value.content)) {
        return *number;
    }
    return std::nullopt;
}

std::optional<std::int64_t> decodeWholeNumber(const JSONValue& value) {
    if (const auto* whole = std::get_if<std::int64_t>(&value.content)) {
        return *whole;
    }
    // 2^63 is the first float that no longer fits.
    if (const auto* number = std::get_if<double>(&value.content);
        number != nullptr && std::trunc(*number) == *number && std::abs(*number) < 0x1p63) {
        return static_cast<std::int64_t>(*number);
    }
    return std::nullopt;
}

std::optional<Date> decodeDate(const JSONValue& value, DateForm form) {
    if (form == DateForm::iso8601) {
        const auto* text = std::get_if<std::string>(&value.content);
        return text != nullptr ? dateFromISO8601(*text) : std::nullopt;
    }
    const auto seconds = decodeNumber(value);
    return seconds ? dateFromSecondsSinceReferenceDate(*seconds) : std::nullopt;
}

}  // namespace TarvaneKit::CodingDetail
