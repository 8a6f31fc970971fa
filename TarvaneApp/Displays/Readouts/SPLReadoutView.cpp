#include "Displays/Readouts/SPLReadoutView.h"

#include <QFontMetricsF>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "Displays/PixelGrid.h"
#include "Displays/Plate.h"
#include "Displays/Readouts/ClipBadge.h"
#include "Displays/Readouts/MinMaxLabel.h"
#include "Displays/Readouts/ReadoutDrawing.h"
#include "Displays/Readouts/ReadoutText.h"
#include "Displays/TabularText.h"

namespace TarvaneApp {

using ReadoutDrawing::textArea;
using ReadoutDrawing::valueArea;

namespace {

// Sizes at scale 1, in logical pixels.
constexpr double progressHeight = 4.0;
constexpr double progressWidthShare = 0.8;  // of the value's column

QFont sidesFont(double textScale, const Typeface& typeface) {
    return typeface.monospacedFont(Theme::Text::caption * textScale);
}

bool hasSides(const SPLReadoutView& view) {
    return view.sideValuesDB.size() == 2;
}

ReadoutParts partsOf(const SPLReadoutView& view, const Typeface& typeface) {
    constexpr double scale = ReadoutDrawing::measuringScale;
    ReadoutParts parts{
        .value =
            ReadoutDrawing::valueSize(valueTemplate(view.isCalibrated, view.showsDBFS), typeface),
        .side = MinMaxLabel::size(scale, typeface) / scale,
        .label = ReadoutDrawing::labelSize(view.labelText(), typeface),
        .rows = {},
        .badge = ClipBadge::size(scale, typeface) / scale,
        .hasResetButton = view.offersReset,
        .hasLevelBar = view.hasLevelBar,
    };
    if (hasSides(view)) {
        const QFontMetricsF metrics(sidesFont(scale, typeface));
        const double width = metrics.horizontalAdvance(QStringLiteral("L -000.0   R -000.0"));
        parts.rows.push_back({.extra = ReadoutExtra::sides,
                              .size = QSizeF(width, metrics.height()) / scale,
                              .gapAbove = ReadoutLayout::rowGap});
    }
    if (view.leqElapsedFraction) {
        parts.rows.push_back(
            {.extra = ReadoutExtra::progress,
             .size = QSizeF(parts.value.width() * progressWidthShare, progressHeight),
             .gapAbove = ReadoutLayout::rowGap});
    }
    return parts;
}

void paintSides(QPainter& painter, const SPLReadoutView& view, const SPLReadoutGeometry& geometry,
                const Typeface& typeface) {
    const QFont font = sidesFont(geometry.textScale, typeface);
    const QFontMetricsF metrics(font);
    const QString text = sidesText(view.sideValuesDB);
    painter.setPen(Theme::primaryText);
    TabularText::draw(
        painter,
        QPointF(geometry.sides.center().x() - TabularText::width(text, font) / 2.0,
                geometry.sides.center().y() + (metrics.ascent() - metrics.descent()) / 2.0),
        text, font);
}

double progressFillWidth(double progress, const QRectF& track) {
    return std::round(progress * track.width());
}

void paintProgress(QPainter& painter, double progress, const SPLReadoutGeometry& geometry) {
    const QRectF track = PixelGrid(painter).snapped(geometry.progress);
    const double radius = track.height() / 2.0;
    paintPlate(painter, track, radius, Theme::gridLine);
    QRectF fill = track;
    fill.setWidth(progressFillWidth(progress, track));
    if (fill.width() <= 0.0) {
        return;
    }
    painter.setBrush(Theme::accent);
    painter.drawRoundedRect(fill, std::min(radius, fill.width() / 2.0), radius);
}

}  // namespace

QString SPLReadoutView::labelText() const {
    return metricLabel + metricSuffix(isCalibrated, showsDBFS);
}

QString SPLReadoutView::spokenValue() const {
    return spokenLevel(valueDB, levelUnit(isCalibrated, showsDBFS));
}

double SPLReadoutView::progress() const {
    const double fraction = leqElapsedFraction.value_or(0.0);
    return std::isfinite(fraction) ? std::clamp(fraction, 0.0, 1.0) : 0.0;
}

SPLReadoutGeometry layout(const SPLReadoutView& view, const QSizeF& size,
                          const Typeface& typeface) {
    const ReadoutLayout shared = ReadoutLayout::of(partsOf(view, typeface), size);
    SPLReadoutGeometry geometry;
    static_cast<ReadoutFrame&>(geometry) = shared.frame;
    geometry.min = shared.left;
    geometry.max = shared.right;
    if (hasSides(view)) {
        geometry.sides = shared.rows.front();
    }
    if (view.leqElapsedFraction) {
        geometry.progress = shared.rows.back();
    }
    return geometry;
}

void paint(QPainter& painter, const SPLReadoutView& view, const SPLReadoutGeometry& geometry,
           const QRegion& dirty, const Typeface& typeface) {
    painter.setRenderHint(QPainter::Antialiasing);
    const double scale = geometry.textScale;
    if (dirty.intersects(valueArea(geometry))) {
        ReadoutDrawing::paintValue(painter, view.valueDB,
                                   ordinaryValue(view.isCalibrated, view.showsDBFS), view.color,
                                   geometry, typeface);
    }
    if (dirty.intersects(textArea(geometry.min))) {
        MinMaxLabel{QStringLiteral("MIN"), view.minValueDB}.paint(painter, geometry.min, scale,
                                                                  typeface);
    }
    if (dirty.intersects(textArea(geometry.max))) {
        MinMaxLabel{QStringLiteral("MAX"), view.maxValueDB}.paint(painter, geometry.max, scale,
                                                                  typeface);
    }
    if (dirty.intersects(textArea(geometry.label))) {
        ReadoutDrawing::paintLabel(painter, view.labelText(), geometry, typeface);
    }
    if (dirty.intersects(textArea(geometry.sides))) {
        paintSides(painter, view, geometry, typeface);
    }
    if (dirty.intersects(textArea(geometry.progress))) {
        paintProgress(painter, view.progress(), geometry);
    }
    if (dirty.intersects(textArea(geometry.clipBadge))) {
        ClipBadge{view.clipState, view.lostAudio}.paint(painter, geometry.clipBadge, scale,
                                                        typeface);
    }
}

void paint(QPainter& painter, const SPLReadoutView& view, const QSizeF& size,
           const Typeface& typeface) {
    paint(painter, view, layout(view, size, typeface), QRectF(QPointF(), size).toAlignedRect(),
          typeface);
}

bool sameShape(const SPLReadoutView& a, const SPLReadoutView& b) {
    return a.labelText() == b.labelText() &&
           valueTemplate(a.isCalibrated, a.showsDBFS) ==
               valueTemplate(b.isCalibrated, b.showsDBFS) &&
           a.leqElapsedFraction.has_value() == b.leqElapsedFraction.has_value() &&
           a.sideValuesDB.size() == b.sideValuesDB.size() && a.offersReset == b.offersReset &&
           a.hasLevelBar == b.hasLevelBar;
}

QRegion changedArea(const SPLReadoutView& before, const SPLReadoutView& after,
                    const SPLReadoutGeometry& geometry) {
    QRegion area;
    const auto note = [&](bool changed, const QRect& rect) {
        if (changed) {
            area += rect;
        }
    };
    const auto differs = [](double a, double b) { return levelText(a) != levelText(b); };
    note(differs(before.valueDB, after.valueDB) || before.color != after.color,
         valueArea(geometry));
    note(differs(before.minValueDB, after.minValueDB), textArea(geometry.min));
    note(differs(before.maxValueDB, after.maxValueDB), textArea(geometry.max));
    note(before.labelText() != after.labelText(), textArea(geometry.label));
    note(sidesText(before.sideValuesDB) != sidesText(after.sideValuesDB), textArea(geometry.sides));
    note(before.leqElapsedFraction.has_value() != after.leqElapsedFraction.has_value() ||
             progressFillWidth(before.progress(), geometry.progress) !=
                 progressFillWidth(after.progress(), geometry.progress),
         textArea(geometry.progress));
    note(before.clipState != after.clipState || before.lostAudio != after.lostAudio,
         textArea(geometry.clipBadge));
    return area;
}

}  // namespace TarvaneApp
