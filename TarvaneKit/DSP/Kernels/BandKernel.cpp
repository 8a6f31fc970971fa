// A band's power is a dot product of a run of bins with its proportions. Most bands of a fine
// table are a few bins wide, where a plain loop beats a vector's horizontal sum.

#include "DSP/Kernels/BandKernel.h"

#include <algorithm>
#include <cstddef>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "DSP/Kernels/BandKernel.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace TarvaneKit {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

using Doubles = hn::CappedTag<double, 8>;
constexpr int lanes = static_cast<int>(hn::MaxLanes(Doubles()));
constexpr int shortestForVectors = 2 * lanes;

HWY_INLINE double sumOneByOne(const float* magnitudes, const double* weights, int count) {
    double sum = 0.0;
    for (int i = 0; i < count; ++i) {
        const auto magnitude = static_cast<double>(magnitudes[i]);
        sum += magnitude * magnitude * weights[i];
    }
    return sum;
}

// The sum over whole pairs of vectors; the rest is left to the caller.
HWY_INLINE double sumPairs(const float* magnitudes, const double* weights, int pairCount) {
    const Doubles d;
    const hn::Rebind<float, Doubles> floats;
    auto even = hn::Zero(d);
    auto odd = hn::Zero(d);
    for (int i = 0; i < pairCount * 2 * lanes; i += 2 * lanes) {
        const auto a = hn::PromoteTo(d, hn::LoadU(floats, magnitudes + i));
        const auto b = hn::PromoteTo(d, hn::LoadU(floats, magnitudes + i + lanes));
        even = hn::MulAdd(hn::Mul(a, a), hn::LoadU(d, weights + i), even);
        odd = hn::MulAdd(hn::Mul(b, b), hn::LoadU(d, weights + i + lanes), odd);
    }
    return hn::GetLane(hn::SumOfLanes(d, hn::Add(even, odd)));
}

void sumBandPowersOnTarget(const BandShares* bands, int bandCount, const double* weights,
                           const float* magnitudes, int magnitudeCount, double* powers) {
    for (int band = 0; band < bandCount; ++band) {
        const BandShares& shares = bands[band];
        const int count = std::min(shares.binCount, magnitudeCount - shares.firstBin);
        const float* bins = magnitudes + (count > 0 ? shares.firstBin : 0);
        const double* proportions = weights + shares.firstWeight;
        const int pairCount = count < shortestForVectors ? 0 : count / (2 * lanes);
        const int done = pairCount * 2 * lanes;
        const double sum = pairCount > 0 ? sumPairs(bins, proportions, pairCount) : 0.0;
        powers[band] = sum + sumOneByOne(bins + done, proportions + done, count - done);
    }
}

}  // namespace HWY_NAMESPACE
}  // namespace TarvaneKit
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace TarvaneKit {

HWY_EXPORT(sumBandPowersOnTarget);

void sumBandPowers(const std::vector<BandShares>& bands, const double* weights,
                   const float* magnitudes, int magnitudeCount, double* powers) {
    HWY_DYNAMIC_DISPATCH(sumBandPowersOnTarget)
    (bands.data(), static_cast<int>(bands.size()), weights, magnitudes, magnitudeCount, powers);
}

}  // namespace TarvaneKit
#endif  // HWY_ONCE
