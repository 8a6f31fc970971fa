// The shapes of a spectrum: the points of its lines, its bars, its target curve. Arithmetic that
// the plain and the fast drawing share. Coordinates are logical pixels, the origin at the graph's
// top left.
#pragma once

#include <QPainterPath>
#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <optional>
#include <vector>

#include "DSP/OctaveBands.h"
#include "Displays/FrequencyAxis.h"
#include "Displays/PixelGrid.h"
#include "TargetCurves/TargetCurve.h"

namespace TarvaneApp {

struct SpectrumView;

/// Whether there are bands, and a level for each.
bool match(const std::vector<TarvaneKit::OctaveBand>& bands, const std::vector<double>& levelsDB);

/// The points of a line trace, as far as the axis goes. Absent arguments mean the view's own.
std::vector<QPointF> linePoints(const SpectrumView& view, const std::vector<double>& levelsDB,
                                const QSizeF& size, std::optional<double> sampleRate = std::nullopt,
                                std::optional<double> offsetDB = std::nullopt);
/// The bar of a band at a level less its offset: one pixel of air between neighbours, and never
/// thinner than one.
QRectF bandBar(const SpectrumView& view, const FrequencyAxis& axis,
               const TarvaneKit::OctaveBand& band, double levelDB, const QSizeF& size);
/// None for a curve without points.
std::vector<QPointF> targetCurvePoints(const SpectrumView& view,
                                       const TarvaneKit::TargetCurve& curve, const QSizeF& size);

/// Moves a bar's sides onto whole device pixels, so that bars and the air between them are sharp
/// and even. Narrow bars stay where they are: rounded, their spacing would look uneven.
QRectF sharpened(const QRectF& bar, const PixelGrid& grid);

/// Softens a line: it runs through the middles between neighbouring points. With a baseline it
/// is closed down to it.
QPainterPath smoothedPath(const std::vector<QPointF>& points,
                          std::optional<double> closingBaseline = std::nullopt);

}  // namespace TarvaneApp
