#include "Core/DecimalNumber.h"

#include <fmt/format.h>
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <clocale>
#include <cmath>
#include <limits>

namespace TarvaneKit {
namespace DecimalNumberTests {

TEST(DecimalNumber, takesSignDigitsFractionAndExponent) {
    EXPECT_EQ(decimalNumber("0"), 0.0);
    EXPECT_EQ(decimalNumber("20.5"), 20.5);
    EXPECT_EQ(decimalNumber("-1.25"), -1.25);
    EXPECT_EQ(decimalNumber("+5"), 5.0);
    EXPECT_EQ(decimalNumber(".5"), 0.5);
    EXPECT_EQ(decimalNumber("-.5"), -0.5);
    EXPECT_EQ(decimalNumber("+.5"), 0.5);
    EXPECT_EQ(decimalNumber("5."), 5.0);
    EXPECT_EQ(decimalNumber("1e3"), 1000.0);
    EXPECT_EQ(decimalNumber("2.5E-1"), 0.25);
    EXPECT_EQ(decimalNumber("1e+3"), 1000.0);
    EXPECT_EQ(decimalNumber("007"), 7.0);
}

TEST(DecimalNumber, takesNothingElse) {
    for (const char* text :
         {"",    "+",    "-",   ".",     "e",   "e5",       "1e",    "1e+",   "+-1",     "-+1",
          "--1", "++1",  "1-",  "1.2.3", "1,5", "1 ",       " 1",    "1dB",   "0x10",    "1p3",
          "inf", "-inf", "nan", "NaN",   "INF", "infinity", "1e2.5", "1_000", "\xD9\xA1"}) {
        EXPECT_FALSE(decimalNumber(text)) << '"' << text << '"';
    }
    EXPECT_FALSE(decimalNumber(std::string_view("1\0", 2)));
}

TEST(DecimalNumber, beyondTheLargestIsNoneAndBelowTheSmallestIs0) {
    EXPECT_EQ(decimalNumber("1.7976931348623157e308"), std::numeric_limits<double>::max());
    EXPECT_EQ(decimalNumber("4.9406564584124654e-324"), std::numeric_limits<double>::denorm_min());
    EXPECT_FALSE(decimalNumber("1e309"));
    EXPECT_FALSE(decimalNumber("-1e309"));
    EXPECT_FALSE(decimalNumber(std::string(400, '9')));
    EXPECT_EQ(decimalNumber("1e-400"), 0.0);
    EXPECT_EQ(decimalNumber("-1e-400"), 0.0);
    EXPECT_EQ(decimalNumber("0." + std::string(400, '0') + "1"), 0.0);
}

TEST(DecimalNumber, theDecimalSignIsAPointWhateverTheLocale) {
    // The C library's locale, which `strtod` would follow; where it isn't installed the check
    // runs in the one there is.
    const std::string before = std::setlocale(LC_NUMERIC, nullptr);
    std::setlocale(LC_NUMERIC, "de_DE.UTF-8");
    EXPECT_EQ(decimalNumber("1.5"), 1.5);
    EXPECT_EQ(decimalNumber("1.5e-400"), 0.0);
    EXPECT_FALSE(decimalNumber("1,5"));
    std::setlocale(LC_NUMERIC, before.c_str());
}

RC_GTEST_PROP(DecimalNumberLaws, everyFiniteNumberComesBackFromItsShortestForm, (double value)) {
    RC_PRE(std::isfinite(value));
    RC_ASSERT(decimalNumber(fmt::format("{}", value)) == value);
}

}  // namespace DecimalNumberTests
}  // namespace TarvaneKit
