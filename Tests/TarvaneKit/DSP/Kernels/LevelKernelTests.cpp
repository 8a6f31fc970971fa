#include "DSP/Kernels/LevelKernel.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <numbers>
#include <random>
#include <span>
#include <vector>

#include "Support/EachVectorTarget.h"

namespace TarvaneKit {
namespace LevelKernelTests {

using Doubles = std::vector<double>;
using Floats = std::vector<float>;
using DoubleLimits = std::numeric_limits<double>;
using FloatLimits = std::numeric_limits<float>;

constexpr LevelFloor smallestNormal{.power = DoubleLimits::min(), .levelDB = -3076.5};

class LevelKernel : public Testing::EachVectorTarget {
  protected:
    // Enough for several whole vectors and any rest.
    static constexpr int longest = 70;

    Doubles doubles(int count, double low, double high) {
        std::uniform_real_distribution<double> value(low, high);
        Doubles values(static_cast<std::size_t>(count));
        std::ranges::generate(values, [&] { return value(random_); });
        return values;
    }
    Floats floats(int count, double low, double high) {
        const Doubles values = doubles(count, low, high);
        return {values.begin(), values.end()};
    }

    // As many of the values as `out` has room for.
    template <class T, class Out>
    static std::span<const T> first(const std::vector<T>& values, std::span<Out> out) {
        return std::span(values).first(out.size());
    }

    // Lists of every length, written to a place with one value more behind it.
    template <class T>
    static void expectWrites(const std::function<void(std::span<T> out)>& write,
                             const std::function<T(std::size_t i)>& expected, int count) {
        constexpr T behind = 12345;
        std::vector<T> out(static_cast<std::size_t>(count) + 1, behind);
        write(std::span(out).first(static_cast<std::size_t>(count)));
        for (std::size_t i = 0; i + 1 < out.size(); ++i) {
            ASSERT_EQ(out[i], expected(i)) << i << " of " << count;
        }
        ASSERT_EQ(out.back(), behind) << "nothing is written behind " << count;
    }

