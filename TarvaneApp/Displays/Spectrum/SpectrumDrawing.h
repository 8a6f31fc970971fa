// The plain drawing of a spectrum with any painter: what pages are drawn with, and what the fast
// drawing of windows (SpectrumRaster) must look like. Coordinates are logical pixels, the origin at
// the graph's top left.
#pragma once

#include <QColor>
#include <QSizeF>

#include "Displays/Spectrum/SpectrumView.h"
#include "Displays/Theme.h"

class QLinearGradient;
class QPainter;

namespace TarvaneApp {

/// The whole graph; the background is left as it is. The readout is drawn apart, since it
/// follows the pointer.
void paint(QPainter& painter, const SpectrumView& view, const QSizeF& size,
           const Typeface& typeface = Typeface::installed());

// The parts that stand still, in this order; the fast drawing uses them, too.

/// The grid, and the lines at floor and ceiling.
void drawRules(QPainter& painter, const SpectrumView& view, const QSizeF& size);
/// Nothing without a target curve.
void drawTargetCurve(QPainter& painter, const SpectrumView& view, const QSizeF& size);
/// Nothing without a ring.
void drawRingAlertMarker(QPainter& painter, const SpectrumView& view, const QSizeF& size);
void drawLabels(QPainter& painter, const SpectrumView& view, const QSizeF& size,
                const Typeface& typeface = Typeface::installed());

/// How thick the strokes are.
namespace SpectrumStroke {
inline constexpr double line = 1.2;
inline constexpr double linePeakHold = 1.0;
inline constexpr double overlay = 1.4;
inline constexpr double bandCap = 1.5;
inline constexpr double bandPeakHold = 2.0;
inline constexpr double ringAlert = 1.5;
}  // namespace SpectrumStroke

namespace Theme {

/// The fill under a line and of bars, over the whole height of the graph: a low bar shows its dark
/// part.
QLinearGradient spectrumFillGradient(const QColor& color, double height);

}  // namespace Theme

}  // namespace TarvaneApp
