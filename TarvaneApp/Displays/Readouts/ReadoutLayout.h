// How the parts of a readout share its room: the big value, a label at each of its sides, the
// line that names it, rows of smaller texts under that, a badge, a button, and the level bar at its
// foot. Arithmetic alone; coordinates are logical pixels, the origin at the top left.
#pragma once

#include <QRectF>
#include <QSizeF>
#include <vector>

namespace TarvaneApp {

/// What can be missed, in the order in which it leaves a room that is too small for all.
enum class ReadoutExtra { barScale, resetButton, progress, sides, readings, bar };

/// The sizes of a readout's parts at scale 1. A part without a size is left out.
struct ReadoutParts {
    struct Row {
        ReadoutExtra extra = ReadoutExtra::sides;
        QSizeF size;
        double gapAbove = 0.0;
        /// The share of its width that it can shrink to.
        double leastShare = 1.0;
    };

    QSizeF value;  ///< the width template's width by the digits' height
    QSizeF side;   ///< of each of the two labels beside the value
    QSizeF label;
    std::vector<Row> rows;  ///< under the label, from top to bottom
    QSizeF badge;
    bool hasResetButton = false;
    bool hasLevelBar = false;
};

/// Where the parts are that all readouts share. A part that isn't there is empty.
struct ReadoutFrame {
    double valuePixelSize = 0.0;
    /// The scale of all other texts, 1 at the readout's ordinary size.
    double textScale = 1.0;
    QRectF value;  ///< the width template's width, from digit top to digit foot
    QRectF label;
    QRectF clipBadge;
    QRectF resetButton;
    QRectF levelBar;
};

/// A readout grows with its room, so that it can be read from across a hall: the big value as far
/// as height and width allow, the other texts slower. The button is under the label at the value's
/// right, the badge beside the name; in a tall and narrow room both labels are under the value.
///
/// A room in which the value would be smaller than its ordinary size loses its extras, one after
/// the other, as far as that lets the value grow. Below 0.4 of the ordinary size the labels and at
/// last the name leave too. No part ever overlaps another.
struct ReadoutLayout {
    ReadoutFrame frame;
    QRectF left;               ///< the label left of the value
    QRectF right;              ///< the label to the right of it
    std::vector<QRectF> rows;  ///< one for each of the parts'

    /// Between two rows, at scale 1.
    static constexpr double rowGap = 5.0;
    /// The value's smallest share of its ordinary size.
    static constexpr double smallestValueScale = 0.4;

    static ReadoutLayout of(const ReadoutParts& parts, const QSizeF& size);
};

}  // namespace TarvaneApp