    std::mt19937_64 random_{7};
};

// Against the extended format's logarithm, in proportion to it.
void expectLogarithms(const Doubles& powers) {
    Doubles levels(powers.size());
    levelsOfPowers(powers, smallestNormal, levels);
    for (std::size_t i = 0; i < powers.size(); ++i) {
        if (powers[i] <= smallestNormal.power) {
            continue;
        }
        const long double exact = 10.0L * std::log10(static_cast<long double>(powers[i]));
        const long double error = std::abs(static_cast<long double>(levels[i]) - exact);
        ASSERT_LE(error, 8e-16L * std::abs(exact)) << std::hexfloat << powers[i];
    }
}

TEST_P(LevelKernel, aLevelIsItsPowersLogarithmOverAllNumbers) {
    Doubles powers;
    for (int i = 0; i < 400000; ++i) {
        const double power = std::bit_cast<double>(random_() >> 1);
        powers.push_back(std::isnormal(power) ? power : 1.0);
    }
    expectLogarithms(powers);
}

// Where the exponent changes, where the mantissa changes it (at the roots of 2), and about 1,
// where the level goes through 0: each with its neighbours to both sides.
TEST_P(LevelKernel, aLevelIsItsPowersLogarithmWhereTheNumbersPartsChange) {
    Doubles powers;
    for (int exponent = -1021; exponent <= 1023; ++exponent) {
        for (const double mantissa : {1.0, std::numbers::sqrt2, 1.0 / std::numbers::sqrt2}) {
            double above = std::ldexp(mantissa, exponent);
            double below = above;
            for (int step = 0; step < 4; ++step) {
                powers.push_back(above);
                powers.push_back(below);
                above = std::nextafter(above, DoubleLimits::max());
                below = std::nextafter(below, 0.0);
            }
        }
    }
    for (int bit = 1; bit <= 53; ++bit) {
        powers.push_back(1.0 + std::ldexp(1.0, -bit));
        powers.push_back(1.0 - std::ldexp(1.0, -bit));
    }
    powers.push_back(DoubleLimits::max());
    expectLogarithms(powers);
}

TEST_P(LevelKernel, aPowerOf1IsExactly0DB) {
    for (int count = 1; count < longest; ++count) {
        Doubles values(static_cast<std::size_t>(count), 1.0);
        levelsOfPowers(values, smallestNormal, values);
        ASSERT_EQ(values, Doubles(values.size(), 0.0));
    }
}

TEST_P(LevelKernel, aLevelRisesWithItsPower) {
    Doubles powers = doubles(100000, 0.25, 4.0);
    std::ranges::sort(powers);
    Doubles levels(powers.size());
    levelsOfPowers(powers, smallestNormal, levels);
    // To within the error of either.
    for (std::size_t i = 1; i < levels.size(); ++i) {
        ASSERT_GE(levels[i], levels[i - 1] - 8e-16 * std::abs(levels[i]));
    }
}

TEST_P(LevelKernel, whatIsNotAboveTheFloorReadsItExactly) {
    constexpr LevelFloor floor{.power = 1e-24, .levelDB = -240.0};
    const Doubles low{1e-24, 1e-25, DoubleLimits::denorm_min(), 0.0,
                      -0.0,  -1.0,  DoubleLimits::quiet_NaN(),  -DoubleLimits::infinity()};
    for (int count = 0; count < longest; ++count) {
        expectWrites<double>(
            [&](std::span<double> out) {
                Doubles powers(out.size());
                for (std::size_t i = 0; i < powers.size(); ++i) {
                    powers[i] = i % 3 == 1 ? 1.0 : low[i % low.size()];
                }
                levelsOfPowers(powers, floor, out);
            },
            [](std::size_t i) { return i % 3 == 1 ? 0.0 : -240.0; }, count);
    }
    const double above = std::nextafter(1e-24, 1.0);
    double level = 0.0;
    levelsOfPowers({&above, 1}, floor, {&level, 1});
    EXPECT_NEAR(level, -240.0, 1e-12);
}

TEST_P(LevelKernel, aPowerIsItsLevelsExponentialAtAnyLevel) {
    for (const double range : {1.6, 10.0, 240.0, 3070.0}) {
        const Doubles levels = doubles(50000, -range, range);
        Doubles powers(levels.size());
        powersOfLevels(levels, powers);
        for (std::size_t i = 0; i < levels.size(); ++i) {
            const long double exact = std::pow(10.0L, static_cast<long double>(levels[i]) / 10.0L);
            const long double error = std::abs(static_cast<long double>(powers[i]) - exact);
            ASSERT_LE(error, 5e-16L * exact) << levels[i];
        }
    }
}

TEST_P(LevelKernel, aLevelBeyondAllPowersReadsThatOfTheEnds) {
    const Doubles levels{-3070.0, -3071.0, -DoubleLimits::infinity(), DoubleLimits::quiet_NaN(),
                         3080.0,  3081.0,  DoubleLimits::infinity(),  0.0};
    for (int count = 0; count <= 8; ++count) {
        expectWrites<double>(
            [&](std::span<double> out) {
                powersOfLevels(std::span(levels).first(out.size()), out);
                for (std::size_t i = 0; i < out.size() && i < 7; ++i) {
                    const double end = i < 4 ? 1e-307 : 1e308;
                    EXPECT_NEAR(out[i] / end, 1.0, 1e-15) << levels[i];
                    out[i] = static_cast<double>(i);
                }
            },
            [](std::size_t i) { return i < 7 ? static_cast<double>(i) : 1.0; }, count);
    }
}

TEST_P(LevelKernel, aSquaredAmplitudeIsRaisedToTheFloor) {
    Floats amplitudes = floats(longest, -2.0, 2.0);
    amplitudes[0] = FloatLimits::quiet_NaN();
    amplitudes[1] = FloatLimits::denorm_min();
    amplitudes[2] = FloatLimits::max();
    amplitudes[17] = 0.0F;
    for (int count = 0; count <= longest; ++count) {
        expectWrites<double>(
            [&](std::span<double> out) { squareAmplitudes(first(amplitudes, out), 1e-18, out); },
            [&](std::size_t i) {
                const auto amplitude = static_cast<double>(amplitudes[i]);
                return amplitude * amplitude > 1e-18 ? amplitude * amplitude : 1e-18;
            },
            count);
    }
}

TEST_P(LevelKernel, sumsAndProductsAreThoseOfTheEntries) {
    const Doubles a = doubles(longest, -100.0, 100.0);
    const Doubles b = doubles(longest, -100.0, 100.0);
    for (int count = 0; count <= longest; ++count) {
        expectWrites<double>([&](std::span<double> out) { add(first(a, out), first(b, out), out); },
                             [&](std::size_t i) { return a[i] + b[i]; }, count);
        expectWrites<double>(
            [&](std::span<double> out) { multiply(first(a, out), first(b, out), out); },
            [&](std::size_t i) { return a[i] * b[i]; }, count);
    }
    Doubles inPlace = a;
    add(inPlace, b, inPlace);
    EXPECT_EQ(inPlace[longest - 1], a[longest - 1] + b[longest - 1]);
}

TEST_P(LevelKernel, aProductThatIsNoNumberCountsAs0AndEndsAtTheLargest) {
    Floats a = floats(longest, 0.0, 2.0);
    Floats b = floats(longest, 0.0, 2.0);
    a[3] = FloatLimits::infinity();
    b[3] = 0.0F;
    a[4] = FloatLimits::max();
    b[4] = 2.0F;
    a[19] = FloatLimits::quiet_NaN();
    b[20] = FloatLimits::infinity();
    for (int count = 0; count <= longest; ++count) {
        expectWrites<float>(
            [&](std::span<float> out) { multiplyFinite(first(a, out), first(b, out), out); },
            [&](std::size_t i) {
                const float product = a[i] * b[i];
                return std::isnan(product) ? 0.0F : std::min(product, FloatLimits::max());
            },
            count);
        for (const float factor : {0.3F, 1e30F, FloatLimits::infinity()}) {
            const Floats factors(static_cast<std::size_t>(count), factor);
            Floats expected(factors.size());
            multiplyFinite(std::span(a).first(factors.size()), factors, expected);
            expectWrites<float>(
                [&](std::span<float> out) { scaleFinite(first(a, out), factor, out); },
                [&](std::size_t i) { return expected[i]; }, count);
        }
    }
}

// In 32 bits, in this order: rounded after each step.
TEST_P(LevelKernel, twoSidesCombineToTheirRootMeanSquare) {
    const Floats a = floats(longest, 0.0, 2.0);
    const Floats b = floats(longest, 0.0, 2.0);
    for (int count = 0; count <= longest; ++count) {
        expectWrites<float>(
            [&](std::span<float> out) { rootMeanSquare(first(a, out), first(b, out), out); },
            [&](std::size_t i) { return std::sqrt(a[i] * a[i] + b[i] * b[i]) * 0.70710677F; },
            count);
    }
    Floats equal(9, 0.25F);
    rootMeanSquare(equal, equal, equal);
    EXPECT_FLOAT_EQ(equal[8], 0.25F);
}

// Fused or not, by a rounding of the larger term.
TEST_P(LevelKernel, anAverageGoesItsShareOfTheWay) {
    const Doubles values = doubles(longest, -100.0, 100.0);
    const Doubles before = doubles(longest, -100.0, 100.0);
    for (int count = 0; count <= longest; ++count) {
        Doubles one = before;
        Doubles two = before;
        const auto written = static_cast<std::size_t>(count);
        moveTowards(std::span(values).first(written), 0.3, std::span(one).first(written));
        followLevels(std::span(values).first(written), 0.7, 0.2, std::span(two).first(written));
        for (std::size_t i = 0; i < before.size(); ++i) {
            const bool isWritten = i < written;
            const double way = isWritten ? values[i] - before[i] : 0.0;
            ASSERT_NEAR(one[i], before[i] + 0.3 * way, 1e-13);
            ASSERT_NEAR(two[i], before[i] + (way >= 0.0 ? 0.7 : 0.2) * way, 1e-13);
        }
    }
}

TEST_P(LevelKernel, aHeldLevelTakesWhatIsAboveItAndFallsOtherwise) {
    Doubles values = doubles(longest, -100.0, 0.0);
    const Doubles before = doubles(longest, -100.0, 0.0);
    values[5] = before[5];  // not above: falls
    values[23] = before[23];
    for (int count = 0; count <= longest; ++count) {
        Doubles held = before;
        const auto written = static_cast<std::size_t>(count);
        holdLevels(std::span(values).first(written), 0.1, std::span(held).first(written));
        for (std::size_t i = 0; i < before.size(); ++i) {
            const double fallen = before[i] < values[i] ? values[i] : before[i] - 0.1;
            ASSERT_EQ(held[i], i < written ? fallen : before[i]);
        }
    }
}

TARVANE_ON_EACH_VECTOR_TARGET(LevelKernel);

}  // namespace LevelKernelTests
}  // namespace TarvaneKit
