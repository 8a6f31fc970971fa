#include "Displays/Readouts/LoudnessReadoutView.h"

#include <QFontMetricsF>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "Displays/Contrast.h"
#include "Displays/PixelGrid.h"
#include "Displays/Plate.h"
#include "Displays/RawText.h"
#include "Displays/Readouts/ClipBadge.h"
#include "Displays/Readouts/ReadoutDrawing.h"
#include "Displays/Readouts/ReadoutText.h"
#include "Displays/TabularText.h"

namespace TarvaneApp {

using ReadoutDrawing::textArea;
using ReadoutDrawing::valueArea;
using TarvaneKit::LoudnessMetric;
using TarvaneKit::RGBAColor;

namespace {

// Sizes at scale 1, in logical pixels.
constexpr double readingsGap = Theme::Space::label;
constexpr double readingPaddingAcross = Theme::Space::related;
constexpr double readingPaddingUpDown = 1.0;
constexpr double readingTitleGap = 5.0;
constexpr double readingUnitGap = 3.0;
// Their numbers are then as high as the smallest texts.
constexpr double leastReadingsScale = 0.75;

QFont titleFont(double scale, const Typeface& typeface) {
    return typeface.systemFont(Theme::Text::footnote * scale, QFont::DemiBold);
}

QFont valueFont(double scale, const Typeface& typeface) {
    return typeface.roundedFont(Theme::Text::title * scale, QFont::DemiBold);
}

QFont unitFont(double scale, const Typeface& typeface) {
    return typeface.systemFont(Theme::Text::tick * scale);
}

// The parts of one reading in its plate, each as wide as it can get.
struct ReadingColumns {
    double title = 0.0;
    double value = 0.0;
    double unit = 0.0;
    double height = 0.0;

