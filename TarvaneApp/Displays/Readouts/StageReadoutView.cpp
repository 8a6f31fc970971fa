#include "Displays/Readouts/StageReadoutView.h"

#include <QPainter>
#include <algorithm>

#include "Displays/Readouts/ReadoutDrawing.h"
#include "Displays/Readouts/ReadoutText.h"

namespace TarvaneApp {

using ReadoutDrawing::textArea;
using ReadoutDrawing::valueArea;

ReadoutFrame layout(const StageReadoutView& view, const QSizeF& size, const Typeface& typeface) {
    const QSizeF value = ReadoutDrawing::valueSize(view.widthTemplate, typeface);
    // A long name shrinks under the number, rather than the number with it.
    const QSizeF label = ReadoutDrawing::labelSize(view.label, typeface);
    const ReadoutParts parts{
        .value = value,
        .side = {},
        .label = QSizeF(std::min(label.width(), value.width()), label.height()),
        .rows = {},
        .badge = {},
        .hasResetButton = false,
    };
    return ReadoutLayout::of(parts, size).frame;
}

void paint(QPainter& painter, const StageReadoutView& view, const ReadoutFrame& frame,
           const QRegion& dirty, const Typeface& typeface) {
    painter.setRenderHint(QPainter::Antialiasing);
    if (dirty.intersects(valueArea(frame))) {
        ReadoutDrawing::paintValue(painter, view.valueDB, view.ordinaryValue, view.color, frame,
                                   typeface);
    }
    if (dirty.intersects(textArea(frame.label))) {
        ReadoutDrawing::paintLabel(painter, view.label, frame, typeface);
    }
}

bool sameShape(const StageReadoutView& a, const StageReadoutView& b) {
    return a.label == b.label && a.widthTemplate == b.widthTemplate &&
           a.ordinaryValue == b.ordinaryValue;
}

QRegion changedArea(const StageReadoutView& before, const StageReadoutView& after,
                    const ReadoutFrame& frame) {
    const bool isSame =
        levelText(before.valueDB) == levelText(after.valueDB) && before.color == after.color;
    return isSame ? QRegion() : QRegion(valueArea(frame));
}

}  // namespace TarvaneApp
