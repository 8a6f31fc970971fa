#include "DSP/Kernels/InterpolationKernel.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

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

template <class D>
HWY_INLINE int gatherFrom(D d, int i, const float* values, const std::int32_t* indexes, float* out,
                          int count) {
    const hn::RebindToSigned<D> integers;
    for (; i + laneCount<D> <= count; i += laneCount<D>) {
        hn::StoreU(hn::GatherIndex(d, values, hn::LoadU(integers, indexes + i)), d, out + i);
    }
    return i;
}

void gatherOnTarget(const float* values, const std::int32_t* indexes, float* out, int count) {
    const int done = gatherFrom(hn::CappedTag<float, 16>(), 0, values, indexes, out, count);
    gatherFrom(hn::CappedTag<float, 1>(), done, values, indexes, out, count);
}

// Stores low + (high - low) fraction in 32 bits.
template <class D>
HWY_INLINE void storeBetween(D d, const double* values, hn::Vec<hn::RebindToSigned<D>> index,
                             hn::Vec<D> fraction, float* out) {
    const hn::Rebind<float, D> floats;
    const auto low = hn::GatherIndex(d, values, index);
    const auto high = hn::GatherIndex(d, values + 1, index);
    const auto between = hn::MulAdd(hn::Sub(high, low), fraction, low);
    hn::StoreU(hn::DemoteTo(floats, between), floats, out);
}

template <class D>
HWY_INLINE int interpolateFrom(D d, int i, const double* values, const std::int32_t* indexes,
                               const double* fractions, float* out, int count) {
    const hn::RebindToSigned<D> integers;
    const hn::Rebind<std::int32_t, D> narrow;
    for (; i + laneCount<D> <= count; i += laneCount<D>) {
        const auto index = hn::PromoteTo(integers, hn::LoadU(narrow, indexes + i));
        storeBetween(d, values, index, hn::LoadU(d, fractions + i), out + i);
    }
    return i;
}

void interpolateOnTarget(const double* values, const std::int32_t* indexes, const double* fractions,
                         float* out, int count) {
    const int done =
        interpolateFrom(hn::CappedTag<double, 8>(), 0, values, indexes, fractions, out, count);
    interpolateFrom(hn::CappedTag<double, 1>(), done, values, indexes, fractions, out, count);
}

template <class D>
HWY_INLINE int interpolateAtFrom(D d, int i, const double* values, int valueCount,
                                 const double* frequencies, double scale, float* out, int count) {
    const hn::RebindToSigned<D> integers;
    const auto last = hn::Set(d, static_cast<double>(valueCount - 1));
    for (; i + laneCount<D> <= count; i += laneCount<D>) {
        const auto wanted = hn::Mul(hn::LoadU(d, frequencies + i), hn::Set(d, scale));
        const auto position = hn::Min(hn::Max(wanted, hn::Zero(d)), last);
        // The last line is reached from the one before it.
        const auto floor = hn::Min(hn::Floor(position), hn::Sub(last, hn::Set(d, 1.0)));
        storeBetween(d, values, hn::ConvertTo(integers, floor), hn::Sub(position, floor), out + i);
    }
    return i;
}

void interpolateAtOnTarget(const double* values, int valueCount, const double* frequencies,
                           double scale, float* out, int count) {
    if (valueCount == 1) {
        std::fill_n(out, count, static_cast<float>(values[0]));
        return;
    }
    const int done = interpolateAtFrom(hn::CappedTag<double, 8>(), 0, values, valueCount,
                                       frequencies, scale, out, count);
    interpolateAtFrom(hn::CappedTag<double, 1>(), done, values, valueCount, frequencies, scale, out,
                      count);
}

}  // namespace HWY_NAMESPACE
}  // namespace TarvaneKit
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace TarvaneKit {

HWY_EXPORT(gatherOnTarget);
HWY_EXPORT(interpolateOnTarget);
HWY_EXPORT(interpolateAtOnTarget);

void gather(const float* values, const std::int32_t* indexes, float* out, int count) {
    HWY_DYNAMIC_DISPATCH(gatherOnTarget)(values, indexes, out, count);
}

void interpolate(const double* values, const std::int32_t* indexes, const double* fractions,
                 float* out, int count) {
    HWY_DYNAMIC_DISPATCH(interpolateOnTarget)(values, indexes, fractions, out, count);
}

void interpolateAt(const double* values, int valueCount, const double* frequencies, double scale,
                   float* out, int count) {
    HWY_DYNAMIC_DISPATCH(interpolateAtOnTarget)
    (values, valueCount, frequencies, scale, out, count);
}

}  // namespace TarvaneKit
#endif  // HWY_ONCE
