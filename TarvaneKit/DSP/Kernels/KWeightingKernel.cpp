// How the K-weighting runs on a vector unit.
//
// The recursion. Both stages have a pair of poles close to z = 1 (the high-pass within 4e-4 at
// 384 kHz), where a direct form multiplies rounding errors by the inverse square of that distance.
// Written around (1-w), w for z^-1, the denominator is
//
//     1 + a1 w + a2 w^2 = (1-w)^2 + alpha w (1-w) + beta w^2,
//     alpha = 2 + a1,  beta = 1 + a1 + a2
//
// and likewise the numerator over b0. With v the recursion's signal, I its running sum up to the
// sample before and J the running sum of I,
//
//     t  = x - beta J                        v = t - alpha I
//     I <- I + v = t + (1 - alpha) I         J <- J + I
//     y  = x + (alphaN - alpha) I + (betaN - beta) J
//
// which is the same transfer function, digit for digit of its coefficients: a sum of such nearly
// equal numbers is exact. The small factors meet the large sums, so that an error stays in the
// size of the sample's own rounding. The high-pass has its numerator at (1-w)^2, thus y = v.
//
// The lanes. A recursion can't be spread over a vector along time. So a chunk of the run is cut
// into as many segments of equal length m as the vector has lanes, and lane k runs segment k. The
// filter being linear, the states at a segment's end are
//
//     S_end = T_m S_start + sum over j of r[j] x[m-1-j]
//
// with r[j] the states j samples after a single 1, and T_m the states' own decay over m samples,
// both tabulated per sample rate. So: one pass lays the chunk out in lanes and forms the sums for
// all segments at once, a short loop goes from segment to segment with T_m, and one pass filters.
// What doesn't fill the lanes, and runs too short to be worth it, go through a single lane.

#include "DSP/Kernels/KWeightingKernel.h"

#include <algorithm>
#include <cstddef>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "DSP/Kernels/KWeightingKernel.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "DSP/Kernels/SegmentLanes-inl.h"

