#include "Displays/LevelHistory/LevelHistoryView.h"

#include <QDateTime>
#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <limits>

#include "Displays/PixelGrid.h"
#include "Displays/SharpLine.h"
#include "Displays/TabularText.h"

namespace TarvaneApp {

using TarvaneKit::LevelHistoryExtreme;
using TarvaneKit::RGBAColor;

namespace {

constexpr double rightMargin = 8.0;
constexpr double paddingDB = 3.0;
constexpr double stepDB = 10.0;
constexpr double coarseStepDB = 20.0;
constexpr double widestFineRangeDB = 80.0;
constexpr double shortestAxisDB = 20.0;
constexpr double ticksApart = 80.0;
// Ticks up to this far beyond the end count as on it.
constexpr double tickTolerance = 0.001;

constexpr double labelSize = 9.0;
constexpr double labelGap = 4.0;         // between a level and the plot
constexpr double underPlot = 3.0;        // between the plot and what stands under it
constexpr double timeLabelInset = 20.0;  // nearer to an end a time hangs inwards
constexpr double levelLabelsApart = 11.0;
constexpr double emptyTextSize = 12.0;

constexpr double markHalfWidth = 5.0;
constexpr double markTip = 2.0;  // from the point
constexpr double markBase = 10.0;
constexpr double markLabelAcross = 8.0;
constexpr double markLabelUpDown = 6.0;
constexpr double markLabelRoom = 60.0;
constexpr double markPlateOpacity = 0.55;  // keeps the label legible over columns and lines
constexpr double markPlateRadius = 2.0;

constexpr double secondaryOpacity = 0.75;
constexpr double secondaryWidth = 1.0;
constexpr double overlayWidth = 1.5;

constexpr double hoverSize = 11.0;
constexpr double hoverLineOpacity = 0.6;
constexpr double hoverPlateOpacity = 0.95;
constexpr double hoverRadius = 4.0;
constexpr double hoverGap = 6.0;
constexpr double hoverRoom = 160.0;
constexpr double hoverMarginAcross = 5.0;
constexpr double hoverMarginUpDown = 3.0;
constexpr double singleLevelDB = 0.1;  // narrower columns tell one level

QFont labelFont(const Typeface& typeface) {
    return typeface.monospacedFont(labelSize, QFont::Medium);
}

QFont hoverFont(const Typeface& typeface) {
    return typeface.monospacedFont(hoverSize, QFont::Medium);
}

QString oneDecimal(double level) {
    return QString::number(level, 'f', 1);
}

// Digits stand with their middles at a coordinate, whatever the face's ascent.
double baselineAbout(double y, const QFontMetricsF& metrics) {
    return y + metrics.capHeight() / 2.0;
}

void drawLevelLabels(QPainter& painter, const LevelHistoryView::Span& axis, const QRectF& plot,
                     const QFont& font) {
    const QFontMetricsF metrics(font);
    double lastY = std::numeric_limits<double>::infinity();
    for (const double level : LevelHistoryView::levelTicks(axis)) {
        const double y = LevelHistoryView::y(level, axis, plot);
        if (lastY - y < levelLabelsApart) {
            continue;
        }
        lastY = y;
        const QString text = QString::number(static_cast<int>(level));
        // The lowest stands on the axis, clear of the unit under it.
        const double baseline = std::min(baselineAbout(y, metrics), plot.bottom());
        TabularText::draw(
            painter, QPointF(plot.left() - labelGap - TabularText::width(text, font), baseline),
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

// `direction` is -1 for a mark above its point, 1 for one under it. Its label stands beside it,
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
    painter.setPen(Qt::NoPen);
    painter.setBrush(Theme::faded(Theme::background, markPlateOpacity));
    painter.drawRoundedRect(QRectF(left, baseline - metrics.capHeight(), width, metrics.capHeight())
                                .adjusted(-2.0, -2.0, 2.0, 2.0),
                            markPlateRadius, markPlateRadius);
    painter.setPen(Theme::axisText);
    TabularText::draw(painter, QPointF(left, baseline), text, font);
}

std::vector<std::vector<QPointF>> lineParts(const LevelHistoryTraces::Envelope& envelope,
                                            const LevelHistoryGeometry& geometry) {
    std::vector<std::vector<QPointF>> parts;
    bool isOpen = false;
    for (std::size_t i = 0; i < envelope.size(); ++i) {
        if (!envelope[i]) {
            isOpen = false;
            continue;
        }
        if (!isOpen) {
            parts.emplace_back();
            isOpen = true;
        }
        const double fraction =
            (static_cast<double>(i) + 0.5) / static_cast<double>(envelope.size());
        parts.back().emplace_back(
            geometry.plot.left() + fraction * geometry.plot.width(),
            LevelHistoryView::y(envelope[i]->maxDB, geometry.axis, geometry.plot));
    }
    return parts;
}

QString wallClock(const TarvaneKit::Date& start, double elapsed) {
    const auto milliseconds = std::chrono::duration_cast<std::chrono::milliseconds>(
        start.time_since_epoch() + std::chrono::duration<double>(elapsed));
    return QDateTime::fromMSecsSinceEpoch(milliseconds.count())
        .toString(QStringLiteral("HH:mm:ss"));
}

}  // namespace

// --- arithmetic

QRectF LevelHistoryView::plot(const QSizeF& size) const {
    return {leftGutter, topInset, std::max(size.width() - leftGutter - rightMargin, 1.0),
            std::max(size.height() - topInset - bottomGutter, 1.0)};
}

LevelHistoryViewport::Session LevelHistoryView::session() const {
    return {.duration = recorder != nullptr ? recorder->duration() : 0.0,
            .presetWindow = windowSeconds};
}

LevelHistoryView::Span LevelHistoryView::yRange(const LevelHistoryTraces& traces) const {
    if (fixedDBRange) {
        return *fixedDBRange;
    }
    double lowest = std::numeric_limits<double>::infinity();
    double highest = -std::numeric_limits<double>::infinity();
    const auto include = [&](const LevelHistoryTraces::Envelope& envelope) {
        for (const auto& column : envelope) {
            if (column) {
                lowest = std::min(lowest, column->minDB);
                highest = std::max(highest, column->maxDB);
            }
        }
    };
    include(traces.primary);
    include(traces.secondary);
    std::ranges::for_each(traces.overlays, include);
    if (!(lowest <= highest)) {
        return unitLabel == QStringLiteral("dB") ? Span{30.0, 110.0} : Span{-80.0, 0.0};
    }
    Span axis{std::floor((lowest - paddingDB) / stepDB) * stepDB,
              std::ceil((highest + paddingDB) / stepDB) * stepDB};
    if (axis.highest - axis.lowest < shortestAxisDB) {
        const double middle = (axis.lowest + axis.highest) / 2.0;
        axis.lowest = std::floor(middle / stepDB) * stepDB - stepDB;
        axis.highest = axis.lowest + shortestAxisDB;
    }
    return axis;
}

double LevelHistoryView::y(double levelDB, const Span& axis, const QRectF& plot) {
    const double limited = std::clamp(levelDB, axis.lowest, axis.highest);
    return plot.bottom() - plot.height() * (limited - axis.lowest) / (axis.highest - axis.lowest);
}

double LevelHistoryView::levelAt(double y, const Span& axis, const QRectF& plot) {
    return axis.lowest + (plot.bottom() - y) / plot.height() * (axis.highest - axis.lowest);
}

double LevelHistoryView::x(double elapsed, const LevelHistoryViewport::Range& range,
                           const QRectF& plot) {
    return plot.left() + plot.width() * (elapsed - range.from) / range.span();
}

double LevelHistoryView::elapsedAt(double x, const LevelHistoryViewport::Range& range,
                                   const QRectF& plot) {
    return range.from + (x - plot.left()) / plot.width() * range.span();
}

std::vector<double> LevelHistoryView::levelTicks(const Span& axis) {
    const double step = axis.highest - axis.lowest > widestFineRangeDB ? coarseStepDB : stepDB;
    std::vector<double> ticks;
    for (int i = 0; axis.lowest + i * step <= axis.highest + tickTolerance; ++i) {
        ticks.push_back(axis.lowest + i * step);
    }
    return ticks;
}

double LevelHistoryView::timeStep(double span, double width) {
    constexpr std::array steps{1.0,    2.0,    5.0,     10.0,    15.0,   30.0,
                               60.0,   120.0,  300.0,   600.0,   900.0,  1800.0,
                               3600.0, 7200.0, 10800.0, 21600.0, 43200.0};
    constexpr double longest = 86400.0;
    const double limit = std::max(width / ticksApart, 1.0);
    const auto step =
        std::ranges::find_if(steps, [&](double candidate) { return span / candidate <= limit; });
    return step != steps.end() ? *step : longest;
}

std::vector<double> LevelHistoryView::timeTicks(const LevelHistoryViewport::Range& range,
                                                double width) {
    const double step = timeStep(range.span(), width);
    const double first = std::ceil(range.from / step);
    std::vector<double> ticks;
    for (int i = 0; (first + i) * step <= range.to + tickTolerance; ++i) {
        ticks.push_back((first + i) * step);
    }
    return ticks;
}

QString LevelHistoryView::timeLabel(double elapsed) {
    const auto seconds = static_cast<long long>(std::max(std::floor(elapsed), 0.0));
    const auto padded = [](long long number) {
        return QStringLiteral("%1").arg(number, 2, 10, QLatin1Char('0'));
    };
    constexpr long long hour = 3600;
    return seconds < hour ? QStringLiteral("%1:%2").arg(seconds / 60).arg(padded(seconds % 60))
                          : QStringLiteral("%1:%2:%3")
                                .arg(seconds / hour)
                                .arg(padded(seconds % hour / 60), padded(seconds % 60));
}

QString LevelHistoryView::extremeLabel(const LevelHistoryExtreme& extreme) const {
    return QStringLiteral("%1 %2 %3")
        .arg(oneDecimal(extreme.levelDB - displayOffsetDB), unitLabel, timeLabel(extreme.elapsed));
}

RGBAColor LevelHistoryView::columnColor(double maxDB) const {
    return trafficLight.color(maxDB + displayOffsetDB - trafficLightOffsetDB);
}

LevelHistoryGeometry layout(const LevelHistoryView& view, const QSizeF& size) {
    LevelHistoryGeometry geometry;
    geometry.plot = view.plot(size);
    geometry.range = view.range();
    geometry.traces = LevelHistoryTraces::read(view, geometry.plot.width());
    geometry.axis = view.yRange(geometry.traces);
    return geometry;
}

std::vector<LevelHistoryColumn> historyColumns(const LevelHistoryView& view,
                                               const LevelHistoryGeometry& geometry,
                                               double pixelRatio) {
    const PixelGrid grid(pixelRatio);
    const QRectF& plot = geometry.plot;
    const LevelHistoryTraces::Envelope& envelope = geometry.traces.primary;
    const double width = plot.width() / static_cast<double>(envelope.size());
    std::vector<LevelHistoryColumn> columns;
    columns.reserve(envelope.size());
    for (std::size_t i = 0; i < envelope.size(); ++i) {
        if (!envelope[i]) {
            continue;
        }
        const double left = plot.left() + static_cast<double>(i) * width;
        const double top = LevelHistoryView::y(envelope[i]->maxDB, geometry.axis, plot);
        const double bottom = LevelHistoryView::y(envelope[i]->minDB, geometry.axis, plot);
        columns.push_back({.left = grid.snapped(left),
                           .right = grid.snapped(left + width),
                           .top = top,
                           .bottom = top + std::max(bottom - top, 1.0),
                           .color = view.columnColor(envelope[i]->maxDB)});
    }
    return columns;
}

std::vector<LevelHistoryLine> historyLines(const LevelHistoryView& view,
                                           const LevelHistoryGeometry& geometry) {
    std::vector<LevelHistoryLine> lines;
    if (view.secondaryMetricIndex) {
        lines.push_back({.parts = lineParts(geometry.traces.secondary, geometry),
                         .color = Theme::faded(Theme::primaryText, secondaryOpacity),
                         .width = secondaryWidth});
    }
    for (std::size_t i = 0; i < geometry.traces.overlays.size(); ++i) {
        lines.push_back({.parts = lineParts(geometry.traces.overlays[i], geometry),
                         .color = Theme::color(view.overlays[i].color),
                         .width = overlayWidth});
    }
    return lines;
}

// --- the plain drawing

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
    TabularText::draw(painter,
                      QPointF(plot.left() - labelGap - TabularText::width(view.unitLabel, font),
                              plot.bottom() + underPlot + QFontMetricsF(font).ascent()),
                      view.unitLabel, font);
}

void drawColumns(QPainter& painter, const LevelHistoryView& view,
                 const LevelHistoryGeometry& geometry) {
    painter.setRenderHint(QPainter::Antialiasing);
    const double pixelRatio = painter.device()->devicePixelRatioF();
    for (const LevelHistoryColumn& column : historyColumns(view, geometry, pixelRatio)) {
        const QColor color = Theme::color(column.color);
        const double width = column.right - column.left;
        painter.fillRect(
            QRectF(column.left, column.top, width, geometry.plot.bottom() - column.top),
            Theme::faded(color, LevelHistoryOpacity::foot));
        painter.fillRect(QRectF(column.left, column.top, width, column.bottom - column.top),
                         Theme::faded(color, LevelHistoryOpacity::band));
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
    if (view.recorder == nullptr || view.recorder->isEmpty()) {
        painter.setFont(typeface.systemFont(emptyTextSize));
        painter.setPen(Theme::axisText);
        painter.drawText(geometry.plot, Qt::AlignCenter | Qt::TextWordWrap,
                         QStringLiteral("Press Start to record level history"));
        return;
    }
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
                 direction, title + u' ' + oneDecimal(level), geometry.plot, font);
    };
    const auto extremes = view.recorder->extremes(view.metricIndex);
    mark(extremes.max, -1.0, QStringLiteral("MAX"));
    mark(extremes.min, 1.0, QStringLiteral("MIN"));
}

void paint(QPainter& painter, const LevelHistoryView& view, const QSizeF& size,
           const Typeface& typeface) {
    const LevelHistoryGeometry geometry = layout(view, size);
    drawGrid(painter, view, geometry, typeface);
    drawColumns(painter, view, geometry);
    drawLines(painter, view, geometry);
    drawMarks(painter, view, geometry, typeface);
}

// --- hover

QString hoverText(const LevelHistoryView& view, const LevelHistoryGeometry& geometry) {
    const QRectF& plot = geometry.plot;
    const auto x = view.hover.xPosition;
    if (!view.isInteractive || !x || *x < plot.left() || *x > plot.right()) {
        return {};
    }
    const double elapsed = LevelHistoryView::elapsedAt(*x, geometry.range, plot);
    QString text = LevelHistoryView::timeLabel(elapsed);
    if (view.recorder != nullptr && view.recorder->sessionStartDate()) {
        text +=
            QStringLiteral("  (%1)").arg(wallClock(*view.recorder->sessionStartDate(), elapsed));
    }
    const auto columnAt = [&](const LevelHistoryTraces::Envelope& envelope) {
        const auto index =
            static_cast<std::size_t>(std::max((*x - plot.left()) / plot.width(), 0.0) *
                                     static_cast<double>(envelope.size()));
        return index < envelope.size() ? envelope[index] : std::nullopt;
    };
    if (const auto column = columnAt(geometry.traces.primary)) {
        text += QStringLiteral("  ");
        if (column->maxDB - column->minDB >= singleLevelDB) {
            text += oneDecimal(column->minDB) + u'–';
        }
        text += oneDecimal(column->maxDB) + u' ' + view.unitLabel;
    }
    if (const auto column = columnAt(geometry.traces.secondary)) {
        text += QStringLiteral("  M max ") + oneDecimal(column->maxDB);
    }
    return text;
}

QRectF hoverPlate(const LevelHistoryView& view, const LevelHistoryGeometry& geometry,
                  const QSizeF& size, const Typeface& typeface) {
    const QString text = hoverText(view, geometry);
    if (text.isEmpty()) {
        return {};
    }
    const QFont font = hoverFont(typeface);
    const double width = TabularText::width(text, font);
    const double x = *view.hover.xPosition;
    const bool fitsRight = x + hoverGap + width + hoverMarginAcross <= size.width();
    double left =
        x > geometry.plot.right() - hoverRoom || !fitsRight ? x - hoverGap - width : x + hoverGap;
    left = std::max(left, hoverMarginAcross);
    return QRectF(left, geometry.plot.top(), width, QFontMetricsF(font).height())
        .adjusted(-hoverMarginAcross, -hoverMarginUpDown, hoverMarginAcross, hoverMarginUpDown);
}

void drawHover(QPainter& painter, const LevelHistoryView& view,
               const LevelHistoryGeometry& geometry, const QSizeF& size, const Typeface& typeface) {
    const QRectF plate = hoverPlate(view, geometry, size, typeface);
    if (plate.isEmpty()) {
        return;
    }
    paintVerticalLine(painter, *view.hover.xPosition, geometry.plot,
                      Theme::faded(Theme::primaryText, hoverLineOpacity));
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Theme::faded(Theme::panelBackground, hoverPlateOpacity));
    painter.drawRoundedRect(plate, hoverRadius, hoverRadius);
    const QFont font = hoverFont(typeface);
    painter.setPen(Qt::white);
    TabularText::draw(painter,
                      QPointF(plate.left() + hoverMarginAcross,
                              plate.top() + hoverMarginUpDown + QFontMetricsF(font).ascent()),
                      hoverText(view, geometry), font);
}

}  // namespace TarvaneApp
