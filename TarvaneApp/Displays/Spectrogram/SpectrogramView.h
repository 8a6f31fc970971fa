// The spectrogram: how a channel's spectrum evolves, frequency across on a logarithmic axis, time
// down, the newest row at the bottom, levels as colours of a ramp.
//
// A value record with all that is drawn, its scales, and the plain drawing with any painter: what
// the fast drawing of windows (SpectrogramRaster) must look like. Columns are spaced as the
// axis is, so that a row needs no resampling. Coordinates are logical pixels, the origin at the
// top left.
#pragma once

#include <QRgb>
#include <QSizeF>
#include <cstdint>
#include <span>
#include <vector>

#include "Displays/FrequencyAxis.h"
#include "Displays/Spectrogram/SpectrogramRasterCache.h"
#include "Displays/Spectrogram/SpectrogramRows.h"
#include "Displays/Spectrogram/SpectrogramScrollState.h"
#include "Records/SpectrogramColorStop.h"

class QPainter;

namespace TarvaneApp {

struct SpectrogramView {
    SpectrogramRows history;              ///< all rows, in dB
    std::int64_t rowsAdded = 0;           ///< every row that ever came
    std::span<const double> frequencies;  ///< of the columns
    double floorDB = 30.0;                ///< the level where the ramp begins
    double ceilingDB = 110.0;             ///< and where it ends
    std::vector<SpectrogramColorStop> colorStops = defaultSpectrogramColorStops();
    double rowsPerSecond = 60.0;
    double timeSpanSeconds = 2.0;
    double sliceHeightMultiplier = 1.0;
    SpectrogramScrollState scrollState;
    double minHz = 20.0;
    double maxHz = 20000.0;

    // --- its scales

    struct VisibleRows {
        int first = 0;
        int end = 0;
        bool isLive = true;
        bool operator==(const VisibleRows&) const = default;
    };

    FrequencyAxis frequencyAxis() const { return {minHz, maxHz}; }
    /// How many rows fill the plot, at least 1; the taller the slices, the fewer.
    int rows() const;
    /// The part of the history that the plot shows; fewer than `rows` shortly after a start.
    VisibleRows visibleRows() const;

    /// The ramp's colour at 0 to 1; white for a ramp without stops.
    static QRgb colorForT(double t, const std::vector<SpectrogramColorStop>& stops);
    /// The ramp in 256 equal steps.
    static SpectrogramRasterCache::LUT colorLUT(const std::vector<SpectrogramColorStop>& stops);
};

/// The plot. The rows stretch to fill it.
void paint(QPainter& painter, const SpectrogramView& view, SpectrogramRasterCache& raster,
           const QSizeF& size);

/// The grid lines alone.
void paintFrequencyRules(QPainter& painter, const SpectrogramView& view, const QSizeF& size);

}  // namespace TarvaneApp
