#include "Displays/Spectrum/SpectrumDrawing.h"

#include <QLinearGradient>
#include <QPainter>
#include <algorithm>

#include "Displays/PixelGrid.h"
#include "Displays/SharpLine.h"
#include "Displays/Spectrum/SpectrumGeometry.h"
#include "Displays/Spectrum/SpectrumLabels.h"

namespace TarvaneApp {

using TarvaneKit::OctaveBand;

namespace {

constexpr double limitOpacity = 0.4;  // of floor and ceiling
constexpr double ruleDash = 5.0;
constexpr double ruleGap = 4.0;

constexpr double curveWidth = 1.5;
constexpr double curveDash = 6.0;
constexpr double curveGap = 4.0;

void strokeLine(QPainter& painter, const std::vector<QPointF>& points, const QColor& color,
                double width) {
    painter.setRenderHint(QPainter::Antialiasing);
    QPen pen(color, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    pen.setMiterLimit(10.0);
    painter.strokePath(smoothedPath(points), pen);
}

std::vector<QRectF> barsOf(const SpectrumView& view, const std::vector<OctaveBand>& bands,
                           const std::vector<double>& levelsDB, double offsetDB, const QSizeF& size,
                           const PixelGrid& grid) {
    std::vector<QRectF> bars;
    if (!match(bands, levelsDB)) {
        return bars;
    }
    const FrequencyAxis axis = view.frequencyAxis();
    bars.reserve(bands.size());
    for (std::size_t i = 0; i < bands.size(); ++i) {
        bars.push_back(
            sharpened(bandBar(view, axis, bands[i], levelsDB[i] - offsetDB, size), grid));
    }
    return bars;
}

// Centred on the bar's level.
void drawCap(QPainter& painter, const QRectF& bar, double thickness, const QColor& color) {
    painter.fillRect(QRectF(bar.left(), bar.top() - thickness / 2.0, bar.width(), thickness),
                     color);
}

void drawCaps(QPainter& painter, const std::vector<QRectF>& bars, double thickness,
              const QColor& color) {
    painter.setRenderHint(QPainter::Antialiasing);
    for (const QRectF& bar : bars) {
        drawCap(painter, bar, thickness, color);
    }
}

void drawLine(QPainter& painter, const SpectrumView& view, const QSizeF& size) {
    const std::vector<QPointF> points = linePoints(view, view.lineSpectrumDB, size);
    if (points.empty()) {
        return;
    }
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath area = smoothedPath(points, size.height());
    area.setFillRule(Qt::WindingFill);
    painter.fillPath(area, Theme::spectrumFillGradient(view.traceColor, size.height()));
    strokeLine(painter, points, view.traceColor, SpectrumStroke::line);
}

void drawLinePeakHold(QPainter& painter, const SpectrumView& view, const QSizeF& size) {
    if (view.linePeakHoldDB.size() == view.lineSpectrumDB.size()) {
        strokeLine(painter, linePoints(view, view.linePeakHoldDB, size), view.peakColor,
                   SpectrumStroke::linePeakHold);
    }
}

void drawBands(QPainter& painter, const SpectrumView& view, const QSizeF& size) {
    painter.setRenderHint(QPainter::Antialiasing);
    const QBrush fill(Theme::spectrumFillGradient(view.traceColor, size.height()));
    for (const QRectF& bar : barsOf(view, view.bands, view.bandLevelsDB, view.levelOffsetDB, size,
                                    PixelGrid(painter))) {
        painter.fillRect(bar, fill);
        drawCap(painter, bar, SpectrumStroke::bandCap, view.traceColor);
    }
}

void drawBandPeakHold(QPainter& painter, const SpectrumView& view, const QSizeF& size) {
    drawCaps(
        painter,
        barsOf(view, view.bands, view.bandPeakHoldDB, view.levelOffsetDB, size, PixelGrid(painter)),
        SpectrumStroke::bandPeakHold, view.peakColor);
}

void drawOverlay(QPainter& painter, const SpectrumView& view, const SpectrumOverlay& overlay,
                 const QSizeF& size) {
    if (view.showsLine()) {
        strokeLine(painter,
                   linePoints(view, overlay.lineSpectrumDB, size, overlay.sampleRate,
                              overlay.levelOffsetDB),
                   overlay.color, SpectrumStroke::overlay);
    } else {
        drawCaps(painter,
                 barsOf(view, overlay.bands, overlay.bandLevelsDB, overlay.levelOffsetDB, size,
                        PixelGrid(painter)),
                 SpectrumStroke::bandPeakHold, overlay.color);
    }
}

void drawGridLines(QPainter& painter, const SpectrumView& view, const QSizeF& size) {
    const QRectF plot(QPointF(), size);
    const FrequencyAxis axis = view.frequencyAxis();
    for (const double frequencyHz : FrequencyAxis::gridLines) {
        paintVerticalLine(painter, axis.x(frequencyHz, size.width()), plot, Theme::gridLine);
    }
    for (const double level : view.levelGridLines()) {
        paintHorizontalLine(painter, view.y(level, size.height()), plot,
                            level == 0.0 ? Theme::gridLineStrong : Theme::gridLine);
    }
}

void drawFloorAndCeiling(QPainter& painter, const SpectrumView& view, const QSizeF& size) {
    const PixelGrid grid(painter);
    for (const auto& levelDB : {view.spectrogramFloorDB, view.spectrogramCeilingDB}) {
        const auto y = view.ruleY(levelDB, size.height());
        if (!y) {
            continue;
        }
        const double top = grid.lineStart(*y, 1.0, 0.0, size.height());
        for (double x = 0.0; x < size.width(); x += ruleDash + ruleGap) {
            const double left = grid.snapped(x);
            const double right = grid.snapped(std::min(x + ruleDash, size.width()));
            painter.fillRect(QRectF(left, top, right - left, grid.lineWidth(1.0)),
                             Theme::faded(Qt::white, limitOpacity));
        }
    }
}

}  // namespace

void drawRules(QPainter& painter, const SpectrumView& view, const QSizeF& size) {
    drawGridLines(painter, view, size);
    drawFloorAndCeiling(painter, view, size);
}

void drawTargetCurve(QPainter& painter, const SpectrumView& view, const QSizeF& size) {
    const std::vector<QPointF> points = view.targetCurve
                                            ? targetCurvePoints(view, *view.targetCurve, size)
                                            : std::vector<QPointF>();
    if (points.empty()) {
        return;
    }
    QPen pen(Theme::targetCurve, curveWidth, Qt::CustomDashLine, Qt::FlatCap, Qt::MiterJoin);
    pen.setDashPattern({curveDash / curveWidth, curveGap / curveWidth});  // in widths of the line
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(pen);
    painter.drawPolyline(points.data(), static_cast<int>(points.size()));
}

void drawRingAlertMarker(QPainter& painter, const SpectrumView& view, const QSizeF& size) {
    if (view.activeRingAlert) {
        paintVerticalLine(painter,
                          view.frequencyAxis().x(view.activeRingAlert->frequencyHz, size.width()),
                          QRectF(QPointF(), size), Theme::ringAlert, SpectrumStroke::ringAlert);
    }
}

void drawLabels(QPainter& painter, const SpectrumView& view, const QSizeF& size,
                const Typeface& typeface) {
    const SpectrumLabels labels = layoutLabels(view, size, typeface);
    paintLabels(painter, labels.grid, typeface);
    paintLabels(painter, labels.floorCeiling, typeface);
    paintLabels(painter, labels.curve, typeface);
}

void paint(QPainter& painter, const SpectrumView& view, const QSizeF& size,
           const Typeface& typeface) {
    drawRules(painter, view, size);
    if (view.showsLine()) {
        drawLine(painter, view, size);
        if (view.showPeakHold) {
            drawLinePeakHold(painter, view, size);
        }
    }
    if (view.showsBands()) {
        drawBands(painter, view, size);
        if (view.showPeakHold) {
            drawBandPeakHold(painter, view, size);
        }
    }
    for (const SpectrumOverlay& overlay : view.overlays) {
        drawOverlay(painter, view, overlay, size);
    }
    drawTargetCurve(painter, view, size);
    drawRingAlertMarker(painter, view, size);
    drawLabels(painter, view, size, typeface);
}

QLinearGradient Theme::spectrumFillGradient(const QColor& color, double height) {
    QLinearGradient gradient(0.0, 0.0, 0.0, height);
    gradient.setColorAt(0.0, faded(color, 0.85));
    gradient.setColorAt(0.8, faded(color, 0.65));
    gradient.setColorAt(1.0, faded(QColor::fromRgbF(0.02F, 0.03F, 0.05F), 0.9));
    return gradient;
}

}  // namespace TarvaneApp
