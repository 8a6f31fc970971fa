#include "Readouts/SPLReadoutView.h"

#include <QFontMetricsF>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <limits>

#include "PixelGrid.h"
#include "Readouts/ClipBadge.h"
#include "Readouts/MinMaxLabel.h"
#include "Readouts/ReadoutText.h"
#include "TabularText.h"

namespace TarvaneApp {

namespace {

// Sizes at scale 1, in logical pixels.
constexpr double labelSize = 12.0;
constexpr double labelOpacity = 0.7;
constexpr double sidesSize = 11.0;
constexpr double progressHeight = 4.0;
constexpr double progressWidthShare = 0.8;  // of the value's column
constexpr double rowGap = 6.0;
constexpr double smallestColumnGap = 20.0;
constexpr double largestColumnGap = 72.0;

// The button is a control and keeps its size, as all controls do.
constexpr QSizeF resetButtonSize(112.0, 24.0);
constexpr double resetButtonGap = 12.0;
constexpr double badgeGap = 10.0;  // between the label and a badge beside it

constexpr double marginAcross = 12.0;
constexpr double marginUpDown = 6.0;
constexpr double smallestValueScale = 0.4;

// Fonts are measured at this size, and measures scale from there.
constexpr double measuringSize = 100.0;

QFont labelFont(double textScale, const Typeface& typeface) {
    return typeface.systemFont(labelSize * textScale, QFont::Medium);
}

QFont sidesFont(double textScale, const Typeface& typeface) {
    return typeface.monospacedFont(sidesSize * textScale);
}

// The ink of the digits about the base line.
struct DigitBox {
    double top = 0.0;     // above the base line, positive
    double bottom = 0.0;  // under it
    double height() const { return top + bottom; }
};

DigitBox digitBox(const QFont& font) {
    const QRectF ink = QFontMetricsF(font).tightBoundingRect(QStringLiteral("0123456789"));
    return {-ink.top(), ink.bottom()};
}

double textScaleFor(double valueScale) {
    return valueScale > 1.0 ? (1.0 + valueScale) / 2.0 : 1.0;
}

// A demand for room along one axis: room(s) = perValue·s + perText·textScale(s) + fixed.
struct Demand {
    double perValue = 0.0;
    double perText = 0.0;
    double fixed = 0.0;

