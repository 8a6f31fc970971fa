#include "Displays/Spectrum/SpectrumGeometry.h"

namespace TarvaneApp {

namespace {

// Bars under this many device pixels keep their fractions.
constexpr double narrowBar = 3.0;

}  // namespace

QRectF sharpened(const QRectF& bar, const PixelGrid& grid) {
    QRectF result = bar;
    if (bar.width() >= narrowBar * grid.lineWidth(0.0)) {
        result.setLeft(grid.snapped(bar.left()));
        result.setRight(grid.snapped(bar.right()));
    }
    return result;
}

QPainterPath smoothedPath(const std::vector<QPointF>& points,
                          std::optional<double> closingBaseline) {
    QPainterPath path;
    if (points.empty()) {
        return path;
    }
    if (closingBaseline) {
        path.moveTo(points.front().x(), *closingBaseline);
        path.lineTo(points.front());
    } else {
        path.moveTo(points.front());
    }
    for (std::size_t i = 1; i + 1 < points.size(); ++i) {
        path.quadTo(points[i], (points[i] + points[i + 1]) / 2.0);
    }
    path.lineTo(points.back());
    if (closingBaseline) {
        path.lineTo(points.back().x(), *closingBaseline);
        path.closeSubpath();
    }
    return path;
}

}  // namespace TarvaneApp
