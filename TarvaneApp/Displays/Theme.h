// The palette and the typefaces of all displays and windows. Every window is dark; there is no
// light appearance. Needs a QGuiApplication; main thread.
#pragma once

#include <QColor>
#include <QFont>
#include <QString>

#include "Core/RGBAColor.h"

namespace TarvaneApp {

/// The font families that a drawing uses. A drawing takes them as an argument, so that it looks
/// the same wherever the same families are given.
struct Typeface {
    QString system;
    QString rounded;  ///< of the big numbers
    QString monospaced;

    /// The desktop's own faces; for the big numbers a rounded face where one is installed.
    static const Typeface& installed();

    /// Sizes are logical pixels, rounded down to whole ones and at least 1.
    QFont systemFont(double size, QFont::Weight weight = QFont::Normal) const;
    QFont roundedFont(double size, QFont::Weight weight = QFont::Bold) const;
    QFont monospacedFont(double size, QFont::Weight weight = QFont::Normal) const;

    bool operator==(const Typeface&) const = default;
};

namespace Theme {

inline const QColor background = QColor::fromRgbF(0.039F, 0.043F, 0.058F);
inline const QColor panelBackground = QColor::fromRgbF(0.055F, 0.062F, 0.082F);
inline const QColor controlBackground = QColor::fromRgbF(0.09F, 0.10F, 0.13F);
inline const QColor gridLine = QColor::fromRgbF(0.14F, 0.16F, 0.20F);
inline const QColor gridLineStrong = QColor::fromRgbF(0.24F, 0.27F, 0.33F);
inline const QColor axisText = QColor::fromRgbF(0.52F, 0.56F, 0.63F);
inline const QColor primaryText = QColor::fromRgbF(0.93F, 0.94F, 0.96F);
inline const QColor accent = QColor::fromRgbF(0.20F, 0.55F, 1.00F);
inline const QColor peakHold = QColor::fromRgbF(1.00F, 0.60F, 0.20F);
inline const QColor targetCurve = QColor::fromRgbF(1.00F, 0.35F, 0.55F);
inline const QColor ringAlert = QColor::fromRgbF(1.00F, 0.25F, 0.20F);

/// The size of `readoutFont`, in logical pixels.
inline constexpr double readoutFontSize = 56.0;

QFont sectionLabelFont(const Typeface& typeface = Typeface::installed());
/// Numbers in it are drawn through TabularText, since a rounded face's digits differ in width.
QFont readoutFont(const Typeface& typeface = Typeface::installed());

QColor color(const TarvaneKit::RGBAColor& color);
/// The colour with its opacity multiplied.
QColor faded(const QColor& color, double opacity);

}  // namespace Theme

}  // namespace TarvaneApp
