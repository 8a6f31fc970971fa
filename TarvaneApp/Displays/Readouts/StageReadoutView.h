// A channel's large value and its name, as large as the room allows and nothing beside them, for
// a screen that is read from across a stage.
//
// A value record with all that is drawn, and pure functions from it and a size to rectangles and
// painter calls. Coordinates are logical pixels, the origin at the top left.
#pragma once

#include <QRegion>
#include <QSizeF>
#include <QString>

#include "Core/RGBAColor.h"
#include "Displays/Readouts/ReadoutLayout.h"
#include "Displays/Theme.h"

class QPainter;

namespace TarvaneApp {

struct StageReadoutView {
    /// Minus infinity, like every value that is not finite, shows as "—".
    double valueDB = 0.0;
    /// Of the value.
    TarvaneKit::RGBAColor color;
    QString label;
    /// The widest ordinary number, which sets the value's size.
    QString widthTemplate;
    /// The longest number that is usual: the value stands in the middle as this would.
    QString ordinaryValue;
};

/// Laid out by ReadoutLayout. It depends neither on the value nor on how long the label is: both
/// change, and the number stays as it is.
ReadoutFrame layout(const StageReadoutView& view, const QSizeF& size,
                    const Typeface& typeface = Typeface::installed());

/// Draws the parts that touch `dirty`; the background is left as it is.
void paint(QPainter& painter, const StageReadoutView& view, const ReadoutFrame& frame,
           const QRegion& dirty, const Typeface& typeface = Typeface::installed());

/// Whether both records have their parts in the same places.
bool sameShape(const StageReadoutView& a, const StageReadoutView& b);

/// What has to be repainted when the second record replaces the first in the same frame: empty
/// when both look the same.
QRegion changedArea(const StageReadoutView& before, const StageReadoutView& after,
                    const ReadoutFrame& frame);

}  // namespace TarvaneApp
