#include "Displays/Spectrum/SpectrumGeometry.h"

#include <algorithm>

#include "Displays/Spectrum/SpectrumView.h"

namespace TarvaneApp {

using TarvaneKit::OctaveBand;
using TarvaneKit::TargetCurve;

namespace {

constexpr int targetCurveSteps = 200;

// Bars narrower than this many device pixels are not rounded.
constexpr double narrowBar = 3.0;

}  // namespace

bool match(const std::vector<OctaveBand>& bands, const std::vector<double>& levelsDB) {
    return !bands.empty() && bands.size() == levelsDB.size();
}

std::vector<QPointF> linePoints(const SpectrumView& view, const std::vector<double>& levelsDB,
                                const QSizeF& size, std::optional<double> rate,
                                std::optional<double> offset) {
    const FrequencyAxis axis = view.frequencyAxis();
    const double lineHz = rate.value_or(view.sampleRate) / view.fftSize;
    const double offsetDB = offset.value_or(view.levelOffsetDB);
    std::vector<QPointF> points;
    points.reserve(levelsDB.size());
    for (std::size_t i = 0; i < levelsDB.size(); ++i) {
        const double frequencyHz = lineHz * static_cast<double>(i);
        if (frequencyHz > view.maxHz) {
            break;
        }
        if (frequencyHz >= view.minHz) {
            points.emplace_back(axis.x(frequencyHz, size.width()),
                                view.y(levelsDB[i] - offsetDB, size.height()));
        }
    }
    return points;
}

QRectF bandBar(const SpectrumView& view, const FrequencyAxis& axis, const OctaveBand& band,
               double levelDB, const QSizeF& size) {
    const double left = axis.x(band.lowerEdgeHz, size.width());
    const double right = axis.x(band.upperEdgeHz, size.width());
    const double top = view.y(levelDB, size.height());
    return {left + 0.5, top, std::max(right - left - 1.0, 1.0), size.height() - top};
}

std::vector<QPointF> targetCurvePoints(const SpectrumView& view, const TargetCurve& curve,
                                       const QSizeF& size) {
    std::vector<QPointF> points;
    if (curve.points.empty()) {
        return points;
    }
    const FrequencyAxis axis = view.frequencyAxis();
    for (int i = 0; i <= targetCurveSteps; ++i) {
        const double x = size.width() * i / targetCurveSteps;
        const double frequencyHz = axis.frequencyHz(i, targetCurveSteps);
        points.emplace_back(
            x, view.y(*curve.level(frequencyHz) + view.targetCurveReferenceDB, size.height()));
    }
    return points;
}

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
