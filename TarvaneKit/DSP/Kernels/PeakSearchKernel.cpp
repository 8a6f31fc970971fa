// How a spectrum's noise floor and peaks are found a vector at a time.
//
// Box averages come from running sums: the sum over a box is the difference of two of them, for
// any width. A running sum looks serial, but within a vector it takes log2(lanes) shifted
// additions, and from vector to vector only one addition waits for the one before.
//
// The floor is computed twice, the second time with all peaks taken out. Taking out, and summing
// what is left, is one pass. Near the ends of the spectrum the box is cut and its divisor
// changes from bin to bin; those few bins go one at a time. Everywhere else divisor and
// prominence are one constant factor, so that no bin costs a division.
//
// No logarithm is taken of the floors. A bin that stands clear of its floor in dB does so in
// power; the few that do, or all but do, are left for the exact test in dB.

#include "DSP/Kernels/PeakSearchKernel.h"

#include <algorithm>
#include <array>
#include <cstdint>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "DSP/Kernels/PeakSearchKernel.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "DSP/Kernels/Decibels-inl.h"

HWY_BEFORE_NAMESPACE();
namespace TarvaneKit {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

using Bins = hn::CappedTag<double, 8>;
using OneBin = hn::CappedTag<double, 1>;

template <class D>
constexpr int laneCount = static_cast<int>(hn::MaxLanes(D()));

// Lane i of the result is lane max(i - Shift, 0); with Shift 0 every lane is the last.
template <int Shift, class D>
HWY_INLINE hn::Vec<D> shiftedLanes(D d, hn::Vec<D> x) {
    HWY_ALIGN std::int64_t lanes[laneCount<D>];
    for (int i = 0; i < laneCount<D>; ++i) {
        lanes[i] = Shift == 0 ? laneCount<D> - 1 : std::max(i - Shift, 0);
    }
    return hn::TableLookupLanes(x, hn::SetTableIndices(d, lanes));
}

template <int Shift, class D>
HWY_INLINE hn::Vec<D> addShifted(D d, hn::Vec<D> x) {
    if constexpr (Shift < laneCount<D>) {
        return hn::Add(x, hn::IfThenZeroElse(hn::FirstN(d, Shift), shiftedLanes<Shift>(d, x)));
    } else {
        return x;
    }
}

// Extends `sums` by the values `at(d, bin)`, from bin `begin` on, while whole vectors fit below
// `end`; returns the first bin left over.
template <class D, class ValuesAt>
HWY_INLINE int extendSums(D d, int begin, int end, double* HWY_RESTRICT sums, const ValuesAt& at) {
    auto before = hn::Set(d, sums[begin]);
    int bin = begin;
    for (; bin + laneCount<D> <= end; bin += laneCount<D>) {
        auto within = addShifted<1>(d, at(d, bin));
        within = addShifted<2>(d, within);
        within = addShifted<4>(d, within);
        hn::StoreU(hn::Add(before, within), d, sums + bin + 1);
        before = hn::Add(before, shiftedLanes<0>(d, within));
    }
    return bin;
}

template <class D>
HWY_INLINE hn::Vec<D> powersOfMagnitudes(D d, const float* magnitudes) {
    constexpr double silence = 1e-9;  // the line spectrum's floor, -180 dB
    const hn::Rebind<float, D> floats;
    const auto raised =
        hn::Max(hn::PromoteTo(d, hn::LoadU(floats, magnitudes)), hn::Set(d, silence));
    return hn::Mul(raised, raised);
}

template <class PowersAt>
HWY_INLINE void sumPowers(int binCount, const PeakSearchBuffers& buffers, const PowersAt& powers) {
    const auto storePowers = [&](auto d, int bin) HWY_ATTR {
        const auto power = powers(d, bin);
        hn::StoreU(power, d, buffers.power + bin);
        return power;
    };
    buffers.sums[0] = 0.0;
    const int rest = extendSums(Bins(), 0, binCount, buffers.sums, storePowers);
    extendSums(OneBin(), rest, binCount, buffers.sums, storePowers);
}

// Bins whose box lies wholly inside the spectrum, from `begin` up to but without `end`, as far
// as they lie in the range given.
struct WholeBoxes {
    WholeBoxes(const PeakSearch& search, int rangeBegin, int rangeEnd)
        : begin(std::min(std::max(rangeBegin, search.windowBins), rangeEnd)),
          end(std::max(begin, std::min(rangeEnd, search.binCount - search.windowBins))) {}
    int begin;
    int end;
};

// `prominence` times the averages of whole boxes is `factor` times what `sumsAt` gives.
struct WholeBoxSums {
    explicit WholeBoxSums(const PeakSearch& search)
        : window(search.windowBins),
          guard(search.guardBins),
          factor(search.prominence / (guard < window ? 2 * (window - guard) : 2 * window + 1)) {}

