// What is wrong with the input, under the reading: it clips, or has clipped, or audio of the
// session was lost. The badge always keeps its place, so that a clip moves nothing.
#pragma once

#include <QRectF>
#include <QSizeF>
#include <QString>

#include "Displays/Theme.h"
#include "Metrics/InputClipState.h"
#include "Records/LostAudio.h"

class QPainter;

namespace TarvaneApp {

struct ClipBadge {
    TarvaneKit::InputClipState state = TarvaneKit::InputClipState::none;
    LostAudioTotal lost = {};

    /// Of the clip, else of the lost audio; empty without either.
    QString text() const;
    /// 0 without a text, else the strength at which its plate is drawn.
    double opacity() const;
    /// What the tooltip says, of both; empty without either.
    QString help() const;
    QString clipText() const;
    /// "3 gaps, 0.12 s"; empty without one.
    QString lostAudioText() const;

    /// The room for the longer text of a clip at that text scale.
    static QSizeF size(double textScale, const Typeface& typeface);
    /// In the middle of `rect`, which has `size`.
    void paint(QPainter& painter, const QRectF& rect, double textScale,
               const Typeface& typeface) const;
};

}  // namespace TarvaneApp
