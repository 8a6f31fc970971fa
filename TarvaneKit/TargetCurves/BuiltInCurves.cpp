#include "TargetCurves/BuiltInCurves.h"

#include <algorithm>

namespace TarvaneKit::BuiltInCurves {

const TargetCurve& flat() {
    static const TargetCurve curve = TargetCurve::create("Flat", {{20.0, 0.0}, {20000.0, 0.0}});
    return curve;
}

const TargetCurve& xCurve() {
    static const TargetCurve curve =
        TargetCurve::create("X-Curve (SMPTE ST202 / ISO 2969)", {{20.0, 0.0},
                                                                 {63.0, 0.0},
                                                                 {2000.0, 0.0},
                                                                 {4000.0, -3.0},
                                                                 {8000.0, -6.0},
                                                                 {16000.0, -9.0},
                                                                 {20000.0, -9.0}});
    return curve;
}

const std::vector<TargetCurve>& all() {
    static const std::vector<TargetCurve> curves{flat(), xCurve()};
    return curves;
}

std::optional<TargetCurve> named(std::string_view name) {
    const auto found = std::ranges::find(all(), name, &TargetCurve::name);
    return found != all().end() ? std::optional(*found) : std::nullopt;
}

}  // namespace TarvaneKit::BuiltInCurves