    template <class D>
    HWY_INLINE hn::Vec<D> sumsAt(D d, const double* sums, int bin) const {
        const auto outer =
            hn::Sub(hn::LoadU(d, sums + bin + window + 1), hn::LoadU(d, sums + bin - window));
        if (guard >= window) {
            return outer;
        }
        return hn::Sub(
            outer, hn::Sub(hn::LoadU(d, sums + bin + guard + 1), hn::LoadU(d, sums + bin - guard)));
    }

    int window;
    int guard;
    double factor;
};

// What stands `prominence` above the first floor is taken out.
HWY_INLINE void sumWithoutPeaks(const PeakSearch& search, const PeakSearchBuffers& buffers) {
    const int end = std::min(search.binCount, search.lastBin + search.windowBins + 1);
    const WholeBoxes whole(search, 0, end);
    const WholeBoxSums boxes(search);
    const auto cutBox = [&](auto d, int bin) HWY_ATTR {
        const double average = ringAverage(search, buffers.sums, bin);
        const double power = buffers.power[bin];
        return hn::Set(d, search.prominence * average < power ? 0.0 : power);
    };
    const auto wholeBox = [&](auto d, int bin) HWY_ATTR {
        const auto limit = hn::Mul(boxes.sumsAt(d, buffers.sums, bin), hn::Set(d, boxes.factor));
        const auto power = hn::LoadU(d, buffers.power + bin);
        return hn::IfThenZeroElse(hn::Lt(limit, power), power);
    };
    buffers.floorSums[0] = 0.0;
    extendSums(OneBin(), 0, whole.begin, buffers.floorSums, cutBox);
    const int rest = extendSums(Bins(), whole.begin, whole.end, buffers.floorSums, wholeBox);
    extendSums(OneBin(), rest, end, buffers.floorSums, cutBox);
}

HWY_INLINE int collectCandidates(const PeakSearch& search, const double* levelsDB,
                                 const PeakSearchBuffers& buffers) {
    constexpr double slack = 0.999;
    const int end = search.lastBin + 1;
    const WholeBoxes whole(search, search.firstBin, end);
    const WholeBoxSums boxes(search);
    int count = 0;
    const auto takeMaximaOneByOne = [&](int from, int to) {
        for (int bin = from; bin < to; ++bin) {
            if (levelsDB[bin - 1] < levelsDB[bin]) {
                buffers.candidates[count++] = bin;
            }
        }
    };
    takeMaximaOneByOne(search.firstBin, whole.begin);
    const Bins d;
    const auto factor = hn::Set(d, boxes.factor * slack);
    const auto minLevel = hn::Set(d, search.minLevelDB);
    int bin = whole.begin;
    for (; bin + laneCount<Bins> <= whole.end; bin += laneCount<Bins>) {
        const auto level = hn::LoadU(d, levelsDB + bin);
        const auto rises = hn::Lt(hn::LoadU(d, levelsDB + bin - 1), level);
        const auto notATop = hn::Gt(hn::LoadU(d, levelsDB + bin + 1), level);
        const auto tooSoft = hn::Lt(level, minLevel);
        const auto limit = hn::Mul(boxes.sumsAt(d, buffers.floorSums, bin), factor);
        const auto inTheFloor = hn::Lt(hn::LoadU(d, buffers.power + bin), limit);
        const auto turnedDown = hn::Or(hn::Or(notATop, tooSoft), inTheFloor);
        std::array<std::uint8_t, 8> bits{};
        hn::StoreMaskBits(d, hn::AndNot(turnedDown, rises), bits.data());
        for (unsigned left = bits[0]; left != 0; left &= left - 1) {
            buffers.candidates[count++] = bin + __builtin_ctz(left);
        }
    }
    takeMaximaOneByOne(bin, end);
    return count;
}

int findPeakCandidatesOnTarget(const PeakSearch& search, const double* levelsDB,
                               const float* magnitudes, const PeakSearchBuffers& buffers) {
    const int used = search.usedBinCount();
    if (magnitudes != nullptr) {
        sumPowers(used, buffers, [&](auto d, int bin) HWY_ATTR {
            return powersOfMagnitudes(d, magnitudes + bin);
        });
    } else {
        sumPowers(used, buffers, [&](auto d, int bin) HWY_ATTR {
            return powerOfDecibels(d, hn::LoadU(d, levelsDB + bin));
        });
    }
    sumWithoutPeaks(search, buffers);
    return collectCandidates(search, levelsDB, buffers);
}

}  // namespace HWY_NAMESPACE
}  // namespace TarvaneKit
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace TarvaneKit {

HWY_EXPORT(findPeakCandidatesOnTarget);

int findPeakCandidates(const PeakSearch& search, const double* levelsDB, const float* magnitudes,
                       const PeakSearchBuffers& buffers) {
    return HWY_DYNAMIC_DISPATCH(findPeakCandidatesOnTarget)(search, levelsDB, magnitudes, buffers);
}

}  // namespace TarvaneKit
#endif  // HWY_ONCE
