#include "TargetCurves/TargetCurve.h"

#include <algorithm>

#include "Core/PiecewiseLinear.h"

namespace TarvaneKit {

TargetCurve TargetCurve::create(std::string name, std::vector<TargetCurvePoint> points) {
    std::ranges::stable_sort(points, {}, &TargetCurvePoint::frequencyHz);
    return {.name = std::move(name), .points = std::move(points)};
}

std::optional<double> TargetCurve::level(double frequencyHz) const {
    return piecewiseLinear<TargetCurvePoint>(points, &TargetCurvePoint::frequencyHz,
                                             &TargetCurvePoint::levelDB, frequencyHz);
}

}  // namespace TarvaneKit
