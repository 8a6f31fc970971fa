#include "Displays/Readouts/ReadoutLayout.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "Displays/Theme.h"

namespace TarvaneApp {

namespace {

// Sizes at scale 1, in logical pixels.
constexpr double smallestColumnGap = 20.0;
constexpr double largestColumnGap = 72.0;
constexpr double badgeGap = 10.0;  // between the label and a badge beside it

// The button is a control and keeps its size, as all controls do.
constexpr QSizeF resetButtonSize(112.0, 24.0);
constexpr double resetButtonGap = 12.0;

constexpr double marginAcross = 12.0;
constexpr double marginUpDown = 6.0;

double textScaleFor(double valueScale) {
    return valueScale > 1.0 ? (1.0 + valueScale) / 2.0 : 1.0;
}

// A demand for room along one axis: room(s) = perValue·s + perText·textScale(s) + fixed.
struct Demand {
    double perValue = 0.0;
    double perText = 0.0;
    double fixed = 0.0;

    // The largest value scale that fits. Piecewise linear: the texts stop shrinking at 1.
    double largestScale(double available) const {
        const double room = available - fixed;
        const double growing = perValue + perText / 2.0;
        const double scale = growing > 0.0 ? (room - perText / 2.0) / growing
                                           : std::numeric_limits<double>::infinity();
        if (scale >= 1.0) {
            return scale;
        }
        // Below 1 only the value shrinks; shrinking it doesn't help a row of texts alone.
        return perValue > 0.0 ? std::min((room - perText) / perValue, 1.0) : 1.0;
    }
};

// Where badge and button are: in a row of their own under the texts, or, where height is short,
// beside what they belong to.
enum class Arrangement { stacked, beside };

bool hasBadge(const ReadoutParts& parts) {
    return !parts.badge.isEmpty();
}

bool hasLastRow(const ReadoutParts& parts) {
    return hasBadge(parts) || parts.hasResetButton;
}

double labelRowHeight(const ReadoutParts& parts, Arrangement arrangement) {
    return arrangement == Arrangement::beside ? std::max(parts.label.height(), parts.badge.height())
                                              : parts.label.height();
}

// The first row is as high as the value or the labels beside it, the last as the badge or the
// button, whichever is higher: each combination is a demand of its own.
std::vector<Demand> rowDemands(const ReadoutParts& parts, Arrangement arrangement) {
    Demand rows;
    rows.fixed = 2.0 * marginUpDown;
    rows.perText = ReadoutLayout::rowGap + labelRowHeight(parts, arrangement);
    for (const ReadoutParts::Row& row : parts.rows) {
        rows.perText += row.gapAbove + row.size.height();
    }
    std::vector<Demand> bases{rows};
    if (arrangement == Arrangement::stacked && hasLastRow(parts)) {
        bases[0].perText += ReadoutLayout::rowGap + parts.badge.height();
        if (parts.hasResetButton) {
            Demand withButton = rows;
            withButton.perText += ReadoutLayout::rowGap;
            withButton.fixed += resetButtonSize.height();
            bases.push_back(withButton);
        }
    }
    std::vector<Demand> demands;
    for (const Demand& base : bases) {
        demands.push_back(base);
        demands.back().perValue += parts.value.height();
        demands.push_back(base);
        demands.back().perText += parts.side.height();
    }
    return demands;
}

std::vector<Demand> columnDemands(const ReadoutParts& parts, Arrangement arrangement) {
    const bool isBeside = arrangement == Arrangement::beside;
    constexpr double margins = 2.0 * marginAcross;
    Demand columns{.perValue = parts.value.width(), .fixed = margins};
    if (!parts.side.isEmpty()) {
        columns.perText = 2.0 * (parts.side.width() + smallestColumnGap);
    }
    if (isBeside && parts.hasResetButton) {
        columns.fixed += 2.0 * (resetButtonSize.width() + resetButtonGap);
    }
    Demand label{.perText = parts.label.width(), .fixed = margins};
    if (isBeside && hasBadge(parts)) {
        label.perText += 2.0 * (badgeGap + parts.badge.width());
    }
    std::vector<Demand> demands{columns, label};
    for (const ReadoutParts::Row& row : parts.rows) {
        demands.push_back({.perText = row.size.width(), .fixed = margins});
    }
    return demands;
}

double valueScaleFor(const ReadoutParts& parts, const QSizeF& size, Arrangement arrangement) {
    double scale = std::numeric_limits<double>::infinity();
    for (const Demand& demand : rowDemands(parts, arrangement)) {
        scale = std::min(scale, demand.largestScale(size.height()));
    }
    for (const Demand& demand : columnDemands(parts, arrangement)) {
        scale = std::min(scale, demand.largestScale(size.width()));
    }
    return std::max(scale, ReadoutLayout::smallestValueScale);
}

// Under the label to the right of the value, clear of the badge and within the width. Where both
// don't fit, the badge moves left.
QRectF placeResetButton(ReadoutLayout& layout, const QRectF& row) {
    QRectF button(QPointF(), resetButtonSize);
    button.moveCenter(QPointF(layout.right.center().x(), row.center().y()));
    button.moveRight(std::min(button.right(), row.right() - marginAcross));
    button.moveLeft(std::max(button.left(), layout.frame.clipBadge.right() + resetButtonGap));
    if (button.right() > row.right()) {
        button.moveRight(row.right() - marginAcross);
        layout.frame.clipBadge.moveRight(button.left() - resetButtonGap);
    }
    return button.toAlignedRect();
}

}  // namespace

ReadoutLayout ReadoutLayout::of(const ReadoutParts& parts, const QSizeF& size) {
    Arrangement arrangement = Arrangement::stacked;
    double valueScale = valueScaleFor(parts, size, arrangement);
    if (valueScale < 1.0 && hasLastRow(parts)) {
        const double beside = valueScaleFor(parts, size, Arrangement::beside);
        if (beside > valueScale) {
            arrangement = Arrangement::beside;
            valueScale = std::min(beside, 1.0);
        }
    }
    const bool isBeside = arrangement == Arrangement::beside;
    const double textScale = textScaleFor(valueScale);

    ReadoutLayout layout;
    ReadoutFrame& frame = layout.frame;
    frame.valuePixelSize = std::floor(Theme::Text::readout * valueScale);
    frame.textScale = textScale;

    const QSizeF value = parts.value * valueScale;
    const QSizeF side = parts.side * textScale;
    const QSizeF badge = parts.badge * textScale;
    const double gap = rowGap * textScale;
    const double valueRow = std::max(value.height(), side.height());
    const double labelRow = labelRowHeight(parts, arrangement) * textScale;
    const double lastRow =
        std::max(badge.height(), parts.hasResetButton ? resetButtonSize.height() : 0.0);
    double height = valueRow + gap + labelRow;
    for (const ReadoutParts::Row& row : parts.rows) {
        height += (row.gapAbove + row.size.height()) * textScale;
    }
    if (!isBeside && hasLastRow(parts)) {
        height += gap + lastRow;
    }

    const double middle = size.width() / 2.0;
    const double inner = size.width() - 2.0 * marginAcross;
    const auto centredRow = [middle](double y, double width, double rowHeight) {
        return QRectF(middle - width / 2.0, y, width, rowHeight);
    };
    const double besideSides =
        isBeside && parts.hasResetButton ? 2.0 * (resetButtonSize.width() + resetButtonGap) : 0.0;
    const double columnGap =
        std::clamp((inner - value.width() - 2.0 * side.width() - besideSides) / 4.0,
                   smallestColumnGap * textScale, largestColumnGap * textScale);

    frame.fits = height <= size.height();
    double y = (size.height() - height) / 2.0;
    const double valueMiddle = y + valueRow / 2.0;
    frame.value = centredRow(valueMiddle - value.height() / 2.0, value.width(), value.height());
    layout.left = QRectF(
        QPointF(frame.value.left() - columnGap - side.width(), valueMiddle - side.height() / 2.0),
        side);
    layout.right =
        QRectF(QPointF(frame.value.right() + columnGap, valueMiddle - side.height() / 2.0), side);
    y += valueRow + gap;
    frame.label = centredRow(
        y, isBeside ? std::min(parts.label.width() * textScale + 2.0, inner) : inner, labelRow);
    y += labelRow;
    for (const ReadoutParts::Row& row : parts.rows) {
        y += row.gapAbove * textScale;
        layout.rows.push_back(centredRow(y, inner, row.size.height() * textScale));
        y += row.size.height() * textScale;
    }
    frame.clipBadge = QRectF(QPointF(), badge);
    if (isBeside) {
        frame.clipBadge.moveCenter(frame.label.center());
        frame.clipBadge.moveLeft(frame.label.right() + badgeGap * textScale);
    } else {
        y += gap;
        frame.clipBadge.moveCenter(QPointF(middle, y + lastRow / 2.0));
    }
    if (parts.hasResetButton) {
        frame.resetButton = isBeside
                                ? QRectF(QPointF(layout.right.right() + resetButtonGap,
                                                 valueMiddle - resetButtonSize.height() / 2.0),
                                         resetButtonSize)
                                      .toAlignedRect()
                                : placeResetButton(layout, QRectF(0.0, y, size.width(), lastRow));
    }
    return layout;
}

}  // namespace TarvaneApp
