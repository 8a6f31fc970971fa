// The clock that can take the place of a readout: the time of day, large, above the date.
//
// A value record with all that is drawn, and pure functions from it and a size to rectangles and
// painter calls. Coordinates are logical pixels, the origin at the top left.
#pragma once

#include <QDateTime>
#include <QLocale>
#include <QRegion>
#include <QSizeF>
#include <QString>

#include "Displays/Readouts/ReadoutLayout.h"
#include "Displays/Theme.h"

class QPainter;

namespace TarvaneApp {

struct ClockReadoutView {
    QString timeText;
    QString dateText;

    // --- what it says

    /// Hours to seconds, and the date in the locale's long style.
    static ClockReadoutView at(const QDateTime& moment, const QLocale& locale = QLocale());

    bool operator==(const ClockReadoutView&) const = default;
};

ReadoutFrame layout(const ClockReadoutView& view, const QSizeF& size,
                    const Typeface& typeface = Typeface::installed());

/// Draws the parts that touch `dirty`; the background is left as it is.
void paint(QPainter& painter, const ClockReadoutView& view, const ReadoutFrame& frame,
           const QRegion& dirty, const Typeface& typeface = Typeface::installed());

/// The whole clock at a size.
void paint(QPainter& painter, const ClockReadoutView& view, const QSizeF& size,
           const Typeface& typeface = Typeface::installed());

/// Whether both records have their parts in the same places.
bool sameShape(const ClockReadoutView& a, const ClockReadoutView& b);

/// What has to be repainted when the second record replaces the first in the same
/// frame: empty when both look the same.
QRegion changedArea(const ClockReadoutView& before, const ClockReadoutView& after,
                    const ReadoutFrame& frame);

}  // namespace TarvaneApp
