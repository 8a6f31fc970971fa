// The labels of a spectrum's axes, and those of floor and ceiling: where they stand, and their
// drawing. Coordinates are logical pixels, the origin at the graph's top left.
#pragma once

#include <QColor>
#include <QRectF>
#include <QSizeF>
#include <QString>
#include <vector>

#include "Displays/Theme.h"

class QPainter;

namespace TarvaneApp {

struct SpectrumView;

/// A label on its plate.
struct SpectrumLabel {
    QString text;
    QRectF rect;  ///< of the text
    QColor color = Theme::primaryText;
    double plateOpacity = 1.0;
    QRectF plate() const { return rect.adjusted(-2.0, -1.0, 2.0, 1.0); }
};

/// Labels that would overlap another one, or leave the graph, are left out: first those of
/// frequencies between the decades, and of levels between the ends of the axis. So is the lowest
/// level where it would stand at the next one's rule.
struct SpectrumLabels {
    std::vector<SpectrumLabel> grid;
    std::vector<SpectrumLabel> floorCeiling;
    /// The target curve's name at its right end; at most one.
    std::vector<SpectrumLabel> curve;
};
SpectrumLabels layoutLabels(const SpectrumView& view, const QSizeF& size,
                            const Typeface& typeface = Typeface::installed());

void paintLabels(QPainter& painter, const std::vector<SpectrumLabel>& labels,
                 const Typeface& typeface);

}  // namespace TarvaneApp
