// The palette and the typefaces of all displays and windows. Every window is dark; there is no
// light appearance. Needs a QGuiApplication; main thread.
#pragma once

#include <QColor>
#include <QFont>
#include <QMargins>
#include <QString>

#include "Core/RGBAColor.h"

namespace TarvaneApp {

/// The font families that a drawing uses. A drawing takes them as an argument, so that it looks
/// the same wherever the same families are given.
struct Typeface {
    QString system;
    QString rounded;  ///< of the big numbers
    QString monospaced;

    /// The desktop's own typefaces; for the big numbers a rounded one where one is installed.
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
/// Of what is disabled, and of the thumb of a scroll bar.
inline const QColor dimmed = QColor::fromRgbF(0.36F, 0.40F, 0.48F);
inline const QColor axisText = QColor::fromRgbF(0.52F, 0.56F, 0.63F);
inline const QColor primaryText = QColor::fromRgbF(0.93F, 0.94F, 0.96F);
inline const QColor accent = QColor::fromRgbF(0.20F, 0.55F, 1.00F);
inline const QColor peakHold = QColor::fromRgbF(1.00F, 0.60F, 0.20F);
inline const QColor targetCurve = QColor::fromRgbF(1.00F, 0.35F, 0.55F);
inline const QColor ringAlert = QColor::fromRgbF(1.00F, 0.25F, 0.20F);

/// The sizes of texts, in logical pixels.
namespace Text {
inline constexpr double tick = 9.0;       ///< on axes and scales; titles and units of small numbers
inline constexpr double footnote = 10.0;  ///< and badges
inline constexpr double caption = 11.0;   ///< beside and in controls
inline constexpr double body = 12.0;
inline constexpr double title = 13.0;   ///< names, and the letters of toggles
inline constexpr double number = 16.0;  ///< beside the large value
inline constexpr double banner = 22.0;
inline constexpr double readout = 56.0;  ///< the large value at its ordinary size
}  // namespace Text

/// Distances between things, in logical pixels.
namespace Space {
inline constexpr int label = 4;     ///< between a label and what is under it
inline constexpr int related = 6;   ///< between a control and what belongs to it
inline constexpr int row = 8;       ///< above and below a row of controls, and within a narrow one
inline constexpr int button = 9;    ///< between a button's edge and its text
inline constexpr int section = 12;  ///< between the parts of a form
inline constexpr int panel = 16;    ///< at the sides of a panel or form, and between its controls
inline constexpr int group = 20;    ///< between groups of controls in a row
}  // namespace Space

/// What a layout keeps free at its edges: a row of controls, and a form.
namespace Margins {
inline constexpr QMargins row{Space::panel, Space::row, Space::panel, Space::row};
inline constexpr QMargins form{Space::panel, Space::panel, Space::panel, Space::panel};
}  // namespace Margins

/// The radii of rounded corners, in logical pixels.
namespace Radius {
inline constexpr double label = 2.0;    ///< of the plate under a label
inline constexpr double graph = 3.0;    ///< of the focus ring around a graph, and of bars
inline constexpr double plate = 4.0;    ///< of the plate under a readout or badge
inline constexpr double control = 6.0;  ///< of buttons and pickers
inline constexpr double panel = 10.0;
}  // namespace Radius

/// The sizes of symbols, in logical pixels.
namespace Symbol {
inline constexpr int chevron = 9;
inline constexpr int header = 12;   ///< in a panel's header
inline constexpr int options = 14;  ///< of what opens further controls
inline constexpr int toolbar = 16;
inline constexpr int tab = 18;
inline constexpr int transport = 22;  ///< start, stop, pause
}  // namespace Symbol

/// The height of buttons, pickers and menus in a row, in logical pixels.
inline constexpr int controlHeight = 26;

QFont sectionLabelFont(const Typeface& typeface = Typeface::installed());
/// Numbers in it are drawn through TabularText, since a rounded typeface's digits differ in width.
QFont readoutFont(const Typeface& typeface = Typeface::installed());

QColor color(const TarvaneKit::RGBAColor& color);
/// The colour with its opacity multiplied.
QColor faded(const QColor& color, double opacity);

}  // namespace Theme

}  // namespace TarvaneApp
