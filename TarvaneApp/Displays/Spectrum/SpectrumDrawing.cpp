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
using TarvaneKit::RingAlert;
using TarvaneKit::TargetCurve;

namespace {

constexpr double ruleOpacity = 0.4;  // of floor and ceiling
constexpr double ruleDash = 5.0;
constexpr double ruleGap = 4.0;

QPen roundPen(const QColor& color, double width) {
    QPen pen(color, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    pen.setMiterLimit(10.0);
    return pen;
}

bool match(const std::vector<OctaveBand>& bands, const std::vector<double>& levelsDB) {
    return !bands.empty() && bands.size() == levelsDB.size();
}

}  // namespace

void SpectrumView::drawGridLines(QPainter& painter, const QSizeF& size) const {
    const QRectF plot(QPointF(), size);
    const FrequencyAxis axis = frequencyAxis();
    for (const double frequencyHz : FrequencyAxis::gridLines) {
        paintVerticalLine(painter, axis.x(frequencyHz, size.width()), plot, Theme::gridLine);
    }
    for (const double level : levelGridLines()) {
        paintHorizontalLine(painter, y(level, size.height()), plot,
                            level == 0.0 ? Theme::gridLineStrong : Theme::gridLine);
    }
}

void SpectrumView::drawFloorCeilingLines(QPainter& painter, const QSizeF& size) const {
    const PixelGrid grid(painter);
    for (const auto& levelDB : {spectrogramFloorDB, spectrogramCeilingDB}) {
        const auto ruleTop = ruleY(levelDB, size.height());
        if (!ruleTop) {
            continue;
        }
        const double top = grid.lineStart(*ruleTop, 1.0, 0.0, size.height());
        for (double x = 0.0; x < size.width(); x += ruleDash + ruleGap) {
            const double left = grid.snapped(x);
            const double right = grid.snapped(std::min(x + ruleDash, size.width()));
            painter.fillRect(QRectF(left, top, right - left, grid.lineWidth(1.0)),
                             Theme::faded(Qt::white, ruleOpacity));
        }
    }
}

void SpectrumView::drawLine(QPainter& painter, const QSizeF& size) const {
    const std::vector<QPointF> points = linePoints(lineSpectrumDB, size);
    if (points.empty()) {
        return;
    }
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath area = smoothedPath(points, size.height());
    area.setFillRule(Qt::WindingFill);
    painter.fillPath(area, Theme::spectrumFillGradient(traceColor, size.height()));
    painter.strokePath(smoothedPath(points), roundPen(traceColor, SpectrumStroke::line));
}

void SpectrumView::drawLinePeakHold(QPainter& painter, const QSizeF& size) const {
    if (linePeakHoldDB.size() != lineSpectrumDB.size()) {
        return;
    }
    painter.setRenderHint(QPainter::Antialiasing);
    painter.strokePath(smoothedPath(linePoints(linePeakHoldDB, size)),
                       roundPen(peakColor, SpectrumStroke::linePeakHold));
}

void SpectrumView::drawBands(QPainter& painter, const QSizeF& size) const {
    if (!match(bands, bandLevelsDB)) {
        return;
    }
    const FrequencyAxis axis = frequencyAxis();
    const PixelGrid grid(painter);
    painter.setRenderHint(QPainter::Antialiasing);
    const QBrush fill(Theme::spectrumFillGradient(traceColor, size.height()));
    for (std::size_t i = 0; i < bands.size(); ++i) {
        const QRectF rect =
            sharpened(bar(axis, bands[i], bandLevelsDB[i] - levelOffsetDB, size), grid);
        painter.fillRect(rect, fill);
        painter.fillRect(QRectF(rect.left(), rect.top() - SpectrumStroke::bandCap / 2.0,
                                rect.width(), SpectrumStroke::bandCap),
                         traceColor);
    }
}

void SpectrumView::drawPeakHold(QPainter& painter, const QSizeF& size) const {
    if (!match(bands, bandPeakHoldDB)) {
        return;
    }
    const FrequencyAxis axis = frequencyAxis();
    const PixelGrid grid(painter);
    painter.setRenderHint(QPainter::Antialiasing);
    for (std::size_t i = 0; i < bands.size(); ++i) {
        const QRectF rect =
            sharpened(bar(axis, bands[i], bandPeakHoldDB[i] - levelOffsetDB, size), grid);
        painter.fillRect(QRectF(rect.left(), rect.top() - SpectrumStroke::bandPeakHold / 2.0,
                                rect.width(), SpectrumStroke::bandPeakHold),
                         peakColor);
    }
}

void SpectrumView::drawOverlay(QPainter& painter, const SpectrumOverlay& overlay,
                               const QSizeF& size) const {
    painter.setRenderHint(QPainter::Antialiasing);
    if (showsLine()) {
        painter.strokePath(smoothedPath(linePoints(overlay.lineSpectrumDB, size, overlay.sampleRate,
                                                   overlay.levelOffsetDB)),
                           roundPen(overlay.color, SpectrumStroke::overlay));
    } else if (match(overlay.bands, overlay.bandLevelsDB)) {
        const FrequencyAxis axis = frequencyAxis();
        const PixelGrid grid(painter);
        for (std::size_t i = 0; i < overlay.bands.size(); ++i) {
            const QRectF rect = sharpened(
                bar(axis, overlay.bands[i], overlay.bandLevelsDB[i] - overlay.levelOffsetDB, size),
                grid);
            painter.fillRect(QRectF(rect.left(), rect.top() - SpectrumStroke::bandPeakHold / 2.0,
                                    rect.width(), SpectrumStroke::bandPeakHold),
                             overlay.color);
        }
    }
}

void SpectrumView::drawTargetCurve(QPainter& painter, const TargetCurve& curve,
                                   const QSizeF& size) const {
    const std::vector<QPointF> points = targetCurvePoints(curve, size);
    if (points.empty()) {
        return;
    }
    QPen pen(Theme::targetCurve, 1.5, Qt::CustomDashLine, Qt::FlatCap, Qt::MiterJoin);
    pen.setDashPattern({6.0 / 1.5, 4.0 / 1.5});  // in widths of the line
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(pen);
    painter.drawPolyline(points.data(), static_cast<int>(points.size()));
}

void SpectrumView::drawRingAlertMarker(QPainter& painter, const RingAlert& alert,
                                       const QSizeF& size) const {
    paintVerticalLine(painter, frequencyAxis().x(alert.frequencyHz, size.width()),
                      QRectF(QPointF(), size), Theme::ringAlert, SpectrumStroke::ringAlert);
}

void SpectrumView::drawGridLabels(QPainter& painter, const QSizeF& size,
                                  const Typeface& typeface) const {
    paintLabels(painter, layoutLabels(*this, size, typeface).grid, typeface);
}

void SpectrumView::drawFloorCeilingLabels(QPainter& painter, const QSizeF& size,
                                          const Typeface& typeface) const {
    paintLabels(painter, layoutLabels(*this, size, typeface).floorCeiling, typeface);
}

void paint(QPainter& painter, const SpectrumView& view, const QSizeF& size,
           const Typeface& typeface) {
    view.drawGridLines(painter, size);
    view.drawFloorCeilingLines(painter, size);
    if (view.showsLine()) {
        view.drawLine(painter, size);
        if (view.showPeakHold) {
            view.drawLinePeakHold(painter, size);
        }
    }
    if (view.showsBands()) {
        view.drawBands(painter, size);
        if (view.showPeakHold) {
            view.drawPeakHold(painter, size);
        }
    }
    for (const SpectrumOverlay& overlay : view.overlays) {
        view.drawOverlay(painter, overlay, size);
    }
    if (view.targetCurve) {
        view.drawTargetCurve(painter, *view.targetCurve, size);
    }
    if (view.activeRingAlert) {
        view.drawRingAlertMarker(painter, *view.activeRingAlert, size);
    }
    view.drawGridLabels(painter, size, typeface);
    view.drawFloorCeilingLabels(painter, size, typeface);
}

QLinearGradient Theme::spectrumFillGradient(const QColor& color, double height) {
    QLinearGradient gradient(0.0, 0.0, 0.0, height);
    gradient.setColorAt(0.0, faded(color, 0.85));
    gradient.setColorAt(0.8, faded(color, 0.65));
    gradient.setColorAt(1.0, faded(QColor::fromRgbF(0.02F, 0.03F, 0.05F), 0.9));
    return gradient;
}

}  // namespace TarvaneApp
