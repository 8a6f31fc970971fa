// The real-time analyzer's graph: band levels and line spectrum of a channel over a logarithmic
// frequency axis, peak hold, a target curve, the traces of other channels, and a readout under
// the pointer.
//
// A value record with all that is drawn, and its scales. SpectrumGeometry has the shapes that
// follow from it, SpectrumLabels the places of its labels, SpectrumDrawing the plain drawing and
// SpectrumRaster the fast one of windows. Coordinates are logical pixels, the origin at the top
// left; the graph fills its size, with its labels inside.
#pragma once

#include <QColor>
#include <QRectF>
#include <QString>
#include <optional>
#include <vector>

#include "Core/UUID.h"
#include "DSP/OctaveBands.h"
#include "DSP/RingAlert.h"
#include "Displays/FrequencyAxis.h"
#include "Displays/Theme.h"
#include "Records/RTAScale.h"
#include "Records/SpectrumViewMode.h"
#include "TargetCurves/TargetCurve.h"

namespace TarvaneApp {

/// The trace of another channel over the graph.
struct SpectrumOverlay {
    TarvaneKit::UUID id;  ///< of the channel
    QColor color;
    std::vector<double> lineSpectrumDB;
    std::vector<double> bandLevelsDB;
    std::vector<TarvaneKit::OctaveBand> bands;  ///< of the channel's own fraction
    double sampleRate = 0.0;
    double levelOffsetDB = 0.0;

    bool operator==(const SpectrumOverlay&) const = default;
};

/// Where the pointer is. Both are absent while it is outside.
struct SpectrumHoverState {
    std::optional<double> xPosition;
    std::optional<double> frequencyHz;

    static SpectrumHoverState at(double x, double width, const FrequencyAxis& axis) {
        return {x, axis.frequencyHz(x, width)};
    }
    bool operator==(const SpectrumHoverState&) const = default;
};

struct SpectrumView {
    // Parts whose arrays don't match in length are not drawn.
    std::vector<TarvaneKit::OctaveBand> bands;
    std::vector<double> bandLevelsDB;
    std::vector<double> bandPeakHoldDB;
    std::vector<double> lineSpectrumDB;  ///< per FFT line, from 0 Hz on
    std::vector<double> linePeakHoldDB;
    double sampleRate = 48000.0;
    int fftSize = 4096;
    SpectrumViewMode viewMode = SpectrumViewMode::both;
    QColor traceColor;
    QColor peakColor = Theme::peakHold;
    bool showPeakHold = false;
    std::optional<double> spectrogramFloorDB;
    std::optional<double> spectrogramCeilingDB;
    RTAScale scale = RTAScale::spl;
    /// Subtracted from every level of this channel, but not from target curve, floor and ceiling.
    double levelOffsetDB = 0.0;
    std::optional<TarvaneKit::TargetCurve> targetCurve;
    double targetCurveReferenceDB = 0.0;
    std::optional<TarvaneKit::RingAlert> activeRingAlert;
    std::vector<SpectrumOverlay> overlays;
    SpectrumHoverState hover;
    /// A banner lies there, and no label.
    QRectF covered;
    double minHz = 20.0;
    double maxHz = 20000.0;

    // --- its scales

    FrequencyAxis frequencyAxis() const { return {minHz, maxHz}; }
    double axisBottomDB() const { return scale == RTAScale::spl ? 0.0 : -140.0; }
    double axisTopDB() const { return scale == RTAScale::spl ? 140.0 : 0.0; }
    /// A level beyond the axis maps to its end, NaN to the bottom.
    double y(double levelDB, double height) const;
    double levelAt(double y, double height) const;
    /// In steps of 20 dB, from the bottom up.
    std::vector<double> levelGridLines() const;
    bool showsLine() const { return viewMode != SpectrumViewMode::banded; }
    bool showsBands() const { return viewMode != SpectrumViewMode::line; }

    /// The y of floor or ceiling; absent unless it lies inside the axis, ends excluded.
    std::optional<double> ruleY(const std::optional<double>& levelDB, double height) const;

    /// The level at a frequency, from the line spectrum if there is one.
    std::optional<double> levelDB(double atFrequencyHz) const;
    /// "1.00 kHz  62.1 dB".
    QString hoverLabel(double forFrequencyHz) const;

    bool operator==(const SpectrumView&) const = default;
};

}  // namespace TarvaneApp
