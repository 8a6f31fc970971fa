// Passes of plain vector code, each over whole vectors and then over what is left one by one.

#include "DSP/Kernels/LevelKernel.h"

#include <cstddef>
#include <limits>
#include <numbers>

#include "Core/Contract.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "DSP/Kernels/LevelKernel.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "DSP/Kernels/Decibels-inl.h"

HWY_BEFORE_NAMESPACE();
namespace TarvaneKit {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

template <class D>
constexpr int laneCount = static_cast<int>(hn::MaxLanes(D()));

// Calls body(d, i) for each vector's first index, d being of one lane for the rest.
template <class T, std::size_t maxLanes, class Body>
HWY_INLINE void forEachVector(int begin, int count, Body body) {
    const hn::CappedTag<T, maxLanes> d;
    const hn::CappedTag<T, 1> one;
    int i = begin;
    for (; i + laneCount<decltype(d)> <= count; i += laneCount<decltype(d)>) {
        body(d, i);
    }
    for (; i < count; ++i) {
        body(one, i);
    }
}

template <class Body>
HWY_INLINE void forEachDoubles(int count, Body body) {
    forEachVector<double, 8>(0, count, body);
}

template <class Body>
HWY_INLINE void forEachFloats(int count, Body body) {
    forEachVector<float, 16>(0, count, body);
}

void squareAmplitudesOnTarget(const float* amplitudes, double floorPower, double* powers,
                              int count) {
    forEachDoubles(count, [=](auto d, int i) HWY_ATTR {
        const hn::Rebind<float, decltype(d)> floats;
        const auto floor = hn::Set(d, floorPower);
        const auto amplitude = hn::PromoteTo(d, hn::LoadU(floats, amplitudes + i));
        const auto power = hn::Mul(amplitude, amplitude);
        hn::StoreU(hn::IfThenElse(hn::Gt(power, floor), power, floor), d, powers + i);
    });
}

void levelsOfPowersOnTarget(const double* powers, LevelFloor floor, double* levelsDB, int count) {
    forEachDoubles(count, [=](auto d, int i) HWY_ATTR {
        const auto power = hn::LoadU(d, powers + i);
        hn::StoreU(decibels(d, power, hn::Set(d, floor.power), hn::Set(d, floor.levelDB)), d,
                   levelsDB + i);
    });
}

void powersOfLevelsOnTarget(const double* levelsDB, double* powers, int count) {
    forEachDoubles(count, [=](auto d, int i) HWY_ATTR {
        hn::StoreU(powerOfDecibels(d, hn::LoadU(d, levelsDB + i)), d, powers + i);
    });
}

void tiltLevelsOnTarget(const double* levelsDB, double frequencyStep, double* tiltedDB, int count) {
    if (count > 0) {
        tiltedDB[0] = levelsDB[0];
    }
    forEachVector<double, 8>(1, count, [=](auto d, int i) HWY_ATTR {
        const auto frequency =
            hn::Mul(hn::Iota(d, static_cast<double>(i)), hn::Set(d, frequencyStep));
        hn::StoreU(hn::Add(hn::LoadU(d, levelsDB + i), tenLog10(d, frequency)), d, tiltedDB + i);
    });
}

void addOnTarget(const double* a, const double* b, double* out, int count) {
    forEachDoubles(count, [=](auto d, int i) HWY_ATTR {
        hn::StoreU(hn::Add(hn::LoadU(d, a + i), hn::LoadU(d, b + i)), d, out + i);
    });
}

void multiplyOnTarget(const double* a, const double* b, double* out, int count) {
    forEachDoubles(count, [=](auto d, int i) HWY_ATTR {
        hn::StoreU(hn::Mul(hn::LoadU(d, a + i), hn::LoadU(d, b + i)), d, out + i);
    });
}

template <class D, class V>
HWY_INLINE V finite(D d, V product) {
    const auto number = hn::IfThenElseZero(hn::Eq(product, product), product);
    return hn::Min(number, hn::Set(d, std::numeric_limits<float>::max()));
}

void multiplyFiniteOnTarget(const float* a, const float* b, float* out, int count) {
    forEachFloats(count, [=](auto d, int i) HWY_ATTR {
        hn::StoreU(finite(d, hn::Mul(hn::LoadU(d, a + i), hn::LoadU(d, b + i))), d, out + i);
    });
}

void scaleFiniteOnTarget(const float* a, float factor, float* out, int count) {
    forEachFloats(count, [=](auto d, int i) HWY_ATTR {
        hn::StoreU(finite(d, hn::Mul(hn::LoadU(d, a + i), hn::Set(d, factor))), d, out + i);
    });
}

void rootMeanSquareOnTarget(const float* a, const float* b, float* out, int count) {
    forEachFloats(count, [=](auto d, int i) HWY_ATTR {
        const auto x = hn::LoadU(d, a + i);
        const auto y = hn::LoadU(d, b + i);
        const auto root = hn::Sqrt(hn::Add(hn::Mul(x, x), hn::Mul(y, y)));
        hn::StoreU(hn::Mul(root, hn::Set(d, std::numbers::sqrt2_v<float> / 2.0F)), d, out + i);
    });
}

void moveTowardsOnTarget(const double* values, double share, double* average, int count) {
    forEachDoubles(count, [=](auto d, int i) HWY_ATTR {
        const auto before = hn::LoadU(d, average + i);
        const auto distance = hn::Sub(hn::LoadU(d, values + i), before);
        hn::StoreU(hn::MulAdd(hn::Set(d, share), distance, before), d, average + i);
    });
}

void followLevelsOnTarget(const double* values, double riseShare, double fallShare, double* average,
                          int count) {
    forEachDoubles(count, [=](auto d, int i) HWY_ATTR {
        const auto value = hn::LoadU(d, values + i);
        const auto before = hn::LoadU(d, average + i);
        const auto share =
            hn::IfThenElse(hn::Ge(value, before), hn::Set(d, riseShare), hn::Set(d, fallShare));
        hn::StoreU(hn::MulAdd(share, hn::Sub(value, before), before), d, average + i);
    });
}

void holdLevelsOnTarget(const double* valuesDB, double fallDB, double* heldDB, int count) {
    forEachDoubles(count, [=](auto d, int i) HWY_ATTR {
        const auto value = hn::LoadU(d, valuesDB + i);
        const auto held = hn::LoadU(d, heldDB + i);
        const auto fallen = hn::Sub(held, hn::Set(d, fallDB));
        hn::StoreU(hn::IfThenElse(hn::Lt(held, value), value, fallen), d, heldDB + i);
    });
}

}  // namespace HWY_NAMESPACE
}  // namespace TarvaneKit
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace TarvaneKit {

HWY_EXPORT(squareAmplitudesOnTarget);
HWY_EXPORT(levelsOfPowersOnTarget);
HWY_EXPORT(powersOfLevelsOnTarget);
HWY_EXPORT(tiltLevelsOnTarget);
HWY_EXPORT(addOnTarget);
HWY_EXPORT(multiplyOnTarget);
HWY_EXPORT(multiplyFiniteOnTarget);
HWY_EXPORT(scaleFiniteOnTarget);
HWY_EXPORT(rootMeanSquareOnTarget);
HWY_EXPORT(moveTowardsOnTarget);
HWY_EXPORT(followLevelsOnTarget);
HWY_EXPORT(holdLevelsOnTarget);

namespace {

int countOf(std::span<const double> values) {
    return static_cast<int>(values.size());
}

int countOf(std::span<const float> values) {
    return static_cast<int>(values.size());
}

}  // namespace

void squareAmplitudes(std::span<const float> amplitudes, double floorPower,
                      std::span<double> powers) {
    TARVANE_PRECONDITION(amplitudes.size() == powers.size());
    HWY_DYNAMIC_DISPATCH(squareAmplitudesOnTarget)
    (amplitudes.data(), floorPower, powers.data(), countOf(powers));
}

void levelsOfPowers(std::span<const double> powers, LevelFloor floor, std::span<double> levelsDB) {
    TARVANE_PRECONDITION(powers.size() == levelsDB.size());
    HWY_DYNAMIC_DISPATCH(levelsOfPowersOnTarget)
    (powers.data(), floor, levelsDB.data(), countOf(levelsDB));
}

void powersOfLevels(std::span<const double> levelsDB, std::span<double> powers) {
    TARVANE_PRECONDITION(levelsDB.size() == powers.size());
    HWY_DYNAMIC_DISPATCH(powersOfLevelsOnTarget)(levelsDB.data(), powers.data(), countOf(powers));
}

void tiltLevels(std::span<const double> levelsDB, double frequencyStep,
                std::span<double> tiltedDB) {
    TARVANE_PRECONDITION(levelsDB.size() == tiltedDB.size());
    HWY_DYNAMIC_DISPATCH(tiltLevelsOnTarget)
    (levelsDB.data(), frequencyStep, tiltedDB.data(), countOf(tiltedDB));
}

void add(std::span<const double> a, std::span<const double> b, std::span<double> out) {
    TARVANE_PRECONDITION(a.size() == out.size());
    TARVANE_PRECONDITION(b.size() == out.size());
    HWY_DYNAMIC_DISPATCH(addOnTarget)(a.data(), b.data(), out.data(), countOf(out));
}

void multiply(std::span<const double> a, std::span<const double> b, std::span<double> out) {
    TARVANE_PRECONDITION(a.size() == out.size());
    TARVANE_PRECONDITION(b.size() == out.size());
    HWY_DYNAMIC_DISPATCH(multiplyOnTarget)(a.data(), b.data(), out.data(), countOf(out));
}

void multiplyFinite(std::span<const float> a, std::span<const float> b, std::span<float> out) {
    TARVANE_PRECONDITION(a.size() == out.size());
    TARVANE_PRECONDITION(b.size() == out.size());
    HWY_DYNAMIC_DISPATCH(multiplyFiniteOnTarget)(a.data(), b.data(), out.data(), countOf(out));
}

void scaleFinite(std::span<const float> a, float factor, std::span<float> out) {
    TARVANE_PRECONDITION(a.size() == out.size());
    HWY_DYNAMIC_DISPATCH(scaleFiniteOnTarget)(a.data(), factor, out.data(), countOf(out));
}

void rootMeanSquare(std::span<const float> a, std::span<const float> b, std::span<float> out) {
    TARVANE_PRECONDITION(a.size() == out.size());
    TARVANE_PRECONDITION(b.size() == out.size());
    HWY_DYNAMIC_DISPATCH(rootMeanSquareOnTarget)(a.data(), b.data(), out.data(), countOf(out));
}

void moveTowards(std::span<const double> values, double share, std::span<double> average) {
    TARVANE_PRECONDITION(values.size() == average.size());
    HWY_DYNAMIC_DISPATCH(moveTowardsOnTarget)
    (values.data(), share, average.data(), countOf(average));
}

void followLevels(std::span<const double> values, double riseShare, double fallShare,
                  std::span<double> average) {
    TARVANE_PRECONDITION(values.size() == average.size());
    HWY_DYNAMIC_DISPATCH(followLevelsOnTarget)
    (values.data(), riseShare, fallShare, average.data(), countOf(average));
}

void holdLevels(std::span<const double> valuesDB, double fallDB, std::span<double> heldDB) {
    TARVANE_PRECONDITION(valuesDB.size() == heldDB.size());
    HWY_DYNAMIC_DISPATCH(holdLevelsOnTarget)
    (valuesDB.data(), fallDB, heldDB.data(), countOf(heldDB));
}

}  // namespace TarvaneKit
#endif  // HWY_ONCE
