// One pass of plain vector code: out[i] = in[i] where finite, else 0, within the largest sample;
// the largest |out[i]|.

#include "DSP/Kernels/SanitizeKernel.h"

#include "Core/Contract.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "DSP/Kernels/SanitizeKernel.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace TarvaneKit {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

// The next samples, as many as D has lanes, copied; the largest magnitudes so far in each lane.
template <class D>
HWY_INLINE hn::Vec<D> copyVector(D d, const float* in, float* out, hn::Vec<D> largest) {
    const auto samples = hn::LoadU(d, in);
    const auto finite = hn::IfThenElseZero(hn::IsFinite(samples), samples);
    const auto bounded = hn::Clamp(finite, hn::Set(d, -largestSample), hn::Set(d, largestSample));
    hn::StoreU(bounded, d, out);
    return hn::Max(largest, hn::Abs(bounded));
}

float copySanitizedOnTarget(const float* in, float* out, int count) {
    const hn::ScalableTag<float> d;
    const hn::CappedTag<float, 1> one;
    const int lanes = static_cast<int>(hn::Lanes(d));
    auto largest = hn::Zero(d);
    auto largestOfRest = hn::Zero(one);
    int i = 0;
    for (; i + lanes <= count; i += lanes) {
        largest = copyVector(d, in + i, out + i, largest);
    }
    for (; i < count; ++i) {
        largestOfRest = copyVector(one, in + i, out + i, largestOfRest);
    }
    const float vectors = hn::GetLane(hn::MaxOfLanes(d, largest));
    const float rest = hn::GetLane(largestOfRest);
    return vectors < rest ? rest : vectors;
}

}  // namespace HWY_NAMESPACE
}  // namespace TarvaneKit
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace TarvaneKit {

HWY_EXPORT(copySanitizedOnTarget);

float copySanitized(std::span<const float> in, std::span<float> out) {
    TARVANE_PRECONDITION(in.size() == out.size());
    return HWY_DYNAMIC_DISPATCH(copySanitizedOnTarget)(in.data(), out.data(),
                                                       static_cast<int>(out.size()));
}

}  // namespace TarvaneKit
#endif  // HWY_ONCE
