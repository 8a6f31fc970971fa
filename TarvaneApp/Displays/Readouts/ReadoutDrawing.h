// What the readouts' drawings have in common: measuring and drawing the big value and the line
// that names it, and the area that a part's ink may reach. Main thread.
#pragma once

#include <QColor>
#include <QFont>
#include <QRect>
#include <QRectF>
#include <QSizeF>
#include <QString>

#include "Core/RGBAColor.h"
#include "Displays/Readouts/ReadoutLayout.h"
#include "Displays/Theme.h"

class QPainter;

namespace TarvaneApp::ReadoutDrawing {

/// Texts are measured at this scale and divided by it: large enough for the rounding of font
/// sizes not to matter.
inline constexpr double measuringScale = 8.0;

/// The width of the template by the height of its digits, at the readout's ordinary size.
QSizeF valueSize(const QString& widthTemplate, const Typeface& typeface);
QSizeF labelSize(const QString& text, const Typeface& typeface);

/// In the middle of `frame.value`; a wider number shrinks to fit. One that is shorter than
/// `ordinary` stands where that would end, so that a number moves only where it gets longer.
void paintValue(QPainter& painter, double value, const QString& ordinary,
                const TarvaneKit::RGBAColor& color, const ReadoutFrame& frame,
                const Typeface& typeface);
/// The same for a text that is as wide as its template, centred.
void paintValueText(QPainter& painter, const QString& text, const QColor& color,
                    const ReadoutFrame& frame, const Typeface& typeface);
void paintLabel(QPainter& painter, const QString& text, const ReadoutFrame& frame,
                const Typeface& typeface);

/// What antialiasing and overhanging glyphs may reach beyond a part's rectangle; nothing of a part
/// that isn't there.
QRect valueArea(const ReadoutFrame& frame);
QRect textArea(const QRectF& rect);

/// Shrinks a font until the tabular text fits, to no less than `smallest` of its size.
QFont fitted(QFont font, const QString& text, double width, double smallest);

}  // namespace TarvaneApp::ReadoutDrawing
