#include "Core/DecimalNumber.h"

#include <charconv>
#include <locale>
#include <sstream>
#include <string>

namespace TarvaneKit {

namespace {

// `from_chars` doesn't tell too large from too small; a stream fails on the former alone.
std::optional<double> outOfRangeNumber(std::string_view text) {
    std::istringstream stream{std::string(text)};
    stream.imbue(std::locale::classic());
    double value = 0.0;
    stream >> value;
    return stream ? std::optional(value) : std::nullopt;
}

}  // namespace

std::optional<double> decimalNumber(std::string_view text) {
    if (text.find_first_not_of("0123456789+-.eE") != std::string_view::npos) {
        return std::nullopt;
    }
    // `from_chars` takes a minus, but no plus, ahead of the digits.
    if (text.starts_with('+')) {
        text.remove_prefix(1);
        if (text.starts_with('-')) {
            return std::nullopt;
        }
    }
    double value = 0.0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (stop != end || text.empty()) {
        return std::nullopt;
    }
    if (error == std::errc::result_out_of_range) {
        return outOfRangeNumber(text);
    }
    return error == std::errc() ? std::optional(value) : std::nullopt;
}

}  // namespace TarvaneKit