    double width(double scale) const {
        const double gaps =
            2.0 * readingPaddingAcross + readingTitleGap + (unit > 0.0 ? readingUnitGap : 0.0);
        return title + value + unit + gaps * scale;
    }
};

ReadingColumns columnsOf(LoudnessMetric metric, double scale, const Typeface& typeface) {
    const LoudnessReadoutView::Reading reading = LoudnessReadoutView{}.reading(metric);
    const QFont value = valueFont(scale, typeface);
    return {.title = QFontMetricsF(titleFont(scale, typeface)).horizontalAdvance(reading.title),
            .value = TabularText::width(LoudnessReadoutView::widthTemplate(), value),
            .unit = QFontMetricsF(unitFont(scale, typeface)).horizontalAdvance(reading.unit),
            .height = QFontMetricsF(value).height() + 2.0 * readingPaddingUpDown * scale};
}

// The row of readings at that scale.
QSizeF rowSize(double scale, const Typeface& typeface) {
    QSizeF size;
    for (const LoudnessMetric metric : LoudnessReadoutView::rowMetrics) {
        const ReadingColumns columns = columnsOf(metric, scale, typeface);
        size.rwidth() += columns.width(scale);
        size.setHeight(std::max(size.height(), columns.height));
    }
    size.rwidth() += readingsGap * scale * (LoudnessReadoutView::rowMetrics.size() - 1);
    return size;
}

SideLabel widestSideLabel(const LoudnessReadoutView& view) {
    return {.title = view.truePeakLabel().title, .value = {}, .unit = view.targetLabel().unit};
}

void placeReadings(LoudnessReadoutGeometry& geometry, const QRectF& row, const Typeface& typeface) {
    if (row.isEmpty()) {
        return;
    }
    constexpr double measuring = ReadoutDrawing::measuringScale;
    geometry.readingsScale = std::min(
        geometry.textScale, row.width() / (rowSize(measuring, typeface).width() / measuring));
    const double scale = geometry.readingsScale;
    double x = row.center().x() - rowSize(scale, typeface).width() / 2.0;
    for (std::size_t i = 0; i < geometry.readings.size(); ++i) {
        const double width =
            columnsOf(LoudnessReadoutView::rowMetrics[i], scale, typeface).width(scale);
        geometry.readings[i] = QRectF(x, row.top(), width, row.height());
        x += width + readingsGap * scale;
    }
}

void paintReading(QPainter& painter, const LoudnessReadoutView& view, LoudnessMetric metric,
                  const QRectF& rect, double scale, const Typeface& typeface) {
    const LoudnessReadoutView::Reading reading = view.reading(metric);
    const ReadingColumns columns = columnsOf(metric, scale, typeface);
    paintPlate(painter, PixelGrid(painter).snapped(rect), Theme::Radius::plate * scale,
               Theme::controlBackground);

    // All three texts share the number's base line.
    const QFont ordinary = valueFont(scale, typeface);
    const QFontMetricsF metrics(ordinary);
    const double baseline = rect.center().y() + metrics.capHeight() / 2.0;
    const double left = rect.left() + readingPaddingAcross * scale;
    painter.setFont(titleFont(scale, typeface));
    painter.setPen(Theme::axisText);
    painter.drawText(QPointF(left, baseline), reading.title);

    const double valueRight = left + columns.title + readingTitleGap * scale + columns.value;
    const QFont font = ReadoutDrawing::fitted(ordinary, reading.value, columns.value,
                                              ReadoutLayout::smallestValueScale);
    painter.setPen(Contrast::legible(reading.color, Theme::controlBackground));
    TabularText::draw(painter,
                      QPointF(valueRight - TabularText::width(reading.value, font), baseline),
                      reading.value, font);
    if (!reading.unit.isEmpty()) {
        painter.setFont(unitFont(scale, typeface));
        painter.setPen(Theme::axisText);
        painter.drawText(QPointF(valueRight + readingUnitGap * scale, baseline), reading.unit);
    }
}

}  // namespace

const QString& LoudnessReadoutView::widthTemplate() {
    static const QString text = QStringLiteral("-00.0");
    return text;
}

QString LoudnessReadoutView::ordinaryValue() const {
    return headline == LoudnessMetric::range ? QStringLiteral("00.0") : widthTemplate();
}

QString LoudnessReadoutView::labelText() const {
    return displayLabel(headline) + QStringLiteral("  (") + loudnessUnit(headline) + u')';
}

QString LoudnessReadoutView::spokenValue() const {
    return spokenLevel(readings[headline], loudnessUnit(headline));
}

RGBAColor LoudnessReadoutView::judgement(LoudnessMetric metric) const {
    switch (metric) {
        case LoudnessMetric::range:
            return {Theme::primaryText.redF(), Theme::primaryText.greenF(),
                    Theme::primaryText.blueF(), 1.0};
        case LoudnessMetric::truePeakMax:
            return target.truePeakColor(readings.truePeakMax, colors);
        default:
            return target.trafficLight(colors).color(readings[metric]);
    }
}

SideLabel LoudnessReadoutView::targetLabel() const {
    return {.title = QStringLiteral("TARGET"),
            .value = levelText(target.targetLUFS),
            .unit = loudnessUnit(LoudnessMetric::integrated)};
}

QString LoudnessReadoutView::targetHelp() const {
    return utf8Text(target.menuName()) + QStringLiteral(": on target within ±") +
           QString::number(target.toleranceLU, 'g', 6) + QStringLiteral(" LU");
}

SideLabel LoudnessReadoutView::truePeakLabel() const {
    constexpr auto metric = LoudnessMetric::truePeakMax;
    return {.title = QStringLiteral("TRUE PEAK"),
            .value = levelText(readings[metric]),
            .unit = loudnessUnit(metric),
            .color = std::isfinite(readings[metric]) ? Theme::color(judgement(metric))
                                                     : Theme::axisText};
}

QString LoudnessReadoutView::truePeakHelp() const {
    return QStringLiteral("Highest true peak since the last reset (ceiling ") +
           QString::number(target.truePeakCeilingDBTP, 'f', 1) + QStringLiteral(" dBTP)");
}

LoudnessReadoutView::Reading LoudnessReadoutView::reading(LoudnessMetric metric) const {
    const double value = readings[metric];
    const bool isJudged = metric == LoudnessMetric::integrated;
    return {.title = shortLabel(metric),
            .value = levelText(value),
            .unit = metric == LoudnessMetric::range || metric == LoudnessMetric::truePeakMax
                        ? loudnessUnit(metric)
                        : QString(),
            .color = !std::isfinite(value) ? Theme::axisText
                     : isJudged            ? Theme::color(judgement(metric))
                                           : Theme::primaryText,
            .help = displayLabel(metric)};
}

LoudnessReadoutGeometry layout(const LoudnessReadoutView& view, const QSizeF& size,
                               const Typeface& typeface) {
    constexpr double scale = ReadoutDrawing::measuringScale;
    const ReadoutParts parts{
        .value = ReadoutDrawing::valueSize(LoudnessReadoutView::widthTemplate(), typeface),
        .side = widestSideLabel(view).size(scale, typeface) / scale,
        .label = ReadoutDrawing::labelSize(view.labelText(), typeface),
        .rows = {{.extra = ReadoutExtra::readings,
                  .size = rowSize(scale, typeface) / scale,
                  .gapAbove = Theme::Space::label,
                  .leastShare = leastReadingsScale}},
        .badge = ClipBadge::size(scale, typeface) / scale,
        .hasResetButton = view.offersReset,
        .hasLevelBar = view.hasLevelBar,
    };
    const ReadoutLayout shared = ReadoutLayout::of(parts, size);
    LoudnessReadoutGeometry geometry;
    static_cast<ReadoutFrame&>(geometry) = shared.frame;
    geometry.target = shared.left;
    geometry.truePeak = shared.right;
    placeReadings(geometry, shared.rows.front(), typeface);
    return geometry;
}

void paint(QPainter& painter, const LoudnessReadoutView& view,
           const LoudnessReadoutGeometry& geometry, const QRegion& dirty,
           const Typeface& typeface) {
    painter.setRenderHint(QPainter::Antialiasing);
    const double scale = geometry.textScale;
    if (dirty.intersects(valueArea(geometry))) {
        ReadoutDrawing::paintValue(painter, view.readings[view.headline], view.ordinaryValue(),
                                   view.color, geometry, typeface);
    }
    if (dirty.intersects(textArea(geometry.target))) {
        view.targetLabel().paint(painter, geometry.target, scale, typeface);
    }
    if (dirty.intersects(textArea(geometry.truePeak))) {
        view.truePeakLabel().paint(painter, geometry.truePeak, scale, typeface);
    }
    if (dirty.intersects(textArea(geometry.label))) {
        ReadoutDrawing::paintLabel(painter, view.labelText(), geometry, typeface);
    }
    for (std::size_t i = 0; i < geometry.readings.size(); ++i) {
        if (dirty.intersects(textArea(geometry.readings[i]))) {
            paintReading(painter, view, LoudnessReadoutView::rowMetrics[i], geometry.readings[i],
                         geometry.readingsScale, typeface);
        }
    }
    if (dirty.intersects(textArea(geometry.clipBadge))) {
        ClipBadge{view.clipState, view.lostAudio}.paint(painter, geometry.clipBadge, scale,
                                                        typeface);
    }
}

void paint(QPainter& painter, const LoudnessReadoutView& view, const QSizeF& size,
           const Typeface& typeface) {
    paint(painter, view, layout(view, size, typeface), QRectF(QPointF(), size).toAlignedRect(),
          typeface);
}

bool sameShape(const LoudnessReadoutView& a, const LoudnessReadoutView& b) {
    return a.labelText() == b.labelText() && a.offersReset == b.offersReset &&
           a.hasLevelBar == b.hasLevelBar;
}

QRegion changedArea(const LoudnessReadoutView& before, const LoudnessReadoutView& after,
                    const LoudnessReadoutGeometry& geometry) {
    QRegion area;
    const auto note = [&](bool changed, const QRect& rect) {
        if (changed) {
            area += rect;
        }
    };
    note(before.spokenValue() != after.spokenValue() || before.color != after.color,
         valueArea(geometry));
    note(before.targetLabel() != after.targetLabel(), textArea(geometry.target));
    note(before.truePeakLabel() != after.truePeakLabel(), textArea(geometry.truePeak));
    note(before.labelText() != after.labelText(), textArea(geometry.label));
    for (std::size_t i = 0; i < geometry.readings.size(); ++i) {
        const LoudnessMetric metric = LoudnessReadoutView::rowMetrics[i];
        note(before.reading(metric) != after.reading(metric), textArea(geometry.readings[i]));
    }
    note(before.clipState != after.clipState || before.lostAudio != after.lostAudio,
         textArea(geometry.clipBadge));
    return area;
}

}  // namespace TarvaneApp
