// The text of a graph's readout under the pointer, on its plate. Where the plate goes is up
// to the graph; coordinates are logical pixels.
#pragma once

#include <QRectF>
#include <QSizeF>
#include <QString>

#include "Displays/Theme.h"

class QPainter;

namespace TarvaneApp {

struct HoverPlate {
    QString text;
    double marginAcross = 0.0;  ///< about the text
    static constexpr double marginUpDown = 3.0;

    QSizeF size(const Typeface& typeface) const;
    /// Into a rectangle of that size.
    void paint(QPainter& painter, const QRectF& plate, const Typeface& typeface) const;
};

}  // namespace TarvaneApp
