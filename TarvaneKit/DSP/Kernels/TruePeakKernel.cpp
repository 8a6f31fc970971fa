// How the largest interpolated value is found without computing them all in 64 bits.
//
// With c the taps of a phase, T of them, and x the samples, an interpolated value is
//
//     a = sum over j = 0..T-1, in this order, of c[j] x[n-j]
//
// in 64-bit floats, each product rounded before it is added. Of all of them only the largest
// magnitude M counts, and M starts at the largest sample (or at what the caller holds already).
// Three sieves, each of which lets through every value that could exceed M:
//
// 1. The bound. |a| <= L X, with L the largest sum over a phase of |c[j]| and X the largest
//    magnitude under the taps. A stretch of samples with L X <= M is passed over. L is taken a
//    little larger, for the rounding of a itself: T products and sums err by (T+1) 2^-53 of L X.
//
// 2. The search, in 32-bit floats. Phases 1 and 3 of a filter of even T are each other's mirror
//    image, and phase 2 is its own. So with e = x[n-j] + x[n-T+1+j], o the difference of the two,
//
//        (a1 + a3) / 2 = sum over j < T/2 of (c1[j] + c1[T-1-j]) / 2  e
//        (a1 - a3) / 2 = sum over j < T/2 of (c1[j] - c1[T-1-j]) / 2  o
//        a2            = sum over j < T/2 of c2[j]  e
//        max(|a1|, |a3|) = |a1 + a3| / 2 + |a1 - a3| / 2
//
//    which halves the multiplications. The error: with u = 2^-24, a term passes through the
//    coefficient's rounding, that of e or o, its own and at most T/2 sums, T/2 + 3 <= 19 in all,
//    so each of the first two sums is off by at most 19 u / (1 - 19 u) times the sum of the
//    magnitudes of its terms, which is at most L X; the last sum adds one rounding. Together at
//    most 2 * 20 u L X = 40 u L X, where 64 u L X is allowed, besides what a flushed denormal
//    may take: less than 2^-126 in each of at most 100 steps. What stays below M by that margin
//    can't exceed M. Everything else, also what overflows or isn't a number, is a candidate.
//
// 3. The candidates, in 64-bit floats: lanes are successive samples, and each lane does the
//    products and sums above in their order, with no fused step. So what M is raised to is the
//    plain reading's value, bit for bit, and since no larger one was passed over, so is the
//    result.

#include "DSP/Kernels/TruePeakKernel.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>

#include "Core/Contract.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "DSP/Kernels/TruePeakKernel.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#ifndef TARVANE_TRUE_PEAK_KERNEL_ONCE
#define TARVANE_TRUE_PEAK_KERNEL_ONCE
namespace TarvaneKit {

// The samples that are passed over or searched together; all that a search reads of the past.
constexpr int peakStretch = 32;
constexpr int maxPeakHistory = TruePeakTable::maxTapsPerPhase;
constexpr int maxPeakChunk = 512;
static_assert(maxPeakHistory % peakStretch == 0 && maxPeakChunk % peakStretch == 0);

constexpr double floatUnit = 1.0 / (1 << 24);  // u
constexpr double searchError = 64.0 * floatUnit;
constexpr double flushedError = 100.0 * std::numeric_limits<float>::min();

// A run of samples with its past in front and zeros behind, up to a whole stretch.
struct PeakWindow {
    const float* at(int sample) const { return samples.data() + maxPeakHistory + sample; }
    float* at(int sample) { return samples.data() + maxPeakHistory + sample; }

    alignas(64) std::array<float, maxPeakHistory + maxPeakChunk> samples;
    int length;
};

// A finite float not above `value`.
inline float floatAtMost(double value) {
    constexpr double smallest = std::numeric_limits<float>::min();
    constexpr double largest = std::numeric_limits<float>::max();
    return static_cast<float>(
        std::min(value - std::abs(value) * 2.0 * floatUnit - smallest, largest));
}

}  // namespace TarvaneKit
#endif

