// The shapes of a spectrum's bars and lines. Coordinates are logical pixels, the origin at the
// graph's top left.
#pragma once

#include <QPainterPath>
#include <QPointF>
#include <QRectF>
#include <optional>
#include <vector>

#include "Displays/PixelGrid.h"

namespace TarvaneApp {

/// Moves a bar's sides onto whole device pixels, so that bars and the air between them are sharp
/// and even. Bars of few device pixels stay where they are: moved, they would beat.
QRectF sharpened(const QRectF& bar, const PixelGrid& grid);

/// Softens a line: it runs through the middles between neighbouring points. With a baseline it
/// is closed down to it.
QPainterPath smoothedPath(const std::vector<QPointF>& points,
                          std::optional<double> closingBaseline = std::nullopt);

}  // namespace TarvaneApp
