// The minimum requirements of EBU Tech 3341 (2016), table 1, and EBU Tech 3342 (2016), table 1:
// what is fed, and what a meter reads. A tone of 1 kHz in phase in all channels that have it,
// levels in dBFS of its peak.
#pragma once

#include <array>
#include <limits>
#include <vector>

namespace TarvaneKit::Testing {

struct ProgrammePart {
    double peakDB;  // minus infinity: silence
    double seconds;
};
using Programme = std::vector<ProgrammePart>;

inline constexpr double silent = -std::numeric_limits<double>::infinity();
inline constexpr double loudnessToleranceLU = 0.1;
inline constexpr double truePeakAbove = 0.2;
inline constexpr double truePeakBelow = -0.4;
inline constexpr double rangeToleranceLU = 1.0;

/// Cases 10, 11, 13 and 14 come in this many segments.
inline constexpr int segmentCount = 20;

inline Programme repeated(const Programme& parts, int times) {
    Programme all;
    for (int i = 0; i < times; ++i) {
        all.insert(all.end(), parts.begin(), parts.end());
    }
    return all;
}

/// Cases 1 to 5, whose integrated loudness is what is asked for; of 1 and 2 momentary and
/// short-term too.
struct IntegratedCase {
    int number;
    Programme programme;
    double loudness;  // LUFS
};

inline std::vector<IntegratedCase> integratedCases() {
    return {{1, {{-23, 20}}, -23},
            {2, {{-33, 20}}, -33},
            {3, {{-36, 10}, {-23, 60}, {-36, 10}}, -23},
            {4, {{-72, 10}, {-36, 10}, {-23, 60}, {-36, 10}, {-72, 10}}, -23},
            {5, {{-26, 20}, {-20, 20.1}, {-26, 20}}, -23}};
}

/// Case 6: five channels, with the weights of BS.1770 (table 3), 20 s; -23 LUFS.
struct SurroundChannel {
    double peakDB;
    double weight;
};
inline constexpr std::array surroundCase{SurroundChannel{-28, 1.0}, SurroundChannel{-28, 1.0},
                                         SurroundChannel{-24, 1.0}, SurroundChannel{-30, 1.41},
                                         SurroundChannel{-30, 1.41}};

/// Case 9: short-term reads -23 LUFS all the time once 3 s are over.
inline Programme constantShortTerm() {
    return repeated({{-20, 1.34}, {-30, 1.66}}, 5);
}
/// Case 12: momentary reads -23 LUFS all the time once 1 s is over.
inline Programme constantMomentary() {
    return repeated({{-20, 0.18}, {-30, 0.22}}, 25);
}

/// Case 10: the largest short-term loudness of each segment is -23 LUFS.
inline Programme shortTermSegment(int i) {
    return {{silent, 0.15 * i}, {-23, 3}, {silent, 1}};
}
/// Case 13: the largest momentary loudness of each segment is -23 LUFS.
inline Programme momentarySegment(int i) {
    return {{silent, 0.02 * i}, {-23, 0.4}, {silent, 1}};
}

/// Cases 11 and 14: the segments follow each other in one programme, and the largest value so far
/// is, after each of them, its level.
constexpr double risingLevel(int i) {
    return -38.0 + i;
}
inline Programme risingShortTermSegment(int i) {
    return {{silent, 0.15 * i}, {risingLevel(i), 3}, {silent, 3 - 0.15 * i}};
}
inline Programme risingMomentarySegment(int i) {
    return {{silent, 0.02 * i}, {risingLevel(i), 0.4}, {silent, 0.4 - 0.02 * i}};
}

/// Cases 15 to 19: a tone of so many samples per period.
struct TruePeakCase {
    int number;
    double samplesPerPeriod;
    double amplitude;
    double phaseDegrees;
    double expectedDB;
};
inline constexpr std::array truePeakCases{
    TruePeakCase{15, 4, 0.50, 0, -6}, TruePeakCase{16, 4, 0.50, 45, -6},
    TruePeakCase{17, 6, 0.50, 60, -6}, TruePeakCase{18, 8, 0.50, 67.5, -6},
    TruePeakCase{19, 4, 1.41, 45, 3}};

/// Tech 3342, cases 1 to 4.
struct RangeCase {
    int number;
    Programme programme;
    double rangeLU;
};
inline std::vector<RangeCase> rangeCases() {
    return {{1, {{-20, 20}, {-30, 20}}, 10},
            {2, {{-20, 20}, {-15, 20}}, 5},
            {3, {{-40, 20}, {-20, 20}}, 20},
            {4, {{-50, 20}, {-35, 20}, {-20, 20}, {-35, 20}, {-50, 20}}, 15}};
}

}  // namespace TarvaneKit::Testing
