// MIN or MAX beside the big value: a small title above a number.
#pragma once

#include <QRectF>
#include <QSizeF>
#include <QString>

#include "Displays/Theme.h"

class QPainter;

namespace TarvaneApp {

struct MinMaxLabel {
    QString title;
    double valueDB = 0.0;

    /// The room for any value down to "-240.0" at that text scale.
    static QSizeF size(double textScale, const Typeface& typeface);
    /// In the middle of `rect`, which has `size`.
    void paint(QPainter& painter, const QRectF& rect, double textScale,
               const Typeface& typeface) const;
};

}  // namespace TarvaneApp
