// Time segments as vector lanes: a run of samples cut into as many segments of equal length as a
// vector of 64-bit floats has lanes, and handed out one sample of every segment at a time.
// Compiled once per instruction set, inside the kernels that include it.

#if defined(TARVANE_SEGMENT_LANES_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef TARVANE_SEGMENT_LANES_INL_H
#undef TARVANE_SEGMENT_LANES_INL_H
#else
#define TARVANE_SEGMENT_LANES_INL_H
#endif

#include <hwy/highway.h>

#include <cstddef>

HWY_BEFORE_NAMESPACE();
namespace TarvaneKit {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

using SegmentLanes = hn::CappedTag<double, 8>;
using OneLane = hn::CappedTag<double, 1>;

template <class D>
constexpr int laneCount = static_cast<int>(hn::MaxLanes(D()));

constexpr int segmentCount = laneCount<SegmentLanes>;

template <class D>
using LaneFloats = hn::Rebind<float, D>;

#if HWY_TARGET != HWY_SCALAR

// Four successive samples of every segment, as [sample][segment].
template <class D>
HWY_INLINE void transposeFour(D, const float* samples, int segmentLength, float* transposed) {
    constexpr int lanes = laneCount<D>;
    const hn::CappedTag<float, 4> four;
    const std::ptrdiff_t m = segmentLength;
    if constexpr (lanes >= 4) {
        for (int group = 0; group < lanes / 4; ++group) {
            const float* from = samples + 4 * group * m;
            hn::StoreInterleaved4(hn::LoadU(four, from), hn::LoadU(four, from + m),
                                  hn::LoadU(four, from + 2 * m), hn::LoadU(four, from + 3 * m),
                                  four, transposed + 16 * group);
        }
    } else {
        hn::StoreInterleaved2(hn::LoadU(four, samples), hn::LoadU(four, samples + m), four,
                              transposed);
    }
}

// One sample of every segment out of what `transposeFour` wrote.
template <class D>
HWY_INLINE hn::Vec<D> loadTransposed(D d, const float* transposed, int sample) {
    constexpr int lanes = laneCount<D>;
    const LaneFloats<D> floats;
    if constexpr (lanes == 8) {
        const hn::Half<LaneFloats<D>> half;
        return hn::PromoteTo(d, hn::Combine(floats, hn::LoadU(half, transposed + 16 + 4 * sample),
                                            hn::LoadU(half, transposed + 4 * sample)));
    } else {
        return hn::PromoteTo(d, hn::LoadU(floats, transposed + lanes * sample));
    }
}

#endif  // HWY_SCALAR

// The sample at one place of every segment, from places `segmentLength` apart.
template <class D>
HWY_INLINE hn::Vec<D> gather(D d, const float* samples, int segmentLength) {
    constexpr int lanes = laneCount<D>;
    const LaneFloats<D> floats;
    HWY_ALIGN float row[laneCount<D>];
    for (int lane = 0; lane < lanes; ++lane) {
        row[lane] = samples[lane * segmentLength];
    }
    return hn::PromoteTo(d, hn::Load(floats, row));
}

// Calls `take(x, i)` for each i below `segmentLength`, in order, with sample i of every segment.
template <class D, class Take>
HWY_INLINE void forEachSampleOfSegments(D d, const float* samples, int segmentLength,
                                        const Take& take) {
    int i = 0;
#if HWY_TARGET != HWY_SCALAR
    constexpr int lanes = laneCount<D>;
    if constexpr (lanes > 1) {
        HWY_ALIGN float transposed[4 * laneCount<D>];
        for (; i + 4 <= segmentLength; i += 4) {
            transposeFour(d, samples + i, segmentLength, transposed);
            for (int sample = 0; sample < 4; ++sample) {
                take(loadTransposed(d, transposed, sample), i + sample);
            }
        }
    }
#endif
    for (; i < segmentLength; ++i) {
        take(gather(d, samples + i, segmentLength), i);
    }
}

}  // namespace HWY_NAMESPACE
}  // namespace TarvaneKit
HWY_AFTER_NAMESPACE();

#endif  // per-target include guard