    // The largest value scale that fits. Piecewise linear: the texts stop shrinking at 1.
    double largestScale(double available) const {
        const double room = available - fixed;
        const double growing = perValue + perText / 2.0;
        const double scale = growing > 0.0 ? (room - perText / 2.0) / growing
                                           : std::numeric_limits<double>::infinity();
        if (scale >= 1.0) {
            return scale;
        }
        // Below 1 only the value shrinks; a demand of texts alone can't be helped by it.
        return perValue > 0.0 ? std::min((room - perText) / perValue, 1.0) : 1.0;
    }
};

struct Measures {
    double valueWidth;
    double digitHeight;
    QSizeF minMax;
    double labelWidth;
    double labelHeight;
    double sidesWidth;
    double sidesHeight;
    QSizeF badge;
};

Measures measure(const SPLReadoutView& view, const Typeface& typeface) {
    const double toValue = Theme::readoutFontSize / measuringSize;
    constexpr double textMeasuringScale = 8.0;  // large enough for rounding not to matter
    const QFont value = typeface.roundedFont(measuringSize);
    const QFont label = labelFont(textMeasuringScale, typeface);
    const QFont sides = sidesFont(textMeasuringScale, typeface);
    const auto width = [&](const QFont& font, const QString& text) {
        return QFontMetricsF(font).horizontalAdvance(text) / textMeasuringScale;
    };
    return {
        .valueWidth =
            TabularText::width(valueTemplate(view.isCalibrated, view.showsDBFS), value) * toValue,
        .digitHeight = digitBox(value).height() * toValue,
        .minMax = MinMaxLabel::size(textMeasuringScale, typeface) / textMeasuringScale,
        .labelWidth = width(label, view.labelText()),
        .labelHeight = QFontMetricsF(label).height() / textMeasuringScale,
        .sidesWidth = width(sides, QStringLiteral("L -000.0   R -000.0")),
        .sidesHeight = QFontMetricsF(sides).height() / textMeasuringScale,
        .badge = ClipBadge::size(textMeasuringScale, typeface) / textMeasuringScale,
    };
}

bool hasSides(const SPLReadoutView& view) {
    return view.sideValuesDB.size() == 2;
}

// Where badge and button stand: in a row of their own under the texts, or, where there is
// little height, beside what they belong to.
enum class Arrangement { stacked, beside };

double labelRowHeight(const Measures& measures, Arrangement arrangement) {
    return arrangement == Arrangement::beside
               ? std::max(measures.labelHeight, measures.badge.height())
               : measures.labelHeight;
}

// The first row is as high as the value or as MIN and MAX, the last as the badge or the button,
// whichever is the higher: each combination is a demand of its own.
std::vector<Demand> rowDemands(const SPLReadoutView& view, const Measures& measures,
                               Arrangement arrangement) {
    Demand rows;
    rows.fixed = 2.0 * marginUpDown;
    rows.perText = rowGap + labelRowHeight(measures, arrangement);
    if (hasSides(view)) {
        rows.perText += measures.sidesHeight;
    }
    if (view.leqElapsedFraction) {
        rows.perText += progressHeight + rowGap;
    }
    std::vector<Demand> bases{rows};
    if (arrangement == Arrangement::stacked) {
        bases[0].perText += rowGap + measures.badge.height();
        if (view.onResetMinMax) {
            Demand withButton = rows;
            withButton.perText += rowGap;
            withButton.fixed += resetButtonSize.height();
            bases.push_back(withButton);
        }
    }
    std::vector<Demand> demands;
    for (const Demand& base : bases) {
        demands.push_back(base);
        demands.back().perValue += measures.digitHeight;
        demands.push_back(base);
        demands.back().perText += measures.minMax.height();
    }
    return demands;
}

std::vector<Demand> columnDemands(const SPLReadoutView& view, const Measures& measures,
                                  Arrangement arrangement) {
    const bool isBeside = arrangement == Arrangement::beside;
    constexpr double margins = 2.0 * marginAcross;
    Demand columns{.perValue = measures.valueWidth,
                   .perText = 2.0 * (measures.minMax.width() + smallestColumnGap),
                   .fixed = margins};
    if (isBeside && view.onResetMinMax) {
        columns.fixed += 2.0 * (resetButtonSize.width() + resetButtonGap);
    }
    Demand label{.perText = measures.labelWidth, .fixed = margins};
    if (isBeside) {
        label.perText += 2.0 * (badgeGap + measures.badge.width());
    }
    std::vector<Demand> demands{columns, label};
    if (hasSides(view)) {
        demands.push_back({.perText = measures.sidesWidth, .fixed = margins});
    }
    return demands;
}

double valueScaleFor(const SPLReadoutView& view, const Measures& measures, const QSizeF& size,
                     Arrangement arrangement) {
    double scale = std::numeric_limits<double>::infinity();
    for (const Demand& demand : rowDemands(view, measures, arrangement)) {
        scale = std::min(scale, demand.largestScale(size.height()));
    }
    for (const Demand& demand : columnDemands(view, measures, arrangement)) {
        scale = std::min(scale, demand.largestScale(size.width()));
    }
    return std::max(scale, smallestValueScale);
}

// Under MAX, clear of the badge, and within the width.
QRectF resetButtonInRow(const SPLReadoutGeometry& geometry, const QRectF& row) {
    QRectF button(QPointF(), resetButtonSize);
    button.moveCenter(QPointF(geometry.max.center().x(), row.center().y()));
    button.moveRight(std::min(button.right(), row.right() - marginAcross));
    button.moveLeft(std::max(button.left(), geometry.clipBadge.right() + resetButtonGap));
    return button.toAlignedRect();
}

// Shrinks a font until the text fits, to no less than `smallest` of its size.
QFont fitted(QFont font, const QString& text, double width, double smallest) {
    const double natural = TabularText::width(text, font);
    if (natural > width) {
        const double scale = std::max(width / natural, smallest);
        font.setPixelSize(std::max(static_cast<int>(std::floor(font.pixelSize() * scale)), 1));
    }
    return font;
}

// The number ends at the right edge of its column, so that the decimal point keeps its place
// when a digit is added in front.
void paintValue(QPainter& painter, const SPLReadoutView& view, const SPLReadoutGeometry& geometry,
                const Typeface& typeface) {
    const QString text = levelText(view.valueDB);
    const QFont ordinary = typeface.roundedFont(geometry.valuePixelSize);
    const QFont font = fitted(ordinary, text, geometry.value.width(), smallestValueScale);
    const DigitBox digits = digitBox(font);
    const double width = TabularText::width(text, font);
    const double x = std::isfinite(view.valueDB) ? geometry.value.right() - width
                                                 : geometry.value.center().x() - width / 2.0;
    const double baseline = geometry.value.center().y() + digits.height() / 2.0 - digits.bottom;
    painter.setPen(std::isfinite(view.valueDB) ? Theme::color(view.color) : Theme::axisText);
    TabularText::draw(painter, QPointF(x, baseline), text, font);
}

void paintCentred(QPainter& painter, const QRectF& rect, const QString& text, QFont font,
                  const QColor& color) {
    const double width = QFontMetricsF(font).horizontalAdvance(text);
    if (width > rect.width()) {
        font.setPixelSize(
            std::max(static_cast<int>(std::floor(font.pixelSize() * rect.width() / width)), 1));
    }
    painter.setFont(font);
    painter.setPen(color);
    painter.drawText(rect, Qt::AlignCenter, text);
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
    painter.setPen(Qt::NoPen);
    painter.setBrush(Theme::gridLine);
    painter.drawRoundedRect(track, radius, radius);
    QRectF fill = track;
    fill.setWidth(progressFillWidth(progress, track));
    if (fill.width() <= 0.0) {
        return;
    }
    painter.setBrush(Theme::accent);
    painter.drawRoundedRect(fill, std::min(radius, fill.width() / 2.0), radius);
}

// What antialiasing and overhanging glyphs may reach beyond a part's rectangle.
QRect inkArea(const QRectF& rect, double overhang) {
    return rect.adjusted(-overhang, -overhang, overhang, overhang).toAlignedRect();
}

QRect valueArea(const SPLReadoutGeometry& geometry) {
    return inkArea(geometry.value, 2.0 + geometry.valuePixelSize * 0.05);
}

QRect textArea(const QRectF& rect) {
    return inkArea(rect, 2.0);
}

}  // namespace

QString SPLReadoutView::labelText() const {
    return metricLabel + metricSuffix(isCalibrated, showsDBFS);
}

QString SPLReadoutView::spokenValue() const {
    const QString text = levelText(valueDB);
    return std::isfinite(valueDB) ? text + u' ' + levelUnit(isCalibrated, showsDBFS) : text;
}

double SPLReadoutView::progress() const {
    const double fraction = leqElapsedFraction.value_or(0.0);
    return std::isfinite(fraction) ? std::clamp(fraction, 0.0, 1.0) : 0.0;
}

SPLReadoutGeometry layout(const SPLReadoutView& view, const QSizeF& size,
                          const Typeface& typeface) {
    const Measures measures = measure(view, typeface);
    Arrangement arrangement = Arrangement::stacked;
    double valueScale = valueScaleFor(view, measures, size, arrangement);
    if (valueScale < 1.0) {
        const double beside = valueScaleFor(view, measures, size, Arrangement::beside);
        if (beside > valueScale) {
            arrangement = Arrangement::beside;
            valueScale = std::min(beside, 1.0);
        }
    }
    const bool isBeside = arrangement == Arrangement::beside;
    const double textScale = textScaleFor(valueScale);
    const bool hasButton = view.onResetMinMax != nullptr;

    SPLReadoutGeometry geometry;
    geometry.valuePixelSize = std::floor(Theme::readoutFontSize * valueScale);
    geometry.textScale = textScale;

    const QSizeF value(measures.valueWidth * valueScale, measures.digitHeight * valueScale);
    const QSizeF minMax = measures.minMax * textScale;
    const QSizeF badge = measures.badge * textScale;
    const double gap = rowGap * textScale;
    const double valueRow = std::max(value.height(), minMax.height());
    const double labelRow = labelRowHeight(measures, arrangement) * textScale;
    const double sidesRow = hasSides(view) ? measures.sidesHeight * textScale : 0.0;
    const double progressRow = view.leqElapsedFraction ? progressHeight * textScale + gap : 0.0;
    const double lastRow = std::max(badge.height(), hasButton ? resetButtonSize.height() : 0.0);
    const double height =
        valueRow + gap + labelRow + sidesRow + progressRow + (isBeside ? 0.0 : gap + lastRow);

    const double middle = size.width() / 2.0;
    const double inner = size.width() - 2.0 * marginAcross;
    const auto centredRow = [middle](double y, double width, double rowHeight) {
        return QRectF(middle - width / 2.0, y, width, rowHeight);
    };
    const double besideMinMax =
        isBeside && hasButton ? 2.0 * (resetButtonSize.width() + resetButtonGap) : 0.0;
    const double columnGap =
        std::clamp((inner - value.width() - 2.0 * minMax.width() - besideMinMax) / 4.0,
                   smallestColumnGap * textScale, largestColumnGap * textScale);

    double y = (size.height() - height) / 2.0;
    const double valueMiddle = y + valueRow / 2.0;
    geometry.value = centredRow(valueMiddle - value.height() / 2.0, value.width(), value.height());
    geometry.min = QRectF(QPointF(geometry.value.left() - columnGap - minMax.width(),
                                  valueMiddle - minMax.height() / 2.0),
                          minMax);
    geometry.max = QRectF(
        QPointF(geometry.value.right() + columnGap, valueMiddle - minMax.height() / 2.0), minMax);
    y += valueRow + gap;
    geometry.label = centredRow(
        y, isBeside ? std::min(measures.labelWidth * textScale + 2.0, inner) : inner, labelRow);
    y += labelRow;
    if (hasSides(view)) {
        geometry.sides = centredRow(y, inner, sidesRow);
        y += sidesRow;
    }
    if (view.leqElapsedFraction) {
        geometry.progress =
            centredRow(y + gap, value.width() * progressWidthShare, progressHeight * textScale);
        y += progressRow;
    }
    geometry.clipBadge = QRectF(QPointF(), badge);
    if (isBeside) {
        geometry.clipBadge.moveCenter(geometry.label.center());
        geometry.clipBadge.moveLeft(geometry.label.right() + badgeGap * textScale);
    } else {
        y += gap;
        geometry.clipBadge.moveCenter(QPointF(middle, y + lastRow / 2.0));
    }
    if (hasButton) {
        geometry.resetButton =
            isBeside ? QRectF(QPointF(geometry.max.right() + resetButtonGap,
                                      valueMiddle - resetButtonSize.height() / 2.0),
                              resetButtonSize)
                           .toAlignedRect()
                     : resetButtonInRow(geometry, QRectF(0.0, y, size.width(), lastRow));
    }
    return geometry;
}

void paint(QPainter& painter, const SPLReadoutView& view, const SPLReadoutGeometry& geometry,
           const QRegion& dirty, const Typeface& typeface) {
    painter.setRenderHint(QPainter::Antialiasing);
    const double scale = geometry.textScale;
    if (dirty.intersects(valueArea(geometry))) {
        paintValue(painter, view, geometry, typeface);
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
        paintCentred(painter, geometry.label, view.labelText(), labelFont(scale, typeface),
                     Theme::faded(Theme::primaryText, labelOpacity));
    }
    if (hasSides(view) && dirty.intersects(textArea(geometry.sides))) {
        paintSides(painter, view, geometry, typeface);
    }
    if (view.leqElapsedFraction && dirty.intersects(textArea(geometry.progress))) {
        paintProgress(painter, view.progress(), geometry);
    }
    if (dirty.intersects(textArea(geometry.clipBadge))) {
        ClipBadge{view.clipState}.paint(painter, geometry.clipBadge, scale, typeface);
    }
}

void paint(QPainter& painter, const SPLReadoutView& view, const QSizeF& size,
           const Typeface& typeface) {
    paint(painter, view, layout(view, size, typeface), QRectF(QPointF(), size).toAlignedRect(),
          typeface);
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
    note(before.clipState != after.clipState, textArea(geometry.clipBadge));
    return area;
}

}  // namespace TarvaneApp
