// A curve given by points over frequency: straight lines in Hz between them, and flat beyond the
// first and the last.
#pragma once

#include <optional>
#include <span>

namespace TarvaneKit {

/// The curve's value at `x`. The points are ascending by `abscissa`; of points that share an
/// abscissa the first counts from below and the last from above. Empty without points.
template <class Point>
std::optional<double> piecewiseLinear(std::span<const Point> points, double Point::*abscissa,
                                      double Point::*ordinate, double x) {
    if (points.empty()) {
        return std::nullopt;
    }
    if (x <= points.front().*abscissa) {
        return points.front().*ordinate;
    }
    if (x >= points.back().*abscissa) {
        return points.back().*ordinate;
    }
    std::size_t low = 0;
    std::size_t high = points.size() - 1;
    while (high - low > 1) {
        const std::size_t middle = (low + high) / 2;
        (points[middle].*abscissa <= x ? low : high) = middle;
    }
    const double span = points[high].*abscissa - points[low].*abscissa;
    // A single point gets here with a NaN, a list that isn't ascending with any pair.
    if (span == 0.0) {
        return points[low].*ordinate;
    }
    return points[low].*ordinate +
           (x - points[low].*abscissa) / span * (points[high].*ordinate - points[low].*ordinate);
}

}  // namespace TarvaneKit
