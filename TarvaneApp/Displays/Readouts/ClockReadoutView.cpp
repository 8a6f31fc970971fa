#include "Displays/Readouts/ClockReadoutView.h"

#include <QPainter>

#include "Displays/Readouts/ReadoutDrawing.h"

namespace TarvaneApp {

using ReadoutDrawing::textArea;
using ReadoutDrawing::valueArea;

ClockReadoutView ClockReadoutView::at(const QDateTime& moment, const QLocale& locale) {
    return {.timeText = moment.time().toString(QStringLiteral("HH:mm:ss")),
            .dateText = locale.toString(moment.date(), QLocale::LongFormat)};
}

ReadoutFrame layout(const ClockReadoutView& view, const QSizeF& size, const Typeface& typeface) {
    const ReadoutParts parts{
        .value = ReadoutDrawing::valueSize(QStringLiteral("00:00:00"), typeface),
        .side = {},
        .label = ReadoutDrawing::labelSize(view.dateText, typeface),
        .rows = {},
        .badge = {},
        .hasResetButton = false,
    };
    return ReadoutLayout::of(parts, size).frame;
}

void paint(QPainter& painter, const ClockReadoutView& view, const ReadoutFrame& frame,
           const QRegion& dirty, const Typeface& typeface) {
    painter.setRenderHint(QPainter::Antialiasing);
    if (dirty.intersects(valueArea(frame))) {
        ReadoutDrawing::paintValueText(painter, view.timeText, Theme::primaryText, frame, typeface);
    }
    if (dirty.intersects(textArea(frame.label))) {
        ReadoutDrawing::paintLabel(painter, view.dateText, frame, typeface);
    }
}

void paint(QPainter& painter, const ClockReadoutView& view, const QSizeF& size,
           const Typeface& typeface) {
    paint(painter, view, layout(view, size, typeface), QRectF(QPointF(), size).toAlignedRect(),
          typeface);
}

bool sameShape(const ClockReadoutView& a, const ClockReadoutView& b) {
    return a.dateText == b.dateText;
}

QRegion changedArea(const ClockReadoutView& before, const ClockReadoutView& after,
                    const ReadoutFrame& frame) {
    QRegion area;
    if (before.timeText != after.timeText) {
        area += valueArea(frame);
    }
    if (before.dateText != after.dateText) {
        area += textArea(frame.label);
    }
    return area;
}

}  // namespace TarvaneApp
