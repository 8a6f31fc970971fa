#include "Displays/Spectrum/SpectrumView.h"

#include <QFontMetricsF>
#include <QLinearGradient>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "Displays/Readouts/ReadoutText.h"
#include "Displays/SharpLine.h"
#include "Displays/TabularText.h"

namespace TarvaneApp {

using TarvaneKit::OctaveBand;
using TarvaneKit::RingAlert;
using TarvaneKit::TargetCurve;

namespace {

constexpr double levelStepDB = 20.0;
constexpr int targetCurveSteps = 200;

constexpr double ruleOpacity = 0.4;  // of floor and ceiling
constexpr double ruleDash = 5.0;
constexpr double ruleGap = 4.0;

constexpr double labelSize = 9.0;
constexpr double labelOpacity = 0.55;
constexpr double labelRadius = 2.0;
constexpr double frequencyLabelGap = 3.0;   // between a rule and its label
constexpr double frequencyLabelTop = 10.0;  // above the bottom
constexpr double flippedWidth = 20.0;       // a rule nearer to the right edge has its label inside
constexpr double levelLabelLeft = 4.0;
constexpr double lowestLabelShift = -20.0;  // or as much more as clears the frequency labels
constexpr double highestLabelShift = 2.0;
constexpr double labelShift = -6.0;
constexpr double floorCeilingGap = 4.0;  // to the right edge
constexpr double floorCeilingShift = -15.0;

constexpr double hoverSize = 11.0;
constexpr double hoverOpacity = 0.95;
constexpr double hoverRadius = 4.0;
constexpr double hoverMiddle = 14.0;
constexpr double hoverInset = 55.0;
constexpr double hoverMarginAcross = 6.0;
constexpr double hoverMarginUpDown = 3.0;

// Bars under this many device pixels keep their fractions.
constexpr double narrowBar = 3.0;

QFont labelFont(const Typeface& typeface) {
    return typeface.systemFont(labelSize, QFont::Medium);
}

QFont hoverFont(const Typeface& typeface) {
    return typeface.monospacedFont(hoverSize, QFont::Medium);
}

QPen roundPen(const QColor& color, double width) {
    QPen pen(color, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    pen.setMiterLimit(10.0);
    return pen;
}

bool match(const std::vector<OctaveBand>& bands, const std::vector<double>& levelsDB) {
    return !bands.empty() && bands.size() == levelsDB.size();
}

QString levelLabel(double levelDB) {
    const int level = static_cast<int>(levelDB);
    return (level >= 1 ? QStringLiteral("+") : QString()) + QString::number(level);
}

void paintLabels(QPainter& painter, const std::vector<SpectrumLabel>& labels,
                 const Typeface& typeface) {
    const QFont font = labelFont(typeface);
    const double ascent = QFontMetricsF(font).ascent();
    painter.setRenderHint(QPainter::Antialiasing);
    for (const SpectrumLabel& label : labels) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(Theme::faded(Theme::background, labelOpacity));
        painter.drawRoundedRect(label.plate(), labelRadius, labelRadius);
        painter.setPen(Theme::primaryText);
        TabularText::draw(painter, QPointF(label.rect.left(), label.rect.top() + ascent),
                          label.text, font);
    }
}

// Places labels one after another, each only where it is clear of those before it.
class LabelPlacer {
  public:
    LabelPlacer(const QSizeF& size, const Typeface& typeface)
        : bounds_(QPointF(), size),
          font_(labelFont(typeface)),
          height_(QFontMetricsF(font_).height()),
          ascent_(QFontMetricsF(font_).ascent()) {}

    // The top of a label that stands just above those of the bottom row.
    double topOverBottomRow() const { return lowestTop() - height_ - 3.0; }
    double width(const QString& text) const { return TabularText::width(text, font_); }

    // Baselines stay inside the graph; below them there is nothing in numbers and capitals.
    bool place(std::vector<SpectrumLabel>& labels, const QString& text, double left, double top) {
        const SpectrumLabel label{text,
                                  QRectF(left, std::min(top, lowestTop()), width(text), height_)};
        const QRectF ink(label.rect.left(), label.rect.top(), label.rect.width(), ascent_);
        const bool isClear =
            bounds_.contains(ink) && std::ranges::none_of(taken_, [&](const QRectF& other) {
                return other.intersects(label.plate());
            });
        if (isClear) {
            taken_.push_back(label.plate());
            labels.push_back(label);
        }
        return isClear;
    }

  private:
    double lowestTop() const {
        return std::min(bounds_.bottom() - frequencyLabelTop, bounds_.bottom() - 1.0 - ascent_);
    }

