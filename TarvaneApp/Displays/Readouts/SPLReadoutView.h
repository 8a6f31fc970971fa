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
#include <optional>
#include <vector>

#include "Core/RGBAColor.h"
#include "Displays/Readouts/ReadoutLayout.h"
#include "Displays/Theme.h"
#include "Metrics/InputClipState.h"
#include "Records/LostAudio.h"

class QPainter;

namespace TarvaneApp {

struct SPLReadoutView {
    /// Minus infinity, like every value that is not finite, shows as "—".
    double valueDB = 0.0;
    QString metricLabel;
    TarvaneKit::RGBAColor color;
    bool isCalibrated = false;
    bool showsDBFS = false;
    /// Present only with an Leq metric.
    std::optional<double> leqElapsedFraction;
    double minValueDB = 0.0;
    double maxValueDB = 0.0;
    TarvaneKit::InputClipState clipState = TarvaneKit::InputClipState::none;
    LostAudioTotal lostAudio = {};
    /// The two sides of a stereo channel, else empty.
    std::vector<double> sideValuesDB;
    /// Keeps room for the button "Reset Min/Max".
    bool offersReset = false;
    /// Keeps room for the level bar.
    bool hasLevelBar = false;

    // --- what it says

    /// `metricLabel`, and where its numbers are in dBFS a note that they are.
    QString labelText() const;
    /// The big value with its unit, as "-23.0 dBFS"; "—" without a value.
    QString spokenValue() const;
    /// 0 to 1; a progress that is not finite is 0.
    double progress() const;
};

/// Where the readout's parts are. Parts that the record doesn't have are empty rectangles.
struct SPLReadoutGeometry : ReadoutFrame {
    QRectF min;
    QRectF max;
    QRectF sides;
    QRectF progress;
};

/// Laid out by ReadoutLayout. It doesn't depend on the value: numbers change, and nothing moves.
SPLReadoutGeometry layout(const SPLReadoutView& view, const QSizeF& size,
                          const Typeface& typeface = Typeface::installed());

/// Draws the parts that touch `dirty`; the background is left as it is.
void paint(QPainter& painter, const SPLReadoutView& view, const SPLReadoutGeometry& geometry,
           const QRegion& dirty, const Typeface& typeface = Typeface::installed());

/// The whole readout at a size.
void paint(QPainter& painter, const SPLReadoutView& view, const QSizeF& size,
           const Typeface& typeface = Typeface::installed());

/// Whether both records have their parts in the same places.
bool sameShape(const SPLReadoutView& a, const SPLReadoutView& b);

/// What has to be repainted when the second record replaces the first in the same
/// geometry: empty when both look the same.
QRegion changedArea(const SPLReadoutView& before, const SPLReadoutView& after,
                    const SPLReadoutGeometry& geometry);

}  // namespace TarvaneApp
