// IEC 61672-1:2013, class 1: what a sound level meter does with bursts, single cycles and a tone
// that stops, with the acceptance limits. Levels in dB.
#pragma once

#include <array>
#include <cmath>
#include <optional>

namespace TarvaneKit::Testing {

struct AcceptanceLimits {
    double upper, lower;  // about the goal
};

/// 5.9, table 4: one burst of 4 kHz, re the steady level. The sound exposure has the limits of
/// Fast.
struct ClassOneBurst {
    double milliseconds;
    double fastGoal, soundExposureGoal;
    AcceptanceLimits fast;
    std::optional<double> slowGoal;
    AcceptanceLimits slow;
};

inline constexpr double burstFrequencyHz = 4000.0;

inline constexpr std::array classOneBursts{
    ClassOneBurst{1000.0, 0.0, 0.0, {0.5, -0.5}, -2.0, {0.5, -0.5}},
    ClassOneBurst{500.0, -0.1, -3.0, {0.5, -0.5}, -4.1, {0.5, -0.5}},
    ClassOneBurst{200.0, -1.0, -7.0, {0.5, -0.5}, -7.4, {0.5, -0.5}},
    ClassOneBurst{100.0, -2.6, -10.0, {1.0, -1.0}, -10.2, {1.0, -1.0}},
    ClassOneBurst{50.0, -4.8, -13.0, {1.0, -1.0}, -13.1, {1.0, -1.0}},
    ClassOneBurst{20.0, -8.3, -17.0, {1.0, -1.0}, -17.0, {1.0, -1.5}},
    ClassOneBurst{10.0, -11.1, -20.0, {1.0, -1.0}, -20.0, {1.0, -2.0}},
    ClassOneBurst{5.0, -14.1, -23.0, {1.0, -1.0}, -23.0, {1.0, -2.5}},
    ClassOneBurst{2.0, -18.0, -27.0, {1.0, -1.5}, -27.0, {1.0, -3.0}},
    ClassOneBurst{1.0, -21.0, -30.0, {1.0, -2.0}, std::nullopt, {}},
    ClassOneBurst{0.5, -24.0, -33.0, {1.0, -2.5}, std::nullopt, {}},
    ClassOneBurst{0.25, -27.0, -36.0, {1.0, -3.0}, std::nullopt, {}},
};

/// 5.9, formula (7): the largest level of a burst, re the steady one.
inline double burstMaximumDB(double seconds, double timeConstantSeconds) {
    return 10.0 * std::log10(-std::expm1(-seconds / timeConstantSeconds));
}

/// 5.9, formula (8): its sound exposure level, re the steady level and 1 s.
inline double burstExposureDB(double seconds) {
    return 10.0 * std::log10(seconds);
}

/// 5.8.2: how fast a reading falls once a tone of 4 kHz has stopped, dB per second.
struct ClassOneDecay {
    double timeConstantSeconds;
    double goal;
    AcceptanceLimits limits;
};

inline constexpr ClassOneDecay fastDecay{0.125, 34.7, {3.8, -3.7}};
inline constexpr ClassOneDecay slowDecay{1.0, 4.3, {0.8, -0.7}};

/// 5.8.3: readings of a steady tone of 1 kHz under different averages.
inline constexpr double steadyReadingsLimit = 0.1;

/// 5.13, table 5: the C peak above the steady C level.
struct ClassOnePeak {
    double frequencyHz, cycles, goal, limit;
};

inline constexpr std::array classOnePeaks{
    ClassOnePeak{31.5, 1.0, 2.5, 2.0}, ClassOnePeak{500.0, 1.0, 3.5, 1.0},
    ClassOnePeak{8000.0, 1.0, 3.4, 2.0}, ClassOnePeak{500.0, 0.5, 2.4, 1.0}};

/// 5.6: over the range of levels, and of any change of 1 to 10 dB.
inline constexpr double linearityLimit = 0.8;
inline constexpr double levelChangeLimit = 0.3;

}  // namespace TarvaneKit::Testing
