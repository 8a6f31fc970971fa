#include "Core/Date.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

namespace TarvaneKit {
namespace DateTests {

using namespace std::chrono_literals;

TEST(Date, storedSecondsCountTheNanosecondsOfTheClock) {
    const Date reference = *dateFromISO8601("2001-01-01T00:00:00Z");
    EXPECT_EQ(secondsSinceReferenceDate(reference), 0.0);
    EXPECT_EQ(secondsSinceReferenceDate(reference + 1ns), 1e-9);
    EXPECT_EQ(secondsSinceReferenceDate(reference - 250ms), -0.25);
    EXPECT_EQ(dateFromSecondsSinceReferenceDate(0.3), reference + 300ms);
    EXPECT_EQ(dateFromSecondsSinceReferenceDate(-0.3), reference - 300ms);
    EXPECT_EQ(dateFromSecondsSinceReferenceDate(1e9 + 0.5), reference + 1'000'000'000'500ms);
}

// Saved and loaded again and again, a date stays where it is.
RC_GTEST_PROP(DateLaws, aStoredDateComesBackTheSame, ()) {
    const double whole =
        static_cast<double>(*rc::gen::inRange<std::int64_t>(-7'200'000'000, 7'200'000'000));
    const double fraction = *rc::gen::inRange(0, 1'000'000'007) / 1'000'000'007.0;
    const double scale = *rc::gen::element(1.0, 1e-3, 1e-6, 1e-9);
    const auto date = dateFromSecondsSinceReferenceDate((whole + fraction) * scale);
    RC_ASSERT(date.has_value());
    RC_ASSERT(dateFromSecondsSinceReferenceDate(secondsSinceReferenceDate(*date)) == date);
}

}  // namespace DateTests
}  // namespace TarvaneKit
