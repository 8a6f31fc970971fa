#include "Displays/Readouts/LevelBarView.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>
#include <limits>

#include "Displays/PixelGrid.h"
#include "Displays/TabularText.h"

namespace TarvaneApp {

namespace {

constexpr double fineStepDB = 10.0;
constexpr double coarseScaleStepDB = 20.0;
constexpr double widestFineScaleDB = 60.0;

// Heights from top to bottom at scale 1: 11 captions, 4, 10 track, 3, 4 ticks, 1, 11 labels.
constexpr double captionHeight = 11.0;
constexpr double trackTop = 15.0;
constexpr double trackHeight = 10.0;
constexpr double tickTop = 28.0;
constexpr double tickHeight = 4.0;
constexpr double tickLabelTop = 33.0;
constexpr double tickLabelHeight = 11.0;
constexpr double markerWidth = 2.0;
constexpr double targetBandOpacity = 0.35;

QFont captionFont(double scale, const Typeface& typeface) {
    return typeface.systemFont(Theme::Text::tick * scale);
}

QFont tickFont(double scale, const Typeface& typeface) {
    return typeface.monospacedFont(Theme::Text::tick * scale);
}

double xAt(double fraction, const QRectF& track) {
    return track.left() + fraction * track.width();
}

double fillEnd(const LevelBarView& view, const QRectF& track, const PixelGrid& grid) {
    return grid.snapped(xAt(LevelBarView::fraction(view.valueDB, view.range), track));
}

std::optional<double> markerPlace(const LevelBarView& view, const QRectF& track,
                                  const PixelGrid& grid) {
    return std::isfinite(view.markerDB)
               ? std::optional(
                     grid.snapped(xAt(LevelBarView::fraction(view.markerDB, view.range), track)))
               : std::nullopt;
}

void paintTrack(QPainter& painter, const LevelBarView& view, const LevelBarGeometry& geometry) {
    const PixelGrid grid(painter);
    const QRectF track = grid.snapped(geometry.track);
    QPainterPath outline;
    outline.addRoundedRect(track, Theme::Radius::graph * geometry.scale,
                           Theme::Radius::graph * geometry.scale);
    painter.fillPath(outline, Theme::gridLine);

    painter.save();
    painter.setClipPath(outline, Qt::IntersectClip);
    QRectF fill = track;
    fill.setRight(fillEnd(view, track, grid));
    painter.fillRect(fill, Theme::color(view.color));
    // Over the fill, so that it stays visible under a level beyond the target.
    if (view.targetBand) {
        const double left = xAt(LevelBarView::fraction(view.targetBand->lower, view.range), track);
        const double right = xAt(LevelBarView::fraction(view.targetBand->upper, view.range), track);
        painter.fillRect(grid.snapped(QRectF(left, track.top(), right - left, track.height())),
                         Theme::faded(Theme::primaryText, targetBandOpacity));
    }
    if (const auto x = markerPlace(view, track, grid)) {
        const double width = grid.lineWidth(markerWidth * geometry.scale);
        const double left = std::clamp(*x - width / 2.0, track.left(), track.right() - width);
        painter.fillRect(grid.snapped(QRectF(left, track.top(), width, track.height())),
                         Theme::primaryText);
    }
    painter.restore();
}

void paintScale(QPainter& painter, const LevelBarGeometry& geometry, const Typeface& typeface) {
    const PixelGrid grid(painter);
    const double hairline = grid.lineWidth(1.0);
    const double top = geometry.track.top() + (tickTop - trackTop) * geometry.scale;
    const QFont font = tickFont(geometry.scale, typeface);
    const QFontMetricsF metrics(font);
    painter.setPen(Theme::axisText);
    for (const LevelBarGeometry::Tick& tick : geometry.ticks) {
        const double left = std::clamp(tick.x - hairline / 2.0, geometry.track.left(),
                                       geometry.track.right() - hairline);
        painter.fillRect(grid.snapped(QRectF(left, top, hairline, tickHeight * geometry.scale)),
                         Theme::gridLineStrong);
        if (!tick.label.isEmpty()) {
            TabularText::draw(painter,
                              QPointF(tick.label.left(), tick.label.bottom() - metrics.descent()),
                              tick.text, font);
        }
    }
}

void paintCaptions(QPainter& painter, const LevelBarView& view, const LevelBarGeometry& geometry,
                   const Typeface& typeface) {
    painter.setFont(captionFont(geometry.scale, typeface));
    painter.setPen(Theme::axisText);
    painter.drawText(geometry.captions, Qt::AlignLeft | Qt::AlignVCenter, view.unitLabel);
    painter.drawText(geometry.captions, Qt::AlignRight | Qt::AlignVCenter, view.legend);
}

}  // namespace

double LevelBarView::fraction(double levelDB, const Range& range) {
    const double width = range.upper - range.lower;
    const double fraction = (levelDB - range.lower) / width;
    return width > 0.0 && !std::isnan(fraction) ? std::clamp(fraction, 0.0, 1.0) : 0.0;
}

double LevelBarView::level(double fraction, const Range& range) {
    return range.lower + fraction * (range.upper - range.lower);
}

std::vector<double> LevelBarView::ticks(const Range& range) {
    if (!std::isfinite(range.lower) || !std::isfinite(range.upper)) {
        return {};
    }
    const double width = range.upper - range.lower;
    const double step = width > widestFineScaleDB ? coarseScaleStepDB : fineStepDB;
    std::vector<double> ticks;
    const double first = std::ceil(range.lower / step);
    const double last = std::floor(range.upper / step);
    for (double index = first; index <= last; index += 1.0) {
        ticks.push_back(index * step);
    }
    return ticks;
}

LevelBarGeometry layout(const LevelBarView& view, const QRectF& rect, const Typeface& typeface) {
    LevelBarGeometry geometry;
    if (rect.height() <= LevelBarGeometry::bareHeight) {
        geometry.track = QRectF(0.0, 0.0, rect.width(), std::min(trackHeight, rect.height()));
        geometry.track.moveCenter(rect.center());
        return geometry;
    }
    const double scale = rect.height() / LevelBarGeometry::naturalHeight;
    geometry.scale = scale;
    geometry.captions = QRectF(rect.left(), rect.top(), rect.width(), captionHeight * scale);
    geometry.track =
        QRectF(rect.left(), rect.top() + trackTop * scale, rect.width(), trackHeight * scale);

    geometry.ticksRect = QRectF(rect.left(), rect.top() + tickTop * scale, rect.width(),
                                (tickLabelTop + tickLabelHeight - tickTop) * scale);
    const QFont font = tickFont(scale, typeface);
    double previousRight = -std::numeric_limits<double>::infinity();
    for (const double levelDB : LevelBarView::ticks(view.range)) {
        LevelBarGeometry::Tick tick{
            .x = xAt(LevelBarView::fraction(levelDB, view.range), geometry.track),
            .text = QString::number(static_cast<long long>(levelDB)),
            .label = {}};
        const double width = TabularText::width(tick.text, font);
        const double left = std::clamp(tick.x - width / 2.0, rect.left(),
                                       std::max(rect.right() - width, rect.left()));
        if (left >= previousRight + Theme::Space::label && width <= rect.width()) {
            tick.label =
                QRectF(left, rect.top() + tickLabelTop * scale, width, tickLabelHeight * scale);
            previousRight = tick.label.right();
        }
        geometry.ticks.push_back(std::move(tick));
    }
    return geometry;
}

void paint(QPainter& painter, const LevelBarView& view, const LevelBarGeometry& geometry,
           const QRegion& dirty, const Typeface& typeface) {
    painter.setRenderHint(QPainter::Antialiasing);
    if (dirty.intersects(geometry.captions.toAlignedRect())) {
        paintCaptions(painter, view, geometry, typeface);
    }
    if (dirty.intersects(geometry.track.toAlignedRect())) {
        paintTrack(painter, view, geometry);
    }
    if (dirty.intersects(geometry.ticksRect.toAlignedRect())) {
        paintScale(painter, geometry, typeface);
    }
}

QRegion changedArea(const LevelBarView& before, const LevelBarView& after,
                    const LevelBarGeometry& geometry, const QRectF& rect, double pixelRatio) {
    if (before.range != after.range || before.targetBand != after.targetBand ||
        before.unitLabel != after.unitLabel || before.legend != after.legend) {
        return rect.toAlignedRect();
    }
    const PixelGrid grid(pixelRatio);
    const QRectF track = grid.snapped(geometry.track);
    const bool moved = fillEnd(before, track, grid) != fillEnd(after, track, grid) ||
                       markerPlace(before, track, grid) != markerPlace(after, track, grid);
    return moved || before.color != after.color ? QRegion(track.toAlignedRect()) : QRegion();
}

}  // namespace TarvaneApp
