#include "Displays/LevelHistory/LevelHistoryDrawing.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>
#include <QPolygonF>
#include <algorithm>
#include <iterator>

#include "Displays/Plate.h"
#include "Displays/Readouts/ReadoutText.h"
#include "Displays/SharpLine.h"
#include "Displays/TabularText.h"

namespace TarvaneApp {

using TarvaneKit::LevelHistoryExtreme;

namespace {

constexpr double underPlot = 3.0;        // between the plot and the texts under it
constexpr double timeLabelInset = 20.0;  // a time closer to an end is aligned inwards

constexpr double lostAudioWidth = 2.0;
constexpr double lostAudioHeight = 8.0;

constexpr double markHalfWidth = 5.0;
constexpr double markTip = 2.0;  // from the point
constexpr double markBase = 10.0;
constexpr double markLabelAcross = 8.0;
constexpr double markLabelUpDown = 6.0;
constexpr double markLabelRoom = 60.0;
constexpr double markPlateOpacity = 0.55;  // keeps the label legible over columns and lines

QFont labelFont(const Typeface& typeface) {
    return typeface.monospacedFont(Theme::Text::tick, QFont::Medium);
}

// Centres digits at a coordinate, whatever the typeface's ascent.
double baselineAbout(double y, const QFontMetricsF& metrics) {
    return y + metrics.capHeight() / 2.0;
}

void drawLevelLabels(QPainter& painter, const LevelHistoryView::Span& axis, const QRectF& plot,
                     const QFont& font) {
    const QFontMetricsF metrics(font);
    for (const double level : LevelHistoryView::levelLabels(axis, plot.height())) {
        const double y = LevelHistoryView::y(level, axis, plot);
        const QString text = QString::number(static_cast<int>(level));
        // The lowest label sits on the axis, clear of the unit under it.
        const double baseline = std::min(baselineAbout(y, metrics), plot.bottom());
        TabularText::draw(
            painter,
            QPointF(plot.left() - Theme::Space::label - TabularText::width(text, font), baseline),
            text, font);
    }
}

void drawTimeLabels(QPainter& painter, const LevelHistoryViewport::Range& range, const QRectF& plot,
                    const QFont& font) {
    const double baseline = plot.bottom() + underPlot + QFontMetricsF(font).ascent();
    for (const double tick : LevelHistoryView::timeTicks(range, plot.width())) {
        const double x = LevelHistoryView::x(tick, range, plot);
        const QString text = LevelHistoryView::timeLabel(tick);
        const double width = TabularText::width(text, font);
        double left = x - width / 2.0;
        if (x > plot.right() - timeLabelInset) {
            left = x - width;
        } else if (x < plot.left() + timeLabelInset) {
            left = x;
        }
        TabularText::draw(painter, QPointF(left, baseline), text, font);
    }
}

// `direction` is -1 for a mark above its point, 1 for one under it. Its label is beside it,
// and never under the plot, where the times are.
void drawMark(QPainter& painter, const QPointF& point, double direction, const QString& text,
              const QRectF& plot, const QFont& font) {
    const double base = point.y() + direction * markBase;
    QPainterPath triangle(QPointF(point.x(), point.y() + direction * markTip));
    triangle.lineTo(point.x() - markHalfWidth, base);
    triangle.lineTo(point.x() + markHalfWidth, base);
    triangle.closeSubpath();
    painter.fillPath(triangle, Theme::primaryText);

    const QFontMetricsF metrics(font);
    const double width = TabularText::width(text, font);
    const bool isLeft = point.x() > plot.right() - std::max(markLabelRoom, width);
    const double left = isLeft ? point.x() - markLabelAcross - width : point.x() + markLabelAcross;
    const double baseline = std::min(
        baselineAbout(point.y() + direction * markLabelUpDown, metrics), plot.bottom() - 1.0);
    paintPlate(painter,
               QRectF(left, baseline - metrics.capHeight(), width, metrics.capHeight())
                   .adjusted(-2.0, -2.0, 2.0, 2.0),
               Theme::Radius::label, Theme::faded(Theme::background, markPlateOpacity));
    painter.setPen(Theme::axisText);
    TabularText::draw(painter, QPointF(left, baseline), text, font);
}

// Short strokes on the time axis: the hole itself is seldom a column wide.
void drawLostAudio(QPainter& painter, const LevelHistoryGeometry& geometry) {
    for (const double elapsed : geometry.traces.lostAudio) {
        const double x = LevelHistoryView::x(elapsed, geometry.range, geometry.plot);
        painter.fillRect(QRectF(x - lostAudioWidth / 2.0, geometry.plot.bottom() - lostAudioHeight,
                                lostAudioWidth, lostAudioHeight),
                         Theme::peakHold);
    }
}

}  // namespace

void drawGrid(QPainter& painter, const LevelHistoryView& view, const LevelHistoryGeometry& geometry,
              const Typeface& typeface) {
    const QRectF& plot = geometry.plot;
    for (const double level : LevelHistoryView::levelTicks(geometry.axis)) {
        paintHorizontalLine(painter, LevelHistoryView::y(level, geometry.axis, plot), plot,
                            Theme::gridLine);
    }
    for (const double tick : LevelHistoryView::timeTicks(geometry.range, plot.width())) {
        paintVerticalLine(painter, LevelHistoryView::x(tick, geometry.range, plot), plot,
                          Theme::gridLine);
    }
    const QFont font = labelFont(typeface);
    painter.setPen(Theme::axisText);
    drawLevelLabels(painter, geometry.axis, plot, font);
    drawTimeLabels(painter, geometry.range, plot, font);
    TabularText::draw(
        painter,
        QPointF(plot.left() - Theme::Space::label - TabularText::width(view.unitLabel, font),
                plot.bottom() + underPlot + QFontMetricsF(font).ascent()),
        view.unitLabel, font);
}

// Neighbours of one colour are one shape: between shapes of their own a seam would show wherever a
// page is enlarged.
void drawColumns(QPainter& painter, const LevelHistoryView& view,
                 const LevelHistoryGeometry& geometry) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const auto columns = historyColumns(view, geometry, painter.device()->devicePixelRatioF());
    for (auto first = columns.begin(); first != columns.end();) {
        const auto end = std::adjacent_find(
            first, columns.end(), [](const LevelHistoryColumn& a, const LevelHistoryColumn& b) {
                return a.right != b.left || !(a.color == b.color);
            });
        const auto behind = end == columns.end() ? end : std::next(end);
        QPolygonF tops;
        QPolygonF undersides;
        for (auto column = first; column != behind; ++column) {
            tops << QPointF(column->left, column->top) << QPointF(column->right, column->top);
            undersides.prepend(QPointF(column->left, column->bottom));
            undersides.prepend(QPointF(column->right, column->bottom));
        }
        const QColor color = Theme::color(first->color);
        painter.setBrush(Theme::faded(color, LevelHistoryOpacity::foot));
        painter.drawPolygon(QPolygonF(tops) << QPointF(tops.back().x(), geometry.plot.bottom())
                                            << QPointF(tops.front().x(), geometry.plot.bottom()));
        painter.setBrush(Theme::faded(color, LevelHistoryOpacity::band));
        painter.drawPolygon(tops + undersides);
        first = behind;
    }
}

