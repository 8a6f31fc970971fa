#include "Displays/Readouts/InputLevelMeterView.h"

#include <QFontMetricsF>
#include <QPainter>
#include <limits>

#include "Core/RGBAColor.h"
#include "Displays/TabularText.h"

namespace TarvaneApp {

namespace SignalColors = TarvaneKit::SignalColors;

namespace {

constexpr double none = -std::numeric_limits<double>::infinity();

QFont numberFont(const Typeface& typeface) {
    return typeface.systemFont(Theme::Text::body);
}

}  // namespace

QString InputLevelMeterView::text() const {
    if (!isMetering) {
        return QStringLiteral("Start metering to see the input level.");
    }
    if (!levelDBFS) {
        return QStringLiteral("—");
    }
    if (isClipping) {
        return QStringLiteral("CLIP");
    }
    return *levelDBFS > range.lower ? QString::number(*levelDBFS, 'f', 1) : QStringLiteral("< -60");
}

LevelBarView InputLevelMeterView::bar() const {
    const double levelDB = levelDBFS.value_or(none);
    return {.valueDB = levelDB,
            .markerDB = levelDBFS ? heldDBFS.value_or(none) : none,
            .range = range,
            .color = isClipping                     ? SignalColors::red
                     : levelDB >= nearFullScaleDBFS ? SignalColors::yellow
                                                    : SignalColors::green,
            .unitLabel = {},
            .targetBand = {},
            .legend = {}};
}

// The number has the room of the widest one, so that the bar's end stands still.
InputLevelMeterGeometry layout(const InputLevelMeterView& view, const QRectF& rect,
                               const Typeface& typeface) {
    InputLevelMeterGeometry geometry;
    geometry.text = rect;
    if (view.isMetering) {
        const double width =
            QFontMetricsF(numberFont(typeface)).horizontalAdvance(QStringLiteral("< -60"));
        geometry.text.setLeft(rect.right() - width);
        geometry.barRect = rect.adjusted(0.0, 0.0, -width - Theme::Space::row, 0.0);
        geometry.bar.track = layout(view.bar(), QRectF(0.0, 0.0, geometry.barRect.width(),
                                                       LevelBarGeometry::bareHeight))
                                 .track;
        geometry.bar.track.moveCenter(geometry.barRect.center());
    }
    return geometry;
}

void paint(QPainter& painter, const InputLevelMeterView& view,
           const InputLevelMeterGeometry& geometry, const QRegion& dirty,
           const Typeface& typeface) {
    if (view.isMetering) {
        paint(painter, view.bar(), geometry.bar, dirty, typeface);
    }
    if (!dirty.intersects(geometry.text.toAlignedRect())) {
        return;
    }
    const QFont font = numberFont(typeface);
    const QFontMetricsF metrics(font);
    const QString text = view.text();
    const double left = view.isMetering ? geometry.text.right() - TabularText::width(text, font)
                                        : geometry.text.left();
    painter.setPen(!view.isMetering  ? Theme::axisText
                   : view.isClipping ? Theme::color(SignalColors::red)
                                     : Theme::primaryText);
    TabularText::draw(
        painter,
        QPointF(left, geometry.text.center().y() + (metrics.ascent() - metrics.descent()) / 2.0),
        text, font);
}

QRegion changedArea(const InputLevelMeterView& before, const InputLevelMeterView& after,
                    const InputLevelMeterGeometry& geometry, const QRectF& rect,
                    double pixelRatio) {
    if (before.isMetering != after.isMetering) {
        return rect.toAlignedRect();
    }
    QRegion changed = after.isMetering ? changedArea(before.bar(), after.bar(), geometry.bar,
                                                     geometry.barRect, pixelRatio)
                                       : QRegion();
    if (before.text() != after.text() || before.isClipping != after.isClipping) {
        changed += geometry.text.toAlignedRect();
    }
    return changed;
}

}  // namespace TarvaneApp
