// dB of a power and back, on whatever vectors the including kernel runs. Included once per
// instruction set, inside no namespace.
//
// How 10 log10 x is computed of a positive normal number x, in 64 bits:
//
//     x = 2^e m, m from sqrt(1/2) to sqrt(2)    10 log10 x = (10 log10 2) e + (10 / ln 10) ln m
//
// so that e is 0 about x = 1, where the two terms would cancel. The exponent comes from the bits of
// x: what sqrt(1/2) lacks to 1, added to them, carries into the exponent just where m would reach
// sqrt(2). As a number it is made by laying it under the exponent of 2^52.
//
// With f = m - 1, which is exact, s = f / (2 + f) and z = s^2 (at most 0.0295),
//
//     ln m = 2 atanh(s) = 2 s + s z P(z) = f + s (z P(z) - f),   P(z) = 2/3 + 2/5 z + 2/7 z^2 + …
//
// where all that is rounded is small beside f. P is the polynomial of degree 6 that keeps the
// error of s z P(z) smallest in proportion to 2 s: 1.3e-18 at the most (Remez' exchange).
//
// In units of u = 2^-53 the error of (10 / ln 10) ln m is at most 1 for its rounding, 0.24 for the
// constant, 1 for the sum f + …, and 0.6 for s, which reaches the result by a fifth: 2.9. With
// e other than 0 that part is no larger than the result, and 10 log10(2) e, off by 0.42, no larger
// than twice the result; so 2.9 + 0.84 + 1 for the last rounding. Where there is no fused
// multiply-add three more roundings come in, of at most 2 together. Below 7 u = 8e-16 in all.
//
// How 10^(L/10) is computed of a level L, the same way back:
//
//     L = (10 log10 2) n + d, n whole, |d| at most half of 10 log10 2
//     10^(L/10) = 2^n e^r, r = (ln 10 / 10) d         e^r = 1 + r + r^2 Q(r)
//
// n is L in octaves plus 1.5 2^52, whose last bits are then the nearest whole number; shifted to
// the exponent's place they multiply by 2^n. 10 log10 2 is taken in two parts, the first of 40
// bits, so that d has no more error than a number of its size however large L is. Q is the
// polynomial of degree 9 of least largest error in proportion to e^r: 3.7e-18 (Remez' exchange).
// d is off by half a unit, r by that and by its own rounding and its constant's, each of a third
// of u at the most since r is below 0.35, and the last sum by a unit: below 4 u = 4.5e-16.

#if defined(TARVANE_DECIBELS_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef TARVANE_DECIBELS_INL_H
#undef TARVANE_DECIBELS_INL_H
#else
#define TARVANE_DECIBELS_INL_H
#endif

#include <hwy/highway.h>

#include <cstdint>
#include <numbers>

