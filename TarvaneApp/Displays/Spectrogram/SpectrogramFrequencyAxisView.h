// The strip under a spectrogram that names its frequencies. A value record, its layout and its
// drawing. Coordinates are logical pixels.
#pragma once

#include <QRectF>
#include <QString>
#include <vector>

#include "Displays/Theme.h"

class QPainter;

namespace TarvaneApp {

struct SpectrogramFrequencyAxisView {
    double minHz = 20.0;
    double maxHz = 20000.0;

    static constexpr double height = 16.0;

    struct Label {
        QString text;
        QRectF rect;
    };
    /// Centred under the grid lines, those at the ends moved inwards. A label that would touch
    /// a more important one is left out.
    std::vector<Label> labels(double width, const Typeface& typeface = Typeface::installed()) const;

    bool operator==(const SpectrogramFrequencyAxisView&) const = default;
};

/// The strip of that width; the background is left as it is.
void paint(QPainter& painter, const SpectrogramFrequencyAxisView& view, double width,
           const Typeface& typeface = Typeface::installed());

}  // namespace TarvaneApp
