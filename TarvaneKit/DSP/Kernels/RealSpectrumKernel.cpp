// A real signal x of N samples is transformed at half the length: z[n] = x[2n] + i x[2n+1] gives
// Z, and with M = N/2, W = exp(-2 pi i k / N) and the transforms E and O of the even and the odd
// samples,
//
//     2 E[k] =  Z[k] + conj(Z[M-k])          X[k]   = E[k] + W O[k]
//     2 O[k] = (Z[k] - conj(Z[M-k])) / i     X[M-k] = conj(E[k] - W O[k])
//
// so that one step gives two bins, one counted from each end, and only magnitudes are stored:
// that is less work and less memory than a transform that writes X out. Bin 0 is the sum of all
// samples, Re Z[0] + Im Z[0].

#include "DSP/Kernels/RealSpectrumKernel.h"

#include <cmath>

#include "Core/Contract.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "DSP/Kernels/RealSpectrumKernel.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace TarvaneKit {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

template <class D>
constexpr int laneCount = static_cast<int>(hn::MaxLanes(D()));

template <class D>
HWY_INLINE int windowFrom(D d, int i, const float* samples, const float* window, float* out,
                          int count) {
    for (; i + laneCount<D> <= count; i += laneCount<D>) {
        hn::StoreU(hn::Mul(hn::LoadU(d, samples + i), hn::LoadU(d, window + i)), d, out + i);
    }
    return i;
}

void applyWindowOnTarget(const float* samples, const float* window, float* out, int count) {
    const int done = windowFrom(hn::CappedTag<float, 16>(), 0, samples, window, out, count);
    windowFrom(hn::CappedTag<float, 1>(), done, samples, window, out, count);
}

template <class D>
HWY_INLINE hn::Vec<D> magnitude(hn::Vec<D> re, hn::Vec<D> im, hn::Vec<D> scale) {
    return hn::Mul(hn::Sqrt(hn::MulAdd(re, re, hn::Mul(im, im))), scale);
}

// Bins k and M-k from `k` on to M/2, as long as whole vectors fit; returns the next k.
template <class D>
HWY_INLINE int magnitudesFrom(D d, int k, const PackedSpectrum& packed, float scale,
                              float* magnitudes) {
    const auto halfScale = hn::Set(d, 0.5F * scale);
    for (; k + laneCount<D> <= packed.count / 2 + 1; k += laneCount<D>) {
        const int mirrored = packed.count - k - laneCount<D> + 1;
        hn::Vec<D> a, b, c, e;
        hn::LoadInterleaved2(d, packed.values + 2 * k, a, b);
        hn::LoadInterleaved2(d, packed.values + 2 * mirrored, c, e);
        c = hn::Reverse(d, c);
        e = hn::Reverse(d, e);
        const auto cosine = hn::LoadU(d, packed.cosines + (k - 1));
        const auto sine = hn::LoadU(d, packed.sines + (k - 1));
        const auto evenRe = hn::Add(a, c);
        const auto evenIm = hn::Sub(b, e);
        const auto p = hn::Add(b, e);
        const auto q = hn::Sub(a, c);
        const auto turnedRe = hn::NegMulAdd(q, sine, hn::Mul(p, cosine));
        const auto turnedIm = hn::MulAdd(p, sine, hn::Mul(q, cosine));
        const auto low =
            magnitude<D>(hn::Add(evenRe, turnedRe), hn::Sub(evenIm, turnedIm), halfScale);
        const auto high =
            magnitude<D>(hn::Sub(evenRe, turnedRe), hn::Add(evenIm, turnedIm), halfScale);
        hn::StoreU(low, d, magnitudes + k);
        hn::StoreU(hn::Reverse(d, high), d, magnitudes + mirrored);
    }
    return k;
}

void packedMagnitudesOnTarget(const PackedSpectrum& packed, float scale, float* magnitudes) {
    magnitudes[0] = std::fabs(packed.values[0] + packed.values[1]) * scale;
    const int k = magnitudesFrom(hn::CappedTag<float, 16>(), 1, packed, scale, magnitudes);
    magnitudesFrom(hn::CappedTag<float, 1>(), k, packed, scale, magnitudes);
}

}  // namespace HWY_NAMESPACE
}  // namespace TarvaneKit
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace TarvaneKit {

HWY_EXPORT(applyWindowOnTarget);
HWY_EXPORT(packedMagnitudesOnTarget);

void applyWindow(std::span<const float> samples, std::span<const float> window,
                 std::span<float> out) {
    TARVANE_PRECONDITION(samples.size() == window.size() && out.size() >= window.size());
    HWY_DYNAMIC_DISPATCH(applyWindowOnTarget)
    (samples.data(), window.data(), out.data(), static_cast<int>(window.size()));
}

void packedMagnitudes(const PackedSpectrum& packed, float scale, float* magnitudes) {
    HWY_DYNAMIC_DISPATCH(packedMagnitudesOnTarget)(packed, scale, magnitudes);
}

}  // namespace TarvaneKit
#endif  // HWY_ONCE