void drawLines(QPainter& painter, const LevelHistoryView& view,
               const LevelHistoryGeometry& geometry) {
    painter.setRenderHint(QPainter::Antialiasing);
    for (const LevelHistoryLine& line : historyLines(view, geometry)) {
        painter.setPen(QPen(line.color, line.width, Qt::SolidLine, Qt::FlatCap, Qt::RoundJoin));
        for (const std::vector<QPointF>& part : line.parts) {
            painter.drawPolyline(part.data(), static_cast<int>(part.size()));
        }
    }
}

void drawMarks(QPainter& painter, const LevelHistoryView& view,
               const LevelHistoryGeometry& geometry, const Typeface& typeface) {
    painter.setRenderHint(QPainter::Antialiasing);
    if (geometry.traces.isEmpty) {
        painter.setFont(typeface.systemFont(Theme::Text::body));
        painter.setPen(Theme::axisText);
        painter.drawText(geometry.plot, Qt::AlignCenter | Qt::TextWordWrap,
                         QStringLiteral("Press Start to record level history"));
        return;
    }
    drawLostAudio(painter, geometry);
    if (!view.isInteractive) {
        return;
    }
    const QFont font = labelFont(typeface);
    const auto mark = [&](const std::optional<LevelHistoryExtreme>& extreme, double direction,
                          const QString& title) {
        if (!extreme || extreme->elapsed < geometry.range.from ||
            extreme->elapsed > geometry.range.to) {
            return;
        }
        const double level = extreme->levelDB - view.displayOffsetDB;
        drawMark(painter,
                 QPointF(LevelHistoryView::x(extreme->elapsed, geometry.range, geometry.plot),
                         LevelHistoryView::y(level, geometry.axis, geometry.plot)),
                 direction, title + u' ' + levelText(level), geometry.plot, font);
    };
    mark(geometry.traces.extremes.max, -1.0, QStringLiteral("MAX"));
    mark(geometry.traces.extremes.min, 1.0, QStringLiteral("MIN"));
}

void paint(QPainter& painter, const LevelHistoryView& view, const QSizeF& size,
           const Typeface& typeface) {
    paint(painter, view, layout(view, size), typeface);
}

void paint(QPainter& painter, const LevelHistoryView& view, const LevelHistoryGeometry& geometry,
           const Typeface& typeface) {
    drawGrid(painter, view, geometry, typeface);
    drawColumns(painter, view, geometry);
    drawLines(painter, view, geometry);
    drawMarks(painter, view, geometry, typeface);
}

}  // namespace TarvaneApp
