// A labelled number beside the big value: a small title, the number, and its unit if it has one.
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

    /// The room for title, unit and any value down to "-240.0" at that text scale.
    QSizeF size(double textScale, const Typeface& typeface) const;
    /// In the middle of `rect`, which is at least as wide and as high as `size`.
    void paint(QPainter& painter, const QRectF& rect, double textScale,
               const Typeface& typeface) const;

    bool operator==(const SideLabel&) const = default;
};

}  // namespace TarvaneApp
