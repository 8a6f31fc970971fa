// The sound level readout: the big value between MIN and MAX, what it is, the two sides of a
// stereo channel, the progress of an Leq, and the clip badge.
//
// A value record with all that is drawn, and pure functions from it and a size to rectangles and
// painter calls. Nothing here computes a level. Coordinates are logical pixels, the origin at
// the top left.
#pragma once

#include <QRectF>
#include <QRegion>
#include <QSizeF>
#include <QString>
#include <functional>
#include <optional>
#include <vector>

#include "Core/RGBAColor.h"
#include "Metrics/InputClipState.h"
#include "Theme.h"

class QPainter;

namespace TarvaneApp {

struct SPLReadoutView {
    /// Minus infinity, like every value that is not finite, shows as "—".
    double valueDB = 0.0;
    QString metricLabel;
    TarvaneKit::RGBAColor color;
    bool isCalibrated = false;
    bool showsDBFS = false;
    /// Present only with a Leq metric.
    std::optional<double> leqElapsedFraction;
    double minValueDB = 0.0;
    double maxValueDB = 0.0;
    TarvaneKit::InputClipState clipState = TarvaneKit::InputClipState::none;
    /// The two sides of a stereo channel, else empty.
    std::vector<double> sideValuesDB;
    /// Where present, room is kept for the button "Reset Min/Max".
    std::function<void()> onResetMinMax;

    /// `metricLabel` and why its numbers are digital, where they are.
    QString labelText() const;
    /// The big value with its unit, as "-23.0 dBFS"; "—" without a value.
    QString spokenValue() const;
    /// 0 to 1; a progress that is not finite is 0.
    double progress() const;
};

/// Where the readout's parts stand. Parts that the record doesn't have are empty rectangles.
struct SPLReadoutGeometry {
    double valuePixelSize = 0.0;
    /// The scale of all other texts, 1 at the readout's ordinary size.
    double textScale = 1.0;
    QRectF value;  ///< the width template's width, from digit top to digit foot
    QRectF min;
    QRectF max;
    QRectF label;
    QRectF sides;
    QRectF progress;
    QRectF clipBadge;
    QRectF resetButton;
};

/// The readout grows with the room that it is given, so that it reads from across a hall: the
/// big value as far as neither height nor width runs out and not under 0.4 of its ordinary
/// size, the other texts half as fast. The value has no part in it: numbers change, and nothing
/// moves.
SPLReadoutGeometry layout(const SPLReadoutView& view, const QSizeF& size,
                          const Typeface& typeface = Typeface::installed());

/// Draws the parts that touch `dirty`; the background is left as it is.
void paint(QPainter& painter, const SPLReadoutView& view, const SPLReadoutGeometry& geometry,
           const QRegion& dirty, const Typeface& typeface = Typeface::installed());

/// The whole readout at a size.
void paint(QPainter& painter, const SPLReadoutView& view, const QSizeF& size,
           const Typeface& typeface = Typeface::installed());

/// What has to be drawn anew when the second record takes the first one's place in the same
/// geometry: empty when both look the same.
QRegion changedArea(const SPLReadoutView& before, const SPLReadoutView& after,
                    const SPLReadoutGeometry& geometry);

}  // namespace TarvaneApp
