#include "Displays/LevelHistory/LevelHistoryHover.h"

#include <QDateTime>
#include <algorithm>
#include <chrono>

#include "Displays/HoverPlate.h"
#include "Displays/Readouts/ReadoutText.h"
#include "Displays/SharpLine.h"

namespace TarvaneApp {

namespace {

constexpr double lineOpacity = 0.6;
constexpr double gap = 6.0;            // between the line and the text
constexpr double roomOnRight = 160.0;  // with less room than this the text is on the left
constexpr double marginAcross = 5.0;
constexpr double singleLevelDB = 0.1;  // narrower columns show one level

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
    const bool isEmpty = view.session().duration <= 0.0;
    if (isEmpty || !view.isInteractive || !x || *x < plot.left() || *x > plot.right()) {
        return {};
    }
    const double elapsed = LevelHistoryView::elapsedAt(*x, geometry.range, plot);
    QString text = LevelHistoryView::timeLabel(elapsed);
    if (view.recorder->sessionStartDate()) {
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
            // A dash between signs needs air to be told from them.
            text += levelText(column->minDB) +
                    (column->minDB < 0.0 ? QStringLiteral(" – ") : QStringLiteral("–"));
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
    const QSizeF plate = HoverPlate{text, marginAcross}.size(typeface);
    const double width = plate.width() - 2.0 * marginAcross;
    const double x = *view.hover.xPosition;
    const bool isOnRight =
        x <= geometry.plot.right() - roomOnRight && x + gap + width + marginAcross <= size.width();
    const double left = std::max(isOnRight ? x + gap : x - gap - width, marginAcross);
    return {QPointF(left - marginAcross, geometry.plot.top() - HoverPlate::marginUpDown), plate};
}

void drawHover(QPainter& painter, const LevelHistoryView& view,
               const LevelHistoryGeometry& geometry, const QSizeF& size, const Typeface& typeface) {
    const QRectF plate = hoverPlate(view, geometry, size, typeface);
    if (plate.isEmpty()) {
        return;
    }
    paintVerticalLine(painter, *view.hover.xPosition, geometry.plot,
                      Theme::faded(Theme::primaryText, lineOpacity));
    HoverPlate{hoverText(view, geometry), marginAcross}.paint(painter, plate, typeface);
}

}  // namespace TarvaneApp
