// Dates of records: a point on the wall clock, and its two stored forms.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace TarvaneKit {

using Date = std::chrono::system_clock::time_point;

/// Seconds since 2001-01-01 00:00:00 UTC, the form of a date in the settings store.
double secondsSinceReferenceDate(Date date);

/// Empty for a value outside the clock's range or not finite.
std::optional<Date> dateFromSecondsSinceReferenceDate(double seconds);

/// "2026-03-01T19:30:00Z": ISO 8601 in UTC, in whole seconds, rounded down.
std::string iso8601(Date date);

/// The form that `iso8601` writes, with "Z" or with an offset from UTC as "+01:00"; anything else
/// is empty, and so is a date outside of the years 1678 to 2261.
std::optional<Date> dateFromISO8601(std::string_view text);

}  // namespace TarvaneKit
