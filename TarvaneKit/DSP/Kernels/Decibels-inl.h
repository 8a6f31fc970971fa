// dB of a power and back, on whatever vectors the including kernel runs. Included once per
// instruction set, inside no namespace.

#if defined(TARVANE_DECIBELS_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef TARVANE_DECIBELS_INL_H
#undef TARVANE_DECIBELS_INL_H
#else
#define TARVANE_DECIBELS_INL_H
#endif

#include <hwy/contrib/math/math-inl.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace TarvaneKit {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

/// 10 log10(power) of a power above the floor; `floorDB` exactly of all others, NaN included.
template <class D>
HWY_INLINE hn::Vec<D> decibels(D d, hn::Vec<D> power, hn::Vec<D> floorPower, hn::Vec<D> floorDB) {
    const auto isAbove = hn::Gt(power, floorPower);
    const auto raised = hn::IfThenElse(isAbove, power, floorPower);
    const auto levelDB = hn::Mul(hn::Set(d, 10.0), hn::Log10(d, raised));
    return hn::IfThenElse(isAbove, levelDB, floorDB);
}

/// 10^(levelDB / 10).
template <class D>
HWY_INLINE hn::Vec<D> powerOfDecibels(D d, hn::Vec<D> levelDB) {
    constexpr double tenthOfLogOfTen = 0.23025850929940456840;  // ln(10) / 10
    return hn::Exp(d, hn::Mul(levelDB, hn::Set(d, tenthOfLogOfTen)));
}

}  // namespace HWY_NAMESPACE
}  // namespace TarvaneKit
HWY_AFTER_NAMESPACE();

#endif  // TARVANE_DECIBELS_INL_H
