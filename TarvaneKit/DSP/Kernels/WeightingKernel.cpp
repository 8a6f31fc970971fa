// How the A and C weightings run on a vector unit.
//
// The filters. With p1..p4 the poles of the corner frequencies f1..f4 in the z plane and w for
// z^-1, the cascades of WeightingFilter are, up to constant factors,
//
//     C = (1-w)^2 (1+w)^2           / ((1-p1 w)^2 (1-p4 w)^2)
//     A = (1-w)^2 (1-w)^2 (1+w)^2   / ((1-p1 w)^2 (1-p4 w)^2 (1-p2 w) (1-p3 w))
//
// so that everything up to the f4 poles is computed once. For one sample x, primes marking the
// value at the sample before (`filterSegments` is this, line by line):
//
//     a  = x - x'                        the input step
//     u1 = p1 u1' + a                    1st high-pass at f1
//     u2 = p1 u2' + (u1 - u1')           2nd high-pass at f1
//     v1 = p4 v1' + u2                   1st pole at f4
//     v2 = p4 v2' + v1                   2nd pole at f4
//     s  = v2 + v2',   C = s + s'        C's zeros: low-pass kind, twice
//     d  = v2 - v2'                      A's zeros: high-pass kind, twice
//     q2 = p2 q2' + (d - d')             pole at f2
//     q3 = p3 q3' + (q2 + q2')           zero of f2's section, pole at f3
//     A  = q3 + q3'                      zero of f3's section
//
// Each recursion is one multiply-add. Zeros are taken as plain differences and never multiplied
// out: neighbouring samples of a slow signal subtract exactly, so that a low tone or an offset
// loses no digits to the double pole at f1, which lies within 4e-4 of z = 1 at 384 kHz.
//
// The lanes. A recursion can't be spread over a vector along time. So a chunk of the block is
// cut into as many segments of equal length m as the vector has lanes, and lane k runs segment
// k. For that each segment must know the states at its start. The filters being linear, the
// states at the end of a segment are
//
//     S_end = T_m S_start + sum over j of r[j] a[m-1-j]
//
// where r[j] are the states j samples after a unit step and T_m the states' own decay over m
// samples, both tabulated per sample rate. So: one pass lays the chunk out in lanes (and takes
// Z on the way), one pass forms the sums for all segments at once, a short loop goes from
// segment to segment with T_m, and one pass filters. The sums are taken over the input steps,
// not the samples, for the same reason as above. What doesn't fill the lanes, and blocks too
// short to be worth it, run through the same filter with a single lane.

#include "DSP/Kernels/WeightingKernel.h"

#include <algorithm>
#include <cstddef>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "DSP/Kernels/WeightingKernel.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "DSP/Kernels/SegmentLanes-inl.h"

