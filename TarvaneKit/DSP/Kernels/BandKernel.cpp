// A band's power is a dot product of a run of bins with its proportions. In a fine table most runs
// are so short that their ends cost more than their middle, so the proportions are filled up with
// zeros: every run has whole vectors, and no rest. More than half of the finest table's bands are
// narrower than a bin and lie in one or two; they stand first, have two weights each, and go two at
// a time. Where a run's zeros would reach beyond the spectrum its bins go one by one.

#include "DSP/Kernels/BandKernel.h"

#include <algorithm>
#include <cstddef>

#include "Core/Contract.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "DSP/Kernels/BandKernel.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#ifndef TARVANE_BAND_KERNEL_ONCE
#define TARVANE_BAND_KERNEL_ONCE
namespace TarvaneKit {

constexpr int narrowWeightCount = 2;
constexpr int wideWeightStep = 4;  // weights of all other bands come in whole fours

}  // namespace TarvaneKit
#endif

HWY_BEFORE_NAMESPACE();
namespace TarvaneKit {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

using Doubles = hn::CappedTag<double, wideWeightStep>;
constexpr int lanes = static_cast<int>(hn::MaxLanes(Doubles()));

// The powers of a vector's bins, each in its proportion.
template <class D>
HWY_INLINE hn::Vec<D> sharedPowers(D d, const float* magnitudes, const double* weights) {
    const hn::Rebind<float, D> floats;
    const auto magnitude = hn::PromoteTo(d, hn::LoadU(floats, magnitudes));
    return hn::Mul(hn::Mul(magnitude, magnitude), hn::LoadU(d, weights));
}

HWY_INLINE double sumOneByOne(const float* magnitudes, const double* weights, int count) {
    double sum = 0.0;
    for (int i = 0; i < count; ++i) {
        const auto magnitude = static_cast<double>(magnitudes[i]);
        sum += magnitude * magnitude * weights[i];
    }
    return sum;
}

HWY_INLINE double sumWhole(const float* magnitudes, const double* weights, int count) {
    const Doubles d;
    auto even = hn::Zero(d);
    auto odd = hn::Zero(d);
    int i = 0;
    for (; i + 2 * lanes <= count; i += 2 * lanes) {
        even = hn::Add(even, sharedPowers(d, magnitudes + i, weights + i));
        odd = hn::Add(odd, sharedPowers(d, magnitudes + i + lanes, weights + i + lanes));
    }
    if (i < count) {
        even = hn::Add(even, sharedPowers(d, magnitudes + i, weights + i));
    }
    return hn::GetLane(hn::SumOfLanes(d, hn::Add(even, odd)));
}

#if HWY_TARGET != HWY_SCALAR

// Two narrow bands at a time, as far as their bins lie within the spectrum; returns how many.
HWY_INLINE int sumNarrowBands(const BandTable& table, const float* magnitudes, int magnitudeCount,
                              double* powers) {
    const hn::CappedTag<double, 2> d;
    const BandTable::Band* bands = table.bands().data();
    const double* weights = table.weights().data();
    int band = 0;
    for (; band + 2 <= table.narrowCount() &&
           bands[band + 1].firstBin + narrowWeightCount <= magnitudeCount;
         band += 2) {
        const auto first = sharedPowers(d, magnitudes + bands[band].firstBin, weights);
        const auto second =
            sharedPowers(d, magnitudes + bands[band + 1].firstBin, weights + narrowWeightCount);
        hn::StoreU(
            hn::Add(hn::InterleaveLower(d, first, second), hn::InterleaveUpper(d, first, second)),
            d, powers + band);
        weights += 2 * narrowWeightCount;
    }
    return band;
}

#endif  // HWY_SCALAR

void sumBandPowersOnTarget(const BandTable& table, const float* magnitudes, int magnitudeCount,
                           double* powers) {
    int i = 0;
#if HWY_TARGET != HWY_SCALAR
    i = sumNarrowBands(table, magnitudes, magnitudeCount, powers);
#endif
    const int bandCount = static_cast<int>(table.bands().size());
    for (; i < bandCount; ++i) {
        const BandTable::Band& band = table.bands()[static_cast<std::size_t>(i)];
        const double* weights = table.weights().data() + band.firstWeight;
        const int inSpectrum = magnitudeCount - band.firstBin;
        if (i >= table.narrowCount() && band.weightCount <= inSpectrum) {
            powers[i] = sumWhole(magnitudes + band.firstBin, weights, band.weightCount);
        } else {
            const int count = std::min(band.binCount, inSpectrum);
            powers[i] = count > 0 ? sumOneByOne(magnitudes + band.firstBin, weights, count) : 0.0;
        }
    }
}

}  // namespace HWY_NAMESPACE
}  // namespace TarvaneKit
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace TarvaneKit {

HWY_EXPORT(sumBandPowersOnTarget);

void sumBandPowers(const BandTable& table, std::span<const float> magnitudes,
                   std::span<double> powers) {
    TARVANE_PRECONDITION(powers.size() == table.bands().size());
    HWY_DYNAMIC_DISPATCH(sumBandPowersOnTarget)
    (table, magnitudes.data(), static_cast<int>(magnitudes.size()), powers.data());
}

void BandTable::add(int firstBin, std::span<const double> proportions) {
    const int binCount = static_cast<int>(proportions.size());
    const bool isAtTheHead = std::ssize(bands_) == narrowCount_;
    const bool isNarrow = isAtTheHead && binCount <= narrowWeightCount;
    const int weightCount = isNarrow
                                ? narrowWeightCount
                                : (binCount + wideWeightStep - 1) / wideWeightStep * wideWeightStep;
    bands_.push_back({.firstBin = firstBin,
                      .binCount = binCount,
                      .firstWeight = static_cast<int>(weights_.size()),
                      .weightCount = weightCount});
    weights_.insert(weights_.end(), proportions.begin(), proportions.end());
    weights_.resize(weights_.size() + static_cast<std::size_t>(weightCount - binCount), 0.0);
    narrowCount_ += isNarrow ? 1 : 0;
}

}  // namespace TarvaneKit
#endif  // HWY_ONCE