HWY_BEFORE_NAMESPACE();
namespace TarvaneKit {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

// Below this many samples per segment the segments' start states cost more than they save.
constexpr int minKSegmentLength = 6;

constexpr int maxKChunkLength = segmentCount * KWeightingTables::maxSegmentLength;

// Runs every lane's filter over its segment. `samples` is [sample of the segment][lane], `start`
// [state][lane]; leaves the last lane's states at the end of its segment in `endStates`.
template <class D>
HWY_NOINLINE double filterSegments(D d, const KWeightingTables& tables, int segmentLength,
                                   const double* HWY_RESTRICT samples,
                                   const double* HWY_RESTRICT start, KWeightingStates& endStates) {
    const auto shelfBeta = hn::Set(d, tables.shelf.beta);
    const auto shelfKeep = hn::Set(d, tables.shelf.keep);
    const auto shelfOutI = hn::Set(d, tables.shelf.outSum);
    const auto shelfOutJ = hn::Set(d, tables.shelf.outDoubleSum);
    const auto highPassBeta = hn::Set(d, tables.highPass.beta);
    const auto highPassKeep = hn::Set(d, tables.highPass.keep);
    const auto highPassOutI = hn::Set(d, tables.highPass.outSum);
    auto shelfI = hn::Load(d, start + shelfSum * laneCount<D>);
    auto shelfJ = hn::Load(d, start + shelfDoubleSum * laneCount<D>);
    auto highPassI = hn::Load(d, start + highPassSum * laneCount<D>);
    auto highPassJ = hn::Load(d, start + highPassDoubleSum * laneCount<D>);
    auto sum = hn::Zero(d);
    for (int i = 0; i < segmentLength; ++i) {
        const auto x = hn::Load(d, samples + i * laneCount<D>);
        const auto u = hn::MulAdd(shelfOutI, shelfI, hn::MulAdd(shelfOutJ, shelfJ, x));
        const auto shelfT = hn::NegMulAdd(shelfBeta, shelfJ, x);
        shelfJ = hn::Add(shelfJ, shelfI);
        shelfI = hn::MulAdd(shelfKeep, shelfI, shelfT);

        const auto highPassT = hn::NegMulAdd(highPassBeta, highPassJ, u);
        const auto y = hn::MulAdd(highPassOutI, highPassI, highPassT);
        highPassJ = hn::Add(highPassJ, highPassI);
        highPassI = hn::MulAdd(highPassKeep, highPassI, highPassT);
        sum = hn::MulAdd(y, y, sum);
    }
    constexpr std::size_t last = laneCount<D> - 1;
    endStates = {hn::ExtractLane(shelfI, last), hn::ExtractLane(shelfJ, last),
                 hn::ExtractLane(highPassI, last), hn::ExtractLane(highPassJ, last)};
    return hn::GetLane(hn::SumOfLanes(d, sum));
}

#if HWY_TARGET != HWY_SCALAR

// Lays the samples out in lanes, and forms each segment's states at its end had it started from
// rest, [state][segment]: sum over j of r[j] x[m-1-j].
HWY_NOINLINE void spreadSegments(const KWeightingTables& tables, int segmentLength,
                                 const float* HWY_RESTRICT samples, double* HWY_RESTRICT spread,
                                 double* HWY_RESTRICT ends) {
    const SegmentLanes d;
    auto shelfI = hn::Zero(d);
    auto shelfJ = hn::Zero(d);
    auto highPassI = hn::Zero(d);
    auto highPassJ = hn::Zero(d);
    const double* r = tables.response[static_cast<std::size_t>(segmentLength - 1)].data();
    forEachSampleOfSegments(d, samples, segmentLength, [&](auto x, int i) HWY_ATTR {
        hn::Store(x, d, spread + i * segmentCount);
        shelfI = hn::MulAdd(hn::Set(d, r[shelfSum]), x, shelfI);
        shelfJ = hn::MulAdd(hn::Set(d, r[shelfDoubleSum]), x, shelfJ);
        highPassI = hn::MulAdd(hn::Set(d, r[highPassSum]), x, highPassI);
        highPassJ = hn::MulAdd(hn::Set(d, r[highPassDoubleSum]), x, highPassJ);
        r -= kWeightingStateCount;
    });
    hn::Store(shelfI, d, ends + shelfSum * segmentCount);
    hn::Store(shelfJ, d, ends + shelfDoubleSum * segmentCount);
    hn::Store(highPassI, d, ends + highPassSum * segmentCount);
    hn::Store(highPassJ, d, ends + highPassDoubleSum * segmentCount);
}

// S_end = T_m S_start + (end state from rest), from segment to segment.
HWY_NOINLINE void chainSegments(const KWeightingTables& tables, int segmentLength,
                                const KWeightingStates& first, const double* HWY_RESTRICT ends,
                                double* HWY_RESTRICT start) {
    const auto& t = tables.transition[static_cast<std::size_t>(segmentLength)];
    KWeightingStates s = first;
    for (int segment = 0; segment < segmentCount; ++segment) {
        const double* end = ends + segment;
        KWeightingStates next{};
        for (std::size_t to = 0; to < kWeightingStateCount; ++to) {
            start[to * segmentCount + static_cast<std::size_t>(segment)] = s[to];
            const double ownShelf =
                t[to][shelfSum] * s[shelfSum] + t[to][shelfDoubleSum] * s[shelfDoubleSum];
            const double ownHighPass = t[to][highPassSum] * s[highPassSum] +
                                       t[to][highPassDoubleSum] * s[highPassDoubleSum];
            next[to] = (end[to * segmentCount] + ownShelf) + ownHighPass;
        }
        s = next;
    }
}

double sumOfChunk(const KWeightingTables& tables, const float* samples, int segmentLength,
                  KWeightingStates& states) {
    HWY_ALIGN double spread[maxKChunkLength];
    HWY_ALIGN double ends[kWeightingStateCount * segmentCount];
    HWY_ALIGN double start[kWeightingStateCount * segmentCount];
    spreadSegments(tables, segmentLength, samples, spread, ends);
    chainSegments(tables, segmentLength, states, ends, start);
    return filterSegments(SegmentLanes(), tables, segmentLength, spread, start, states);
}

#endif  // HWY_SCALAR

double sumOfRest(const KWeightingTables& tables, const float* samples, int sampleCount,
                 KWeightingStates& states) {
    HWY_ALIGN double widened[KWeightingTables::maxSegmentLength];
    std::copy_n(samples, sampleCount, widened);
    HWY_ALIGN const KWeightingStates start = states;
    return filterSegments(OneLane(), tables, sampleCount, widened, start.data(), states);
}

double sumOfSquaresOnTarget(const KWeightingTables& tables, const float* samples, int sampleCount,
                            KWeightingStates& states) {
    double sum = 0.0;
    int done = 0;
#if HWY_TARGET != HWY_SCALAR
    while (sampleCount - done >= segmentCount * minKSegmentLength) {
        const int segmentLength = std::min(sampleCount - done, maxKChunkLength) / segmentCount;
        sum += sumOfChunk(tables, samples + done, segmentLength, states);
        done += segmentLength * segmentCount;
    }
#endif
    while (done < sampleCount) {
        const int count = std::min(sampleCount - done, KWeightingTables::maxSegmentLength);
        sum += sumOfRest(tables, samples + done, count, states);
        done += count;
    }
    return sum;
}

}  // namespace HWY_NAMESPACE
}  // namespace TarvaneKit
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace TarvaneKit {

HWY_EXPORT(sumOfSquaresOnTarget);

double kWeightedSumOfSquares(const KWeightingTables& tables, std::span<const float> samples,
                             KWeightingStates& states) {
    return HWY_DYNAMIC_DISPATCH(sumOfSquaresOnTarget)(tables, samples.data(),
                                                      static_cast<int>(samples.size()), states);
}

double kWeightSample(const KWeightingTables& tables, double sample, KWeightingStates& states) {
    const auto through = [&states](const SummingSection& section, double x, std::size_t sum,
                                   std::size_t doubleSum) {
        const double i = states[sum];
        const double j = states[doubleSum];
        states[sum] = section.keep * i + (x - section.beta * j);
        states[doubleSum] = j + i;
        return x + section.outSum * i + section.outDoubleSum * j;
    };
    const double shelved = through(tables.shelf, sample, shelfSum, shelfDoubleSum);
    return through(tables.highPass, shelved, highPassSum, highPassDoubleSum);
}

SummingSection SummingSection::of(const Biquad& biquad) {
    const auto& [b0, b1, b2, a1, a2] = biquad;
    const double alpha = 2.0 + a1;
    const double beta = (1.0 + a1) + a2;
    const double alphaN = 2.0 + b1 / b0;
    const double betaN = ((b0 + b1) + b2) / b0;
    return {
        .beta = beta, .keep = -1.0 - a1, .outSum = alphaN - alpha, .outDoubleSum = betaN - beta};
}

KWeightingTables::KWeightingTables(const Biquad& shelfStage, const Biquad& highPassStage)
    : shelf(SummingSection::of(shelfStage)), highPass(SummingSection::of(highPassStage)) {
    KWeightingStates states{};
    kWeightSample(*this, 1.0, states);
    for (KWeightingStates& row : response) {
        row = states;
        kWeightSample(*this, 0.0, states);
    }
    for (std::size_t from = 0; from < kWeightingStateCount; ++from) {
        states = {};
        states[from] = 1.0;
        for (auto& matrix : transition) {
            for (std::size_t to = 0; to < kWeightingStateCount; ++to) {
                matrix[to][from] = states[to];
            }
            kWeightSample(*this, 0.0, states);
        }
    }
}

}  // namespace TarvaneKit
#endif  // HWY_ONCE
