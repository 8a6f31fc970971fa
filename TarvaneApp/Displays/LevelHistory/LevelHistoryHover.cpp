#include "Displays/LevelHistory/LevelHistoryHover.h"

#include <QDateTime>
#include <QFontMetricsF>
#include <QPainter>
#include <algorithm>
#include <chrono>

#include "Displays/Readouts/ReadoutText.h"
#include "Displays/SharpLine.h"
#include "Displays/TabularText.h"

namespace TarvaneApp {

namespace {

constexpr double hoverLineOpacity = 0.6;
constexpr double hoverPlateOpacity = 0.95;
constexpr double hoverGap = 6.0;
constexpr double hoverRoom = 160.0;
constexpr double hoverMarginAcross = 5.0;
constexpr double hoverMarginUpDown = 3.0;
constexpr double singleLevelDB = 0.1;  // narrower columns tell one level

QFont hoverFont(const Typeface& typeface) {
    return typeface.monospacedFont(Theme::Text::caption, QFont::Medium);
}

QString wallClock(const TarvaneKit::Date& start, double elapsed) {
    const auto milliseconds = std::chrono::duration_cast<std::chrono::milliseconds>(
        start.time_since_epoch() + std::chrono::duration<double>(elapsed));
    return QDateTime::fromMSecsSinceEpoch(milliseconds.count())
        .toString(QStringLiteral("HH:mm:ss"));
}

}  // namespace

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
            text += levelText(column->minDB) + u'–';
        }
        text += levelText(column->maxDB) + u' ' + view.unitLabel;
    }
    if (const auto column = columnAt(geometry.traces.secondary)) {
        text += QStringLiteral("  M max ") + levelText(column->maxDB);
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
    painter.drawRoundedRect(plate, Theme::Radius::plate, Theme::Radius::plate);
    const QFont font = hoverFont(typeface);
    painter.setPen(Qt::white);
    TabularText::draw(painter,
                      QPointF(plate.left() + hoverMarginAcross,
                              plate.top() + hoverMarginUpDown + QFontMetricsF(font).ascent()),
                      hoverText(view, geometry), font);
}

}  // namespace TarvaneApp