    QRectF bounds_;
    QFont font_;
    double height_;
    double ascent_;
    std::vector<QRectF> taken_;
};

void placeFrequencies(LabelPlacer& placer, std::vector<SpectrumLabel>& labels,
                      const SpectrumView& view, const QSizeF& size) {
    const FrequencyAxis axis = view.frequencyAxis();
    for (const double frequencyHz : FrequencyAxis::byImportance) {
        const QString text = FrequencyAxis::label(frequencyHz);
        const double x = axis.x(frequencyHz, size.width());
        const bool isInside = x <= size.width() - flippedWidth;
        placer.place(labels, text,
                     isInside ? x + frequencyLabelGap : x - frequencyLabelGap - placer.width(text),
                     size.height() - frequencyLabelTop);
    }
}

void placeLevels(LabelPlacer& placer, std::vector<SpectrumLabel>& labels, const SpectrumView& view,
                 const QSizeF& size) {
    const std::vector<double> levels = view.levelGridLines();
    const auto place = [&](double levelDB, double shift) {
        placer.place(labels, levelLabel(levelDB), levelLabelLeft,
                     view.y(levelDB, size.height()) + shift);
    };
    place(levels.front(), std::min(lowestLabelShift, placer.topOverBottomRow() - size.height()));
    place(levels.back(), highestLabelShift);
    for (std::size_t i = 1; i + 1 < levels.size(); ++i) {
        place(levels[i], labelShift);
    }
}

// Above its rule; under it where the top or another label is in the way, or above that.
void placeFloorCeiling(LabelPlacer& placer, std::vector<SpectrumLabel>& labels,
                       const SpectrumView& view, const QSizeF& size) {
    const auto place = [&](const std::optional<double>& levelDB, const QString& text) {
        const auto y = view.ruleY(levelDB, size.height());
        if (!y) {
            return;
        }
        const double left = size.width() - floorCeilingGap - placer.width(text);
        for (const double top :
             {*y + floorCeilingShift, *y + floorCeilingGap, placer.topOverBottomRow()}) {
            if (placer.place(labels, text, left, top)) {
                return;
            }
        }
    };
    place(view.spectrogramCeilingDB, QStringLiteral("CEILING"));
    place(view.spectrogramFloorDB, QStringLiteral("FLOOR"));
}

}  // namespace

// --- arithmetic

double SpectrumView::y(double levelDB, double height) const {
    const double bottom = axisBottomDB();
    const double top = axisTopDB();
    if (!(levelDB > bottom)) {
        return height;
    }
    return levelDB > top ? 0.0 : height - height * ((levelDB - bottom) / (top - bottom));
}

double SpectrumView::levelAt(double y, double height) const {
    return axisBottomDB() + (height - y) / height * (axisTopDB() - axisBottomDB());
}

std::vector<double> SpectrumView::levelGridLines() const {
    std::vector<double> levels;
    for (double level = axisBottomDB(); level <= axisTopDB(); level += levelStepDB) {
        levels.push_back(level);
    }
    return levels;
}

std::vector<QPointF> SpectrumView::linePoints(const std::vector<double>& levelsDB,
                                              const QSizeF& size, std::optional<double> rate,
                                              std::optional<double> offset) const {
    const FrequencyAxis axis = frequencyAxis();
    const double lineHz = rate.value_or(sampleRate) / fftSize;
    const double offsetDB = offset.value_or(levelOffsetDB);
    std::vector<QPointF> points;
    points.reserve(levelsDB.size());
    for (std::size_t i = 0; i < levelsDB.size(); ++i) {
        const double frequencyHz = lineHz * static_cast<double>(i);
        if (frequencyHz > maxHz) {
            break;
        }
        if (frequencyHz >= minHz) {
            points.emplace_back(axis.x(frequencyHz, size.width()),
                                y(levelsDB[i] - offsetDB, size.height()));
        }
    }
    return points;
}

QRectF SpectrumView::bar(const FrequencyAxis& axis, const OctaveBand& band, double levelDB,
                         const QSizeF& size) const {
    const double left = axis.x(band.lowerEdgeHz, size.width());
    const double right = axis.x(band.upperEdgeHz, size.width());
    const double top = y(levelDB, size.height());
    return {left + 0.5, top, std::max(right - left - 1.0, 1.0), size.height() - top};
}

std::vector<QPointF> SpectrumView::targetCurvePoints(const TargetCurve& curve,
                                                     const QSizeF& size) const {
    std::vector<QPointF> points;
    if (curve.points.empty()) {
        return points;
    }
    const FrequencyAxis axis = frequencyAxis();
    for (int i = 0; i <= targetCurveSteps; ++i) {
        const double x = size.width() * i / targetCurveSteps;
        const double frequencyHz = axis.frequencyHz(i, targetCurveSteps);
        points.emplace_back(x,
                            y(*curve.level(frequencyHz) + targetCurveReferenceDB, size.height()));
    }
    return points;
}

std::optional<double> SpectrumView::ruleY(const std::optional<double>& levelDB,
                                          double height) const {
    return levelDB && *levelDB > axisBottomDB() && *levelDB < axisTopDB()
               ? std::optional(y(*levelDB, height))
               : std::nullopt;
}

std::optional<double> SpectrumView::levelDB(double atFrequencyHz) const {
    if (!lineSpectrumDB.empty()) {
        const double line = std::round(atFrequencyHz * fftSize / sampleRate);
        if (line >= 0.0 && line < static_cast<double>(lineSpectrumDB.size())) {
            return lineSpectrumDB[static_cast<std::size_t>(line)] - levelOffsetDB;
        }
    }
    const auto band = std::ranges::find_if(bands, [&](const OctaveBand& candidate) {
        return candidate.lowerEdgeHz <= atFrequencyHz && atFrequencyHz < candidate.upperEdgeHz;
    });
    const auto index = static_cast<std::size_t>(band - bands.begin());
    return band != bands.end() && index < bandLevelsDB.size()
               ? std::optional(bandLevelsDB[index] - levelOffsetDB)
               : std::nullopt;
}

QString SpectrumView::hoverLabel(double forFrequencyHz) const {
    QString frequency =
        forFrequencyHz < 1000.0
            ? QString::number(forFrequencyHz, 'f', 0) + QStringLiteral(" Hz")
            : QString::number(forFrequencyHz / 1000.0, 'f', 2) + QStringLiteral(" kHz");
    const auto level = levelDB(forFrequencyHz);
    if (!level) {
        return frequency;
    }
    return QStringLiteral("%1  %2 %3")
        .arg(frequency, levelText(*level),
             scale == RTAScale::dbfs ? QStringLiteral("dBFS") : QStringLiteral("dB"));
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

// --- the plain drawing

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

SpectrumLabels layoutLabels(const SpectrumView& view, const QSizeF& size,
                            const Typeface& typeface) {
    LabelPlacer placer(size, typeface);
    SpectrumLabels labels;
    placeFrequencies(placer, labels.grid, view, size);
    placeLevels(placer, labels.grid, view, size);
    placeFloorCeiling(placer, labels.floorCeiling, view, size);
    return labels;
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

QRectF hoverPlate(const SpectrumView& view, const QSizeF& size, const Typeface& typeface) {
    if (!view.hover.xPosition || !view.hover.frequencyHz) {
        return {};
    }
    const QFont font = hoverFont(typeface);
    const double width = TabularText::width(view.hoverLabel(*view.hover.frequencyHz), font) +
                         2.0 * hoverMarginAcross;
    const double height = QFontMetricsF(font).height() + 2.0 * hoverMarginUpDown;
    const double inset = std::max(hoverInset, width / 2.0);
    const double middle = size.width() > 2.0 * inset
                              ? std::clamp(*view.hover.xPosition, inset, size.width() - inset)
                              : size.width() / 2.0;
    return {middle - width / 2.0, std::max(hoverMiddle - height / 2.0, 0.0), width, height};
}

void paintHover(QPainter& painter, const SpectrumView& view, const QSizeF& size,
                const Typeface& typeface) {
    const QRectF plate = hoverPlate(view, size, typeface);
    if (plate.isEmpty()) {
        return;
    }
    paintVerticalLine(painter, *view.hover.xPosition, QRectF(QPointF(), size),
                      Theme::gridLineStrong);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Theme::faded(Theme::panelBackground, hoverOpacity));
    painter.drawRoundedRect(plate, hoverRadius, hoverRadius);
    const QFont font = hoverFont(typeface);
    painter.setPen(Qt::white);
    TabularText::draw(painter,
                      QPointF(plate.left() + hoverMarginAcross,
                              plate.top() + hoverMarginUpDown + QFontMetricsF(font).ascent()),
                      view.hoverLabel(*view.hover.frequencyHz), font);
}

QLinearGradient Theme::spectrumFillGradient(const QColor& color, double height) {
    QLinearGradient gradient(0.0, 0.0, 0.0, height);
    gradient.setColorAt(0.0, faded(color, 0.85));
    gradient.setColorAt(0.8, faded(color, 0.65));
    gradient.setColorAt(1.0, faded(QColor::fromRgbF(0.02F, 0.03F, 0.05F), 0.9));
    return gradient;
}

}  // namespace TarvaneApp
