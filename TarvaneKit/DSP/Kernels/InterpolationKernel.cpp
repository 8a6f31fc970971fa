// A value and the one after it lie side by side, so that one load brings both; two such loads,
// turned, are a vector of two values and a vector of their followers. That is cheaper than a
// gather wherever there is one: three times on AVX2 and AVX-512.

#include "DSP/Kernels/InterpolationKernel.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "Core/Contract.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "DSP/Kernels/InterpolationKernel.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace TarvaneKit {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

template <class D>
constexpr int laneCount = static_cast<int>(hn::MaxLanes(D()));

HWY_INLINE float valueBetween(const double* values, std::int32_t index, double fraction) {
    const double low = values[index];
    return static_cast<float>(low + (values[index + 1] - low) * fraction);
}

void interpolateOnTarget(const double* values, const std::int32_t* indexes, const double* fractions,
                         float* out, int count) {
    int i = 0;
#if HWY_TARGET != HWY_SCALAR
    const hn::CappedTag<double, 2> d;
    const hn::Rebind<float, decltype(d)> floats;
    for (; i + 2 <= count; i += 2) {
        const auto first = hn::LoadU(d, values + indexes[i]);
        const auto second = hn::LoadU(d, values + indexes[i + 1]);
        const auto low = hn::InterleaveLower(d, first, second);
        const auto high = hn::InterleaveUpper(d, first, second);
        const auto between = hn::MulAdd(hn::Sub(high, low), hn::LoadU(d, fractions + i), low);
        hn::StoreU(hn::DemoteTo(floats, between), floats, out + i);
    }
#endif
    for (; i < count; ++i) {
        out[i] = valueBetween(values, indexes[i], fractions[i]);
    }
}

// Of each frequency the index below its place and the part of the way to the next one, as long as
// whole vectors fit; returns how many.
template <class D>
HWY_INLINE int placesFrom(D d, int i, double lastIndex, const double* frequencies, double scale,
                          std::int32_t* indexes, double* fractions, int count) {
    const hn::Rebind<std::int32_t, D> integers;
    const auto last = hn::Set(d, lastIndex);
    for (; i + laneCount<D> <= count; i += laneCount<D>) {
        const auto wanted = hn::Mul(hn::LoadU(d, frequencies + i), hn::Set(d, scale));
        const auto position = hn::Min(hn::Max(wanted, hn::Zero(d)), last);
        // The last value is reached from the one before it.
        const auto floor = hn::Min(hn::Floor(position), hn::Sub(last, hn::Set(d, 1.0)));
        hn::StoreU(hn::DemoteTo(integers, floor), integers, indexes + i);
        hn::StoreU(hn::Sub(position, floor), d, fractions + i);
    }
    return i;
}

void placesOnTarget(const double* frequencies, double scale, double lastIndex,
                    std::int32_t* indexes, double* fractions, int count) {
    const int placed = placesFrom(hn::CappedTag<double, 8>(), 0, lastIndex, frequencies, scale,
                                  indexes, fractions, count);
    placesFrom(hn::CappedTag<double, 1>(), placed, lastIndex, frequencies, scale, indexes,
               fractions, count);
}

}  // namespace HWY_NAMESPACE
}  // namespace TarvaneKit
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace TarvaneKit {

HWY_EXPORT(interpolateOnTarget);
HWY_EXPORT(placesOnTarget);

// A load and a store for each; no instruction set's gather is faster by much, and most are slower.
void gather(std::span<const float> values, std::span<const std::int32_t> indexes,
            std::span<float> out) {
    TARVANE_PRECONDITION(indexes.size() == out.size());
    const float* from = values.data();
    const std::int32_t* index = indexes.data();
    for (float& value : out) {
        value = from[*index++];
    }
}

void interpolate(std::span<const double> values, std::span<const std::int32_t> indexes,
                 std::span<const double> fractions, std::span<float> out) {
    TARVANE_PRECONDITION(indexes.size() == out.size() && fractions.size() == out.size());
    HWY_DYNAMIC_DISPATCH(interpolateOnTarget)
    (values.data(), indexes.data(), fractions.data(), out.data(), static_cast<int>(out.size()));
}

void interpolateAt(std::span<const double> values, std::span<const double> frequencies,
                   double scale, std::span<float> out) {
    TARVANE_PRECONDITION(!values.empty() && frequencies.size() == out.size());
    if (values.size() == 1) {
        std::ranges::fill(out, static_cast<float>(values[0]));
        return;
    }
    constexpr int runLength = 256;
    std::array<std::int32_t, runLength> indexes;
    std::array<double, runLength> fractions;
    const double lastIndex = static_cast<double>(values.size()) - 1.0;
    const int count = static_cast<int>(out.size());
    for (int done = 0; done < count; done += runLength) {
        const int length = std::min(count - done, runLength);
        HWY_DYNAMIC_DISPATCH(placesOnTarget)
        (frequencies.data() + done, scale, lastIndex, indexes.data(), fractions.data(), length);
        HWY_DYNAMIC_DISPATCH(interpolateOnTarget)
        (values.data(), indexes.data(), fractions.data(), out.data() + done, length);
    }
}

}  // namespace TarvaneKit
#endif  // HWY_ONCE
