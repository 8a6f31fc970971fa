// A reference line over the spectrum: the response that a system is tuned to. Its levels are
// relative; where its 0 dB sits on the display is the channel's own setting.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Core/Coding.h"

namespace TarvaneKit {

struct TargetCurvePoint {
    double frequencyHz = 0.0;
    double levelDB = 0.0;  ///< re the curve's own 0 dB

    bool operator==(const TargetCurvePoint&) const = default;
};

struct TargetCurve {
    /// Also its identity: settings store the name alone.
    std::string name;
    /// Ascending by frequency. A decoded record is trusted as it stands.
    std::vector<TargetCurvePoint> points;

    /// Sorts the points, those of equal frequency keeping their given order.
    static TargetCurve create(std::string name, std::vector<TargetCurvePoint> points);

    /// Straight lines in Hz between the points, flat beyond them; empty without points.
    std::optional<double> level(double frequencyHz) const;

    bool operator==(const TargetCurve&) const = default;
};

template <>
struct Coding<TargetCurvePoint> {
    static constexpr auto keys = std::tuple{
        required("frequencyHz", &TargetCurvePoint::frequencyHz),
        required("levelDB", &TargetCurvePoint::levelDB),
    };
};

template <>
struct Coding<TargetCurve> {
    static constexpr auto keys = std::tuple{
        required("name", &TargetCurve::name),
        required("points", &TargetCurve::points),
    };
};

}  // namespace TarvaneKit
