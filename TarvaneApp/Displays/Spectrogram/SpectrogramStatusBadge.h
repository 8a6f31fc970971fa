// The badge over a spectrogram's top right corner: live, or scrolled back into history. Drawing
// alone; clicks are the widget's.
#pragma once

#include <QRectF>
#include <QSizeF>
#include <QString>

#include "Displays/Theme.h"

class QPainter;

namespace TarvaneApp {

struct SpectrogramStatusBadge {
    bool isLive = true;

    QString text() const;
    /// On a plot of that size; never wider than the plot.
    QRectF rect(const QSizeF& plot, const Typeface& typeface = Typeface::installed()) const;
    void paint(QPainter& painter, const QSizeF& plot,
               const Typeface& typeface = Typeface::installed()) const;
};

}  // namespace TarvaneApp
