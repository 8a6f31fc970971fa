// The level bar under a readout: a filled bar, a thin line over it, a scale below. A value
// record, its arithmetic, and drawing. Coordinates are logical pixels.
#pragma once

#include <QRectF>
#include <QRegion>
#include <QString>
#include <optional>
#include <vector>

#include "Core/RGBAColor.h"
#include "Displays/Theme.h"

class QPainter;

namespace TarvaneApp {

struct LevelBarView {
    struct Range {
        double lower = -60.0;
        double upper = 0.0;
        bool operator==(const Range&) const = default;
    };

    /// Minus infinity draws no bar; as the marker's level, no line.
    double valueDB = 0.0;
    double markerDB = 0.0;
    Range range;
    TarvaneKit::RGBAColor color;
    QString unitLabel;
    std::optional<Range> targetBand;
    QString legend;

    // --- its scale

    /// The place of a level along the range, limited to 0 and 1. NaN, and any level in a range
    /// without width, are at 0.
    static double fraction(double levelDB, const Range& range);
    /// The level at a fraction of the range.
    static double level(double fraction, const Range& range);
    /// The whole tens within the range, or the whole twenties when it is wider than 60 dB.
    static std::vector<double> ticks(const Range& range);

    bool operator==(const LevelBarView&) const = default;
};

struct LevelBarGeometry {
    struct Tick {
        double x = 0.0;
        QString text;
        QRectF label;
    };

    double scale = 1.0;  ///< 1 at `naturalHeight`
    QRectF captions;     ///< unit at its left, legend at its right
    QRectF track;
    std::vector<Tick> ticks;
    QRectF ticksRect;  ///< the marks and their labels

    static constexpr double naturalHeight = 44.0;
    /// The track alone, where there is no room for its texts.
    static constexpr double bareHeight = 16.0;
};

/// Up to `bareHeight` the track alone. Everything scales with the height. A tick's label that would
/// touch its neighbour is left out.
LevelBarGeometry layout(const LevelBarView& view, const QRectF& rect,
                        const Typeface& typeface = Typeface::installed());

/// Draws the parts that touch `dirty`; the background is left as it is.
void paint(QPainter& painter, const LevelBarView& view, const LevelBarGeometry& geometry,
           const QRegion& dirty, const Typeface& typeface = Typeface::installed());

/// What has to be repainted when the second record replaces the first: the track when
/// a level moved by a device pixel, all of it when the range or a text changed. `pixelRatio` is
/// device pixels per logical pixel.
QRegion changedArea(const LevelBarView& before, const LevelBarView& after,
                    const LevelBarGeometry& geometry, const QRectF& rect, double pixelRatio);

}  // namespace TarvaneApp
