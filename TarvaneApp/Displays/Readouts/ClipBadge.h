// The clip badge under the SPL reading. It always keeps its place, so that a clip moves nothing.
#pragma once

#include <QRectF>
#include <QSizeF>
#include <QString>

#include "Displays/Theme.h"
#include "Metrics/InputClipState.h"

class QPainter;

namespace TarvaneApp {

struct ClipBadge {
    TarvaneKit::InputClipState state = TarvaneKit::InputClipState::none;

    /// Empty for `none`.
    QString text() const;
    /// 0 for `none`, else the strength at which the badge is drawn.
    double opacity() const;
    /// What the tooltip says; empty for `none`.
    QString help() const;

    /// The room for the longer of the two texts at that text scale.
    static QSizeF size(double textScale, const Typeface& typeface);
    /// In the middle of `rect`, which has `size`.
    void paint(QPainter& painter, const QRectF& rect, double textScale,
               const Typeface& typeface) const;
};

}  // namespace TarvaneApp