HWY_BEFORE_NAMESPACE();
namespace TarvaneKit {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

constexpr int maxChunkLength = segmentCount * WeightingTables::maxSegmentLength;
// Below this many samples per segment the segments' start states cost more than they save.
constexpr int minSegmentLength = 6;

// The samples, scaled, as input steps in lanes; Z's sum and peak on the way.
template <class D>
HWY_NOINLINE void spreadSteps(D d, double gain, const float* samples, int segmentLength,
                              double previousSample, double* HWY_RESTRICT steps,
                              WeightingSums& sums) {
    constexpr int lanes = laneCount<D>;
    const auto g = hn::Set(d, gain);
    HWY_ALIGN double before[laneCount<D>];
    before[0] = previousSample;
    for (int lane = 1; lane < lanes; ++lane) {
        before[lane] = gain * static_cast<double>(samples[lane * segmentLength - 1]);
    }
    auto previous = hn::Load(d, before);
    auto sum = hn::Zero(d);
    auto peak = hn::Zero(d);
    const auto take = [&](hn::Vec<D> raw, int i) HWY_ATTR {
        const auto x = hn::Mul(raw, g);
        sum = hn::MulAdd(x, x, sum);
        peak = hn::Max(peak, hn::Abs(x));
        hn::Store(hn::Sub(x, previous), d, steps + i * lanes);
        previous = x;
    };
    forEachSampleOfSegments(d, samples, segmentLength, take);
    sums.sumOfSquaresZ += hn::GetLane(hn::SumOfLanes(d, sum));
    sums.peakZ = std::max(sums.peakZ, hn::GetLane(hn::MaxOfLanes(d, peak)));
}

// Runs every lane's filter over its segment. `start` is [state][lane]; returns the last lane's
// states at the end of its segment.
template <class D>
HWY_NOINLINE void filterSegments(D d, const WeightingPoles& poles, int segmentLength,
                                 const double* HWY_RESTRICT steps, const double* HWY_RESTRICT start,
                                 WeightingSums& sums, WeightingStates& endStates) {
    constexpr int lanes = laneCount<D>;
    const auto p1 = hn::Set(d, poles.p1);
    const auto p2 = hn::Set(d, poles.p2);
    const auto p3 = hn::Set(d, poles.p3);
    const auto p4 = hn::Set(d, poles.p4);
    auto u1 = hn::Load(d, start + stateU1 * lanes);
    auto u2 = hn::Load(d, start + stateU2 * lanes);
    auto v1 = hn::Load(d, start + stateV1 * lanes);
    auto v2 = hn::Load(d, start + stateV2 * lanes);
    auto slope = hn::Load(d, start + stateD * lanes);
    auto q2 = hn::Load(d, start + stateQ2 * lanes);
    auto q3 = hn::Load(d, start + stateQ3 * lanes);
    auto s = hn::Sub(hn::Add(v2, v2), slope);
    auto sumA = hn::Zero(d);
    auto sumC = hn::Zero(d);
    auto peakA = hn::Zero(d);
    auto peakC = hn::Zero(d);
    for (int i = 0; i < segmentLength; ++i) {
        const auto a = hn::Load(d, steps + i * lanes);
        const auto u1Before = u1;
        u1 = hn::MulAdd(p1, u1, a);
        u2 = hn::MulAdd(p1, u2, hn::Sub(u1, u1Before));
        v1 = hn::MulAdd(p4, v1, u2);
        const auto v2Before = v2;
        v2 = hn::MulAdd(p4, v2, v1);

        const auto sBefore = s;
        s = hn::Add(v2, v2Before);
        const auto c = hn::Add(s, sBefore);
        const auto squaredC = hn::Mul(c, c);
        sumC = hn::Add(sumC, squaredC);
        peakC = hn::Max(peakC, squaredC);

        const auto slopeBefore = slope;
        slope = hn::Sub(v2, v2Before);
        const auto q2Before = q2;
        q2 = hn::MulAdd(p2, q2, hn::Sub(slope, slopeBefore));
        const auto q3Before = q3;
        q3 = hn::MulAdd(p3, q3, hn::Add(q2, q2Before));
        const auto weightedA = hn::Add(q3, q3Before);
        const auto squaredA = hn::Mul(weightedA, weightedA);
        sumA = hn::Add(sumA, squaredA);
        peakA = hn::Max(peakA, squaredA);
    }
    sums.sumOfSquaresA += hn::GetLane(hn::SumOfLanes(d, sumA));
    sums.sumOfSquaresC += hn::GetLane(hn::SumOfLanes(d, sumC));
    sums.squaredPeakA = std::max(sums.squaredPeakA, hn::GetLane(hn::MaxOfLanes(d, peakA)));
    sums.squaredPeakC = std::max(sums.squaredPeakC, hn::GetLane(hn::MaxOfLanes(d, peakC)));
    constexpr std::size_t last = laneCount<D> - 1;
    endStates = {hn::ExtractLane(u1, last), hn::ExtractLane(u2, last),    hn::ExtractLane(v1, last),
                 hn::ExtractLane(v2, last), hn::ExtractLane(slope, last), hn::ExtractLane(q2, last),
                 hn::ExtractLane(q3, last)};
}

#if HWY_TARGET != HWY_SCALAR

// Each segment's states at its end had it started from rest: sum over j of r[j] a[m-1-j].
template <class D>
HWY_NOINLINE void endStatesFromRest(D d, const WeightingTables& tables, int segmentLength,
                                    const double* HWY_RESTRICT steps, double* HWY_RESTRICT ends) {
    constexpr int lanes = laneCount<D>;
    auto u1 = hn::Zero(d);
    auto u2 = hn::Zero(d);
    auto v1 = hn::Zero(d);
    auto v2 = hn::Zero(d);
    auto slope = hn::Zero(d);
    auto q2 = hn::Zero(d);
    auto q3 = hn::Zero(d);
    const double* r = tables.response.data();
    for (int i = segmentLength - 1; i >= 0; --i) {
        const auto a = hn::Load(d, steps + i * lanes);
        u1 = hn::MulAdd(hn::Set(d, r[stateU1]), a, u1);
        u2 = hn::MulAdd(hn::Set(d, r[stateU2]), a, u2);
        v1 = hn::MulAdd(hn::Set(d, r[stateV1]), a, v1);
        v2 = hn::MulAdd(hn::Set(d, r[stateV2]), a, v2);
        slope = hn::MulAdd(hn::Set(d, r[stateD]), a, slope);
        q2 = hn::MulAdd(hn::Set(d, r[stateQ2]), a, q2);
        q3 = hn::MulAdd(hn::Set(d, r[stateQ3]), a, q3);
        r += WeightingTables::responseStride;
    }
    hn::Store(u1, d, ends + stateU1 * lanes);
    hn::Store(u2, d, ends + stateU2 * lanes);
    hn::Store(v1, d, ends + stateV1 * lanes);
    hn::Store(v2, d, ends + stateV2 * lanes);
    hn::Store(slope, d, ends + stateD * lanes);
    hn::Store(q2, d, ends + stateQ2 * lanes);
    hn::Store(q3, d, ends + stateQ3 * lanes);
}

// S_end = T_m S_start + (end state from rest), from segment to segment.
HWY_NOINLINE void chainSegments(const WeightingTables& tables, int segmentLength,
                                const WeightingStates& first, const double* HWY_RESTRICT ends,
                                double* HWY_RESTRICT start) {
    const auto& transition = tables.transition[static_cast<std::size_t>(segmentLength)];
    WeightingStates states = first;
    for (std::size_t segment = 0; segment < segmentCount; ++segment) {
        WeightingStates next;
        for (std::size_t to = 0; to < weightingStateCount; ++to) {
            start[to * segmentCount + segment] = states[to];
            double sum = ends[to * segmentCount + segment];
            for (std::size_t from = 0; from <= to; ++from) {
                sum += transition[to][from] * states[from];
            }
            next[to] = sum;
        }
        states = next;
    }
}

// `segmentLength` samples per lane.
HWY_INLINE void weightChunk(const WeightingTables& tables, double gain, const float* samples,
                            int segmentLength, WeightingCarry& carry, WeightingSums& sums) {
    const SegmentLanes d;
    HWY_ALIGN double steps[WeightingTables::maxSegmentLength * segmentCount];
    HWY_ALIGN double ends[weightingStateCount * segmentCount];
    HWY_ALIGN double start[weightingStateCount * segmentCount];
    spreadSteps(d, gain, samples, segmentLength, carry.previousSample, steps, sums);
    endStatesFromRest(d, tables, segmentLength, steps, ends);
    chainSegments(tables, segmentLength, carry.states, ends, start);
    filterSegments(d, tables.poles, segmentLength, steps, start, sums, carry.states);
    carry.previousSample = gain * static_cast<double>(samples[segmentLength * segmentCount - 1]);
}

#endif  // HWY_SCALAR

// Up to `maxSegmentLength` samples in a single lane.
HWY_INLINE void weightRest(const WeightingTables& tables, double gain, const float* samples,
                           int sampleCount, WeightingCarry& carry, WeightingSums& sums) {
    const OneLane d;
    HWY_ALIGN double steps[WeightingTables::maxSegmentLength];
    spreadSteps(d, gain, samples, sampleCount, carry.previousSample, steps, sums);
    HWY_ALIGN const WeightingStates start = carry.states;
    filterSegments(d, tables.poles, sampleCount, steps, start.data(), sums, carry.states);
    carry.previousSample = gain * static_cast<double>(samples[sampleCount - 1]);
}

WeightingSums weightBlockOnTarget(const WeightingTables& tables, double gain, const float* samples,
                                  int sampleCount, WeightingCarry& carry) {
    WeightingSums sums;
    int done = 0;
#if HWY_TARGET != HWY_SCALAR
    while (sampleCount - done >= segmentCount * minSegmentLength) {
        const int segmentLength = std::min(sampleCount - done, maxChunkLength) / segmentCount;
        weightChunk(tables, gain, samples + done, segmentLength, carry, sums);
        done += segmentLength * segmentCount;
    }
#endif
    while (done < sampleCount) {
        const int count = std::min(sampleCount - done, WeightingTables::maxSegmentLength);
        weightRest(tables, gain, samples + done, count, carry, sums);
        done += count;
    }
    return sums;
}

}  // namespace HWY_NAMESPACE
}  // namespace TarvaneKit
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace TarvaneKit {

HWY_EXPORT(weightBlockOnTarget);

WeightingSums weightBlock(const WeightingTables& tables, double gain,
                          std::span<const float> samples, WeightingCarry& carry) {
    return HWY_DYNAMIC_DISPATCH(weightBlockOnTarget)(tables, gain, samples.data(),
                                                     static_cast<int>(samples.size()), carry);
}

namespace {

// The filters' equations for one sample, outputs left out.
WeightingStates advanceStates(const WeightingPoles& poles, const WeightingStates& before,
                              double inputStep) {
    WeightingStates now{};
    now[stateU1] = poles.p1 * before[stateU1] + inputStep;
    now[stateU2] = poles.p1 * before[stateU2] + (now[stateU1] - before[stateU1]);
    now[stateV1] = poles.p4 * before[stateV1] + now[stateU2];
    now[stateV2] = poles.p4 * before[stateV2] + now[stateV1];
    now[stateD] = now[stateV2] - before[stateV2];
    now[stateQ2] = poles.p2 * before[stateQ2] + (now[stateD] - before[stateD]);
    now[stateQ3] = poles.p3 * before[stateQ3] + (now[stateQ2] + before[stateQ2]);
    return now;
}

}  // namespace

WeightingTables::WeightingTables(const WeightingPoles& filterPoles) : poles(filterPoles) {
    WeightingStates states = advanceStates(poles, {}, 1.0);
    for (auto row = response.begin(); row != response.end(); row += responseStride) {
        std::ranges::copy(states, row);
        states = advanceStates(poles, states, 0.0);
    }
    for (std::size_t from = 0; from < weightingStateCount; ++from) {
        states = {};
        states[from] = 1.0;
        for (auto& matrix : transition) {
            for (std::size_t to = 0; to < weightingStateCount; ++to) {
                matrix[to][from] = states[to];
            }
            states = advanceStates(poles, states, 0.0);
        }
    }
}

}  // namespace TarvaneKit
#endif  // HWY_ONCE