HWY_BEFORE_NAMESPACE();
namespace TarvaneKit {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

using PeakFloats = hn::CappedTag<float, 16>;
using PeakDoubles = hn::CappedTag<double, 8>;
constexpr int floatLanes = static_cast<int>(hn::MaxLanes(PeakFloats()));
constexpr int doubleLanes = static_cast<int>(hn::MaxLanes(PeakDoubles()));

float largestMagnitude(const float* samples, int count) {
    const PeakFloats d;
    const hn::CappedTag<float, 1> one;
    auto a = hn::Zero(d);
    auto b = hn::Zero(d);
    auto rest = hn::Zero(one);
    int i = 0;
    for (; i + 2 * floatLanes <= count; i += 2 * floatLanes) {
        a = hn::Max(a, hn::Abs(hn::LoadU(d, samples + i)));
        b = hn::Max(b, hn::Abs(hn::LoadU(d, samples + i + floatLanes)));
    }
    for (; i < count; ++i) {
        rest = hn::Max(rest, hn::Abs(hn::LoadU(one, samples + i)));
    }
    return std::max(hn::GetLane(hn::MaxOfLanes(d, hn::Max(a, b))), hn::GetLane(rest));
}

// The first sieve: whether everything under the taps of a stretch is at most `limit`.
HWY_INLINE bool stretchIsAtMost(float limit, const PeakWindow& window, int first) {
    const PeakFloats d;
    auto largest = hn::Zero(d);
    for (int i = -peakStretch; i < peakStretch; i += floatLanes) {
        largest = hn::Max(largest, hn::Abs(hn::Load(d, window.at(first + i))));
    }
    return hn::AllTrue(d, hn::Le(largest, hn::Set(d, limit)));
}

// The second sieve over two vectors of samples from `x` on: bit 0 and bit 1 say whether the first
// and the second vector hold a value that isn't at most `limit`.
template <int factor>
HWY_NOINLINE unsigned candidates(const TruePeakTable& table, const float* x, float limit) {
    const PeakFloats d;
    auto sumA = hn::Zero(d);
    auto sumB = hn::Zero(d);
    auto differenceA = hn::Zero(d);
    auto differenceB = hn::Zero(d);
    auto middleA = hn::Zero(d);
    auto middleB = hn::Zero(d);
    const float* HWY_RESTRICT c = table.foldedCoefficients.data();
    const float* newer = x;
    const float* older = x - (table.tapsPerPhase - 1);
    for (int pairs = table.tapsPerPhase / 2; pairs > 0; --pairs) {
        const auto newerA = hn::LoadU(d, newer);
        const auto newerB = hn::LoadU(d, newer + floatLanes);
        const auto olderA = hn::LoadU(d, older);
        const auto olderB = hn::LoadU(d, older + floatLanes);
        const auto evenA = hn::Add(newerA, olderA);
        const auto evenB = hn::Add(newerB, olderB);
        const auto c2 = hn::Set(d, c[0]);
        middleA = hn::MulAdd(c2, evenA, middleA);
        middleB = hn::MulAdd(c2, evenB, middleB);
        if constexpr (factor == 4) {
            const auto half1 = hn::Set(d, c[1]);
            const auto half3 = hn::Set(d, c[2]);
            sumA = hn::MulAdd(half1, evenA, sumA);
            sumB = hn::MulAdd(half1, evenB, sumB);
            differenceA = hn::MulAdd(half3, hn::Sub(newerA, olderA), differenceA);
            differenceB = hn::MulAdd(half3, hn::Sub(newerB, olderB), differenceB);
        }
        c += factor - 1;
        --newer;
        ++older;
    }
    const auto t = hn::Set(d, limit);
    const auto outerA = hn::Add(hn::Abs(sumA), hn::Abs(differenceA));
    const auto outerB = hn::Add(hn::Abs(sumB), hn::Abs(differenceB));
    // Compared one by one: a maximum may lose what isn't a number.
    const auto belowA = hn::And(hn::Le(outerA, t), hn::Le(hn::Abs(middleA), t));
    const auto belowB = hn::And(hn::Le(outerB, t), hn::Le(hn::Abs(middleB), t));
    return (hn::AllTrue(d, belowA) ? 0U : 1U) | (hn::AllTrue(d, belowB) ? 0U : 2U);
}

// The third sieve for the samples from `first` on, as many as there are lanes or left in the run.
template <int factor>
HWY_NOINLINE double exactPeak(const TruePeakTable& table, const PeakWindow& window, int first) {
    const PeakDoubles d;
    const hn::Rebind<float, PeakDoubles> floats;
    const int taps = table.tapsPerPhase;
    const double* c = table.coefficients.data() + taps;
    auto a1 = hn::Zero(d);
    auto a2 = hn::Zero(d);
    auto a3 = hn::Zero(d);
    for (int j = 0; j < taps; ++j) {
        const auto x = hn::PromoteTo(d, hn::LoadU(floats, window.at(first - j)));
        a1 = hn::Add(a1, hn::Mul(hn::Set(d, c[j]), x));
        if constexpr (factor == 4) {
            a2 = hn::Add(a2, hn::Mul(hn::Set(d, c[taps + j]), x));
            a3 = hn::Add(a3, hn::Mul(hn::Set(d, c[2 * taps + j]), x));
        }
    }
    const auto largest = hn::Max(hn::Abs(a1), hn::Max(hn::Abs(a2), hn::Abs(a3)));
    const auto inRun = hn::FirstN(d, static_cast<std::size_t>(window.length - first));
    return hn::GetLane(hn::MaxOfLanes(d, hn::IfThenElseZero(inRun, largest)));
}

template <int factor>
HWY_NOINLINE double exactPeakOfRange(const TruePeakTable& table, const PeakWindow& window,
                                     int first, int end, double peak) {
    end = std::min(end, window.length);
    for (; first < end; first += doubleLanes) {
        peak = std::max(peak, exactPeak<factor>(table, window, first));
    }
    return peak;
}

// `loudest` is the largest magnitude in the window, `peak` the largest known value so far.
template <int factor>
HWY_NOINLINE double searchedPeak(const TruePeakTable& table, const PeakWindow& window,
                                 double loudest, double peak) {
    const double margin = searchError * table.gainBound * loudest + flushedError;
    float passOver = floatAtMost(peak / table.gainBound);
    float limit = floatAtMost(peak - margin);
    for (int stretch = 0; stretch < window.length; stretch += peakStretch) {
        if (stretchIsAtMost(passOver, window, stretch)) {
            continue;
        }
        for (int first = stretch; first < stretch + peakStretch; first += 2 * floatLanes) {
            const unsigned found = candidates<factor>(table, window.at(first), limit);
            if (found == 0) {
                continue;
            }
            const int begin = (found & 1U) != 0 ? first : first + floatLanes;
            const int end = (found & 2U) != 0 ? first + 2 * floatLanes : first + floatLanes;
            peak = exactPeakOfRange<factor>(table, window, begin, end, peak);
            passOver = floatAtMost(peak / table.gainBound);
            limit = floatAtMost(peak - margin);
        }
    }
    return peak;
}

template <int factor>
HWY_NOINLINE double interpolatedPeak(const TruePeakTable& table, const float* samples, int count,
                                     const float* history, double loudest, double peak) {
    PeakWindow window;
    window.length = count;
    std::copy_n(history, table.historyLength, window.at(-table.historyLength));
    float* end = std::copy_n(samples, count, window.at(0));
    std::fill_n(end, (peakStretch - count % peakStretch) % peakStretch, 0.0F);
    return table.foldedCoefficients.empty()
               ? exactPeakOfRange<factor>(table, window, 0, count, peak)
               : searchedPeak<factor>(table, window, loudest, peak);
}

double peakOfChunkOnTarget(const TruePeakTable& table, const float* samples, int count,
                           const float* history, double peak) {
    const double ownLoudest = static_cast<double>(largestMagnitude(samples, count));
    peak = std::max(peak, ownLoudest);
    if (table.oversamplingFactor == 1) {
        return peak;
    }
    const double loudest =
        std::max(ownLoudest, static_cast<double>(largestMagnitude(history, table.historyLength)));
    if (loudest * table.gainBound <= peak) {
        return peak;
    }
    return table.oversamplingFactor == 4
               ? interpolatedPeak<4>(table, samples, count, history, loudest, peak)
               : interpolatedPeak<2>(table, samples, count, history, loudest, peak);
}

}  // namespace HWY_NAMESPACE
}  // namespace TarvaneKit
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace TarvaneKit {

HWY_EXPORT(peakOfChunkOnTarget);

double largestTruePeak(const TruePeakTable& table, std::span<const float> samples,
                       std::span<float> history, double floor) {
    double peak = floor;
    while (!samples.empty()) {
        const auto chunk =
            samples.first(std::min(samples.size(), static_cast<std::size_t>(maxPeakChunk)));
        peak = HWY_DYNAMIC_DISPATCH(peakOfChunkOnTarget)(
            table, chunk.data(), static_cast<int>(chunk.size()), history.data(), peak);
        const std::size_t taken = std::min(chunk.size(), history.size());
        std::shift_left(history.begin(), history.end(), static_cast<std::ptrdiff_t>(taken));
        std::ranges::copy(chunk.last(taken), history.end() - static_cast<std::ptrdiff_t>(taken));
        samples = samples.subspan(chunk.size());
    }
    return peak;
}

TruePeakTable::TruePeakTable(int oversampling, int taps, std::vector<double> phases)
    : oversamplingFactor(oversampling), tapsPerPhase(taps), coefficients(std::move(phases)) {
    TARVANE_PRECONDITION(oversampling == 1 || oversampling == 2 || oversampling == 4);
    TARVANE_PRECONDITION(taps >= 1 && taps <= maxTapsPerPhase);
    TARVANE_PRECONDITION(std::ssize(coefficients) == std::ptrdiff_t{oversampling} * taps);
    const auto tap = [&](int phase, int j) {
        const int index = phase * taps + j;
        return coefficients[static_cast<std::size_t>(index)];
    };
    for (int phase = 1; phase < oversampling; ++phase) {
        double gain = 0.0;
        for (int j = 0; j < taps; ++j) {
            gain += std::abs(tap(phase, j));
        }
        gainBound = std::max(gainBound, gain * (1.0 + 1e-12));
    }
    if (oversampling > 1) {
        historyLength = (taps - 1 + peakStretch - 1) / peakStretch * peakStretch;
    }
    if (oversampling == 1 || taps % 2 != 0 || taps > peakStretch) {
        return;
    }
    for (int j = 0; j < taps / 2; ++j) {
        const double first = tap(1, j);
        const double mirrored = tap(1, taps - 1 - j);
        if (oversampling == 2) {
            foldedCoefficients.push_back(static_cast<float>(first));
        } else {
            foldedCoefficients.push_back(static_cast<float>(tap(2, j)));
            foldedCoefficients.push_back(static_cast<float>(0.5 * (first + mirrored)));
            foldedCoefficients.push_back(static_cast<float>(0.5 * (first - mirrored)));
        }
    }
}

}  // namespace TarvaneKit
#endif  // HWY_ONCE
