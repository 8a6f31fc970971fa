// How the parts of a readout share its room: the big value, a label at each of its sides, the
// line that names it, rows of smaller texts under that, a badge and a button. Arithmetic alone;
// coordinates are logical pixels, the origin at the top left.
#pragma once

#include <QRectF>
#include <QSizeF>
#include <vector>

namespace TarvaneApp {

/// The sizes of a readout's parts at scale 1. A part without a size is left out.
struct ReadoutParts {
    struct Row {
        QSizeF size;
        double gapAbove = 0.0;
    };

    QSizeF value;  ///< the width template's width by the digits' height
    QSizeF side;   ///< of each of the two labels beside the value
    QSizeF label;
    std::vector<Row> rows;  ///< under the label, from top to bottom
    QSizeF badge;
    bool hasResetButton = false;
};

/// Where the parts are that all readouts share. A part that a readout doesn't have is empty.
struct ReadoutFrame {
    double valuePixelSize = 0.0;
    /// The scale of all other texts, 1 at the readout's ordinary size.
    double textScale = 1.0;
    QRectF value;  ///< the width template's width, from digit top to digit foot
    QRectF label;
    QRectF clipBadge;
    QRectF resetButton;
    /// Whether all parts lie within the room.
    bool fits = true;
};

/// A readout grows with its room, so that it can be read from across a hall: the big value as far
/// as height and width allow, but never below 0.4 of its ordinary size, the other texts half as
/// fast. Where height is short, badge and button move beside what they belong to.
struct ReadoutLayout {
    ReadoutFrame frame;
    QRectF left;               ///< the label left of the value
    QRectF right;              ///< the label to the right of it
    std::vector<QRectF> rows;  ///< as wide as the room

    /// Between two rows, at scale 1.
    static constexpr double rowGap = 6.0;
    /// The value's smallest share of its ordinary size.
    static constexpr double smallestValueScale = 0.4;

    static ReadoutLayout of(const ReadoutParts& parts, const QSizeF& size);
};

}  // namespace TarvaneApp
