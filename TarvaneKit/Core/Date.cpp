#include "Core/Date.h"

#include <fmt/format.h>

#include <cmath>
#include <cstdint>

namespace TarvaneKit {

namespace {

using namespace std::chrono;

constexpr sys_days referenceDay = year{2001} / January / 1;

// Nine tenths of what the clock's 64-bit nanoseconds hold, so that no sum overflows.
constexpr double clockRangeSeconds = 0.9 * 9.2e9;

bool readDigits(std::string_view text, std::size_t at, std::size_t count, int& value) {
    value = 0;
    for (std::size_t i = at; i < at + count; ++i) {
        if (text[i] < '0' || text[i] > '9') {
            return false;
        }
        value = value * 10 + (text[i] - '0');
    }
    return true;
}

// The clock's 64-bit nanoseconds reach from 1677 to 2262.
constexpr int firstYear = 1678;
constexpr int lastYear = 2261;

constexpr std::size_t dateAndTimeLength = std::string_view("2026-03-01T19:30:00").size();

std::optional<minutes> offsetFromUTC(std::string_view text) {
    int h = 0, mi = 0;
    if (text == "Z") {
        return minutes(0);
    }
    if (text.size() != 6 || (text[0] != '+' && text[0] != '-') || text[3] != ':' ||
        !readDigits(text, 1, 2, h) || !readDigits(text, 4, 2, mi) || h > 23 || mi > 59) {
        return std::nullopt;
    }
    const minutes ahead = hours(h) + minutes(mi);
    return text[0] == '+' ? ahead : -ahead;
}

}  // namespace

// Both ways by whole seconds and the rest, so that a stored date comes back to the same number:
// one product with 10^9 would round twice and could drift with each save.
double secondsSinceReferenceDate(Date date) {
    const auto sinceReference = date - Date(referenceDay);
    const auto whole = floor<seconds>(sinceReference);
    return static_cast<double>(whole.count()) + duration<double>(sinceReference - whole).count();
}

std::optional<Date> dateFromSecondsSinceReferenceDate(double seconds) {
    if (!(std::abs(seconds) < clockRangeSeconds - 1.0e9)) {
        return std::nullopt;
    }
    const double whole = std::floor(seconds);
    return Date(referenceDay) + duration<std::int64_t>(static_cast<std::int64_t>(whole)) +
           round<Date::duration>(duration<double>(seconds - whole));
}

std::string iso8601(Date date) {
    const auto second = floor<seconds>(date);
    const auto day = floor<days>(second);
    const year_month_day ymd(day);
    const hh_mm_ss time(second - day);
    return fmt::format("{:04}-{:02}-{:02}T{:02}:{:02}:{:02}Z", static_cast<int>(ymd.year()),
                       static_cast<unsigned>(ymd.month()), static_cast<unsigned>(ymd.day()),
                       time.hours().count(), time.minutes().count(), time.seconds().count());
}

std::optional<Date> dateFromISO8601(std::string_view text) {
    int y = 0, mo = 0, d = 0, h = 0, mi = 0, s = 0;
    if (text.size() < dateAndTimeLength) {
        return std::nullopt;
    }
    const auto offset = offsetFromUTC(text.substr(dateAndTimeLength));
    if (!offset || text[4] != '-' || text[7] != '-' || text[10] != 'T' || text[13] != ':' ||
        text[16] != ':' || !readDigits(text, 0, 4, y) || !readDigits(text, 5, 2, mo) ||
        !readDigits(text, 8, 2, d) || !readDigits(text, 11, 2, h) || !readDigits(text, 14, 2, mi) ||
        !readDigits(text, 17, 2, s)) {
        return std::nullopt;
    }
    const year_month_day ymd(year{y}, month{static_cast<unsigned>(mo)},
                             day{static_cast<unsigned>(d)});
    if (!ymd.ok() || h > 23 || mi > 59 || s > 59) {
        return std::nullopt;
    }
    const auto second = sys_days(ymd) + hours(h) + minutes(mi) + seconds(s) - *offset;
    if (second < sys_days(year{firstYear} / 1 / 1) ||
        second >= sys_days(year{lastYear + 1} / 1 / 1)) {
        return std::nullopt;
    }
    return Date(second);
}

}  // namespace TarvaneKit
