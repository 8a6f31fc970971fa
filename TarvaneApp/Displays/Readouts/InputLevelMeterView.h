// The level at a channel's input, as a form shows it while a gain is set: a bar up to full scale,
// with its peak held for a moment, and the number beside it. A value record, its arithmetic, and
// drawing. Coordinates are logical pixels.
#pragma once

#include <QRectF>
#include <QRegion>
#include <QString>
#include <optional>

#include "Displays/Readouts/LevelBarView.h"
#include "Displays/Theme.h"

class QPainter;

namespace TarvaneApp {

struct InputLevelMeterView {
    /// Without metering there is a sentence in the bar's place.
    bool isMetering = false;
    /// Peak in dBFS; absent where nothing comes in.
    std::optional<double> levelDBFS;
    std::optional<double> heldDBFS;
    bool isClipping = false;

    static constexpr LevelBarView::Range range{-60.0, 0.0};
    /// How close to full scale the bar turns yellow.
    static constexpr double nearFullScaleDBFS = -6.0;

    /// "-12.3", "CLIP", "—", "< -60"; or the sentence.
    QString text() const;
    /// The bar as it is drawn.
    LevelBarView bar() const;

    bool operator==(const InputLevelMeterView&) const = default;
};

struct InputLevelMeterGeometry {
    LevelBarGeometry bar;
    QRectF barRect;
    QRectF text;  ///< the number; or the sentence, in all of the room
};

InputLevelMeterGeometry layout(const InputLevelMeterView& view, const QRectF& rect,
                               const Typeface& typeface = Typeface::installed());

/// Draws the parts that touch `dirty`; the background is left as it is.
void paint(QPainter& painter, const InputLevelMeterView& view,
           const InputLevelMeterGeometry& geometry, const QRegion& dirty,
           const Typeface& typeface = Typeface::installed());

/// What has to be repainted when the second record replaces the first. `pixelRatio` is device
/// pixels per logical pixel.
QRegion changedArea(const InputLevelMeterView& before, const InputLevelMeterView& after,
                    const InputLevelMeterGeometry& geometry, const QRectF& rect, double pixelRatio);

}  // namespace TarvaneApp
