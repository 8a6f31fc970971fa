// The readout of a spectrum under the pointer: a line over the graph and a plate with frequency and
// level. It is drawn apart from the graph, since it follows the pointer.
#pragma once

#include <QRectF>
#include <QSizeF>

#include "Displays/Theme.h"

class QPainter;

namespace TarvaneApp {

struct SpectrumView;

/// The readout's plate. Empty without a pointer.
QRectF hoverPlate(const SpectrumView& view, const QSizeF& size,
                  const Typeface& typeface = Typeface::installed());
void paintHover(QPainter& painter, const SpectrumView& view, const QSizeF& size,
                const Typeface& typeface = Typeface::installed());

}  // namespace TarvaneApp
