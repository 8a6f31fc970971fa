// Numbers in text files, as their makers write them.
#pragma once

#include <optional>
#include <string_view>

namespace TarvaneKit {

/// The whole text as a decimal number: optional sign, digits with an optional fraction (".5" and
/// "5." too), optional exponent, with a point as decimal sign whatever the locale. Anything else
/// is empty, "inf", "nan" and hexadecimal digits included, and so is a number beyond 64-bit
/// floats; one too small for them is 0.
std::optional<double> decimalNumber(std::string_view text);

}  // namespace TarvaneKit
