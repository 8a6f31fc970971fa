// Two lists entry by entry: a fast computation against the plain reading of its formula.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <ranges>

namespace TarvaneKit::Testing {

/// Whether the lists are as long as each other and no two entries further apart than `tolerance`;
/// if not, it names the first place. NaN is near nothing.
template <std::ranges::random_access_range Actual, std::ranges::random_access_range Expected>
testing::AssertionResult allNear(const Actual& actual, const Expected& expected, double tolerance) {
    const auto count = std::ranges::ssize(actual);
    if (count != std::ranges::ssize(expected)) {
        return testing::AssertionFailure()
               << count << " entries instead of " << std::ranges::ssize(expected);
    }
    for (std::ptrdiff_t i = 0; i < count; ++i) {
        const auto a = static_cast<double>(std::ranges::begin(actual)[i]);
        const auto e = static_cast<double>(std::ranges::begin(expected)[i]);
        if (a != e && !(std::abs(a - e) <= tolerance)) {
            return testing::AssertionFailure() << "entry " << i << " is " << a << " instead of "
                                               << e << ", apart by " << std::abs(a - e);
        }
    }
    return testing::AssertionSuccess();
}

}  // namespace TarvaneKit::Testing
