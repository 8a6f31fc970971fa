// A labelled number beside the big value: a small title, the number, and where it has one its unit.
#pragma once

#include <QColor>
#include <QRectF>
#include <QSizeF>
#include <QString>

#include "Displays/Theme.h"

class QPainter;

namespace TarvaneApp {

struct SideLabel {
    QString title;
    QString value;
    QString unit;
    QColor color = Theme::primaryText;

    /// The room that the title, any value down to "-240.0" and the unit need at that text scale.
    QSizeF size(double textScale, const Typeface& typeface) const;
    /// In the middle of `rect`, which is at least as wide and as high as `size`.
    void paint(QPainter& painter, const QRectF& rect, double textScale,
               const Typeface& typeface) const;

    bool operator==(const SideLabel&) const = default;
};

}  // namespace TarvaneApp