HWY_BEFORE_NAMESPACE();
namespace TarvaneKit {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

/// P of the head of this file: even and odd powers side by side.
template <class D>
HWY_INLINE hn::Vec<D> logarithmSeries(D d, hn::Vec<D> z) {
    const auto z2 = hn::Mul(z, z);
    const auto even =
        hn::MulAdd(hn::MulAdd(hn::Set(d, 0.14795950222948812), z2, hn::Set(d, 0.18183564328532595)),
                   z2, hn::Set(d, 0.28571428742388205));
    const auto odd =
        hn::MulAdd(hn::MulAdd(hn::Set(d, 0.15314050495786896), z2, hn::Set(d, 0.22222198573132546)),
                   z2, hn::Set(d, 0.39999999999414676));
    return hn::MulAdd(hn::MulAdd(even, z, odd), z, hn::Set(d, 0.6666666666666734));
}

/// 10 log10(x) of a positive normal number.
template <class D>
HWY_INLINE hn::Vec<D> tenLog10(D d, hn::Vec<D> x) {
    const hn::RebindToUnsigned<D> bits;
    constexpr std::uint64_t bitsOfOne = 0x3FF0000000000000;
    constexpr std::uint64_t bitsOfRootHalf = 0x3FE6A09E667F3BCD;
    constexpr std::uint64_t bitsOfTwoTo52 = 0x4330000000000000;
    constexpr std::uint64_t mantissaBits = 0x000FFFFFFFFFFFFF;
    constexpr double twoTo52AndBias = 0x1p52 + 1023.0;
    constexpr double perOctave = 10.0 * (std::numbers::ln2 * std::numbers::log10e);
    constexpr double perNeper = 10.0 * std::numbers::log10e;

    const auto carried = hn::Add(hn::BitCast(bits, x), hn::Set(bits, bitsOfOne - bitsOfRootHalf));
    const auto biased = hn::Or(hn::ShiftRight<52>(carried), hn::Set(bits, bitsOfTwoTo52));
    const auto e = hn::Sub(hn::BitCast(d, biased), hn::Set(d, twoTo52AndBias));
    const auto m = hn::BitCast(
        d, hn::Add(hn::And(carried, hn::Set(bits, mantissaBits)), hn::Set(bits, bitsOfRootHalf)));
    const auto one = hn::Set(d, 1.0);
    const auto f = hn::Sub(m, one);
    const auto s = hn::Div(f, hn::Add(m, one));
    const auto z = hn::Mul(s, s);
    const auto logarithm = hn::MulAdd(s, hn::MulSub(z, logarithmSeries(d, z), f), f);
    return hn::MulAdd(e, hn::Set(d, perOctave), hn::Mul(logarithm, hn::Set(d, perNeper)));
}

/// 10 log10(power) of a power above the floor, which is a positive normal number; `floorDB`
/// exactly of all others, NaN included.
template <class D>
HWY_INLINE hn::Vec<D> decibels(D d, hn::Vec<D> power, hn::Vec<D> floorPower, hn::Vec<D> floorDB) {
    const auto isAbove = hn::Gt(power, floorPower);
    const auto raised = hn::IfThenElse(isAbove, power, floorPower);
    return hn::IfThenElse(isAbove, tenLog10(d, raised), floorDB);
}

/// Q of the head of this file, in pairs side by side.
template <class D>
HWY_INLINE hn::Vec<D> exponentialSeries(D d, hn::Vec<D> r, hn::Vec<D> r2) {
    const auto q01 = hn::MulAdd(hn::Set(d, 0.16666666666666413), r, hn::Set(d, 0.5000000000000011));
    const auto q23 =
        hn::MulAdd(hn::Set(d, 0.008333333333494461), r, hn::Set(d, 0.041666666666530155));
    const auto q45 =
        hn::MulAdd(hn::Set(d, 0.00019841269506578688), r, hn::Set(d, 0.0013888888943630114));
    const auto q67 =
        hn::MulAdd(hn::Set(d, 2.7557586373840165e-06), r, hn::Set(d, 2.480149309890655e-05));
    const auto q89 =
        hn::MulAdd(hn::Set(d, 2.5000061602835666e-08), r, hn::Set(d, 2.763024837921144e-07));
    const auto low = hn::MulAdd(q23, r2, q01);
    const auto high = hn::MulAdd(hn::MulAdd(q89, r2, q67), r2, q45);
    return hn::MulAdd(high, hn::Mul(r2, r2), low);
}

/// 10^(levelDB / 10) of a level from -3070 to 3080 dB; that of the nearer end beyond it, and of
/// the lower end for NaN. A positive normal number in each case.
template <class D>
HWY_INLINE hn::Vec<D> powerOfDecibels(D d, hn::Vec<D> levelDB) {
    const hn::RebindToUnsigned<D> bits;
    constexpr double octavesPerDB = std::numbers::log2e * std::numbers::ln10 / 10.0;
    constexpr double dbPerOctave = 0x1.8151824c74p+1;  // 10 log10(2), its first 40 bits
    constexpr double dbPerOctaveRest = 2.7847443753860023e-12;
    constexpr double nepersPerDB = 1.0 / (10.0 * std::numbers::log10e);
    const auto lowest = hn::Set(d, -3070.0);
    const auto highest = hn::Set(d, 3080.0);
    const auto wholeNumbers = hn::Set(d, 0x1.8p52);

    const auto raised = hn::IfThenElse(hn::Gt(levelDB, lowest), levelDB, lowest);
    const auto level = hn::IfThenElse(hn::Lt(raised, highest), raised, highest);
    const auto laid = hn::MulAdd(level, hn::Set(d, octavesPerDB), wholeNumbers);
    const auto n = hn::Sub(laid, wholeNumbers);
    const auto rest = hn::NegMulAdd(n, hn::Set(d, dbPerOctaveRest),
                                    hn::NegMulAdd(n, hn::Set(d, dbPerOctave), level));
    const auto r = hn::Mul(rest, hn::Set(d, nepersPerDB));
    const auto r2 = hn::Mul(r, r);
    const auto exponential =
        hn::Add(hn::MulAdd(exponentialSeries(d, r, r2), r2, r), hn::Set(d, 1.0));
    return hn::BitCast(
        d, hn::Add(hn::BitCast(bits, exponential), hn::ShiftLeft<52>(hn::BitCast(bits, laid))));
}

}  // namespace HWY_NAMESPACE
}  // namespace TarvaneKit
HWY_AFTER_NAMESPACE();

#endif  // TARVANE_DECIBELS_INL_H
