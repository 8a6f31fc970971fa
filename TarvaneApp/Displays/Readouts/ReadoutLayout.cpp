#include "Displays/Readouts/ReadoutLayout.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "Displays/Readouts/LevelBarView.h"
#include "Displays/Theme.h"

namespace TarvaneApp {

namespace {

// Sizes at scale 1, in logical pixels.
constexpr double smallestColumnGap = 20.0;
constexpr double largestColumnGap = 72.0;
constexpr double badgeGap = 10.0;  // between the label and a badge beside it

// The button is a control and keeps its size, as all controls do.
constexpr QSizeF resetButtonSize(112.0, 24.0);

constexpr double panelMarginAcross = 12.0;
constexpr double marginUpDown = 6.0;

// The bar grows with the room, from this size on and up to three times.
constexpr QSizeF barReferenceSize(868.0, 380.0);
constexpr double largestBarScale = 3.0;

// The other texts take a fifth of the value's growth, so that the room is the value's; up to half
// of it in what the value leaves.
constexpr double textGrowth = 0.2;
constexpr double largestTextGrowth = 0.5;

// What is left of the value when not even its name fits, a pixel or two.
constexpr double leastScale = 0.02;

// Nothing leaves for a gain smaller than this.
constexpr double worthLeaving = 0.98;

// A preferred arrangement is given up for one whose value is larger than this.
constexpr double worthwhileGain = 1.3;

// How large the value is drawn, and the other texts beside it.
struct Scales {
    double value = 1.0;
    double text = 1.0;

    static Scales of(double value, double growth = textGrowth) {
        return {value, 1.0 + std::max(value - 1.0, 0.0) * growth};
    }
};

// The largest for which `fits` holds, to a hundredth of a pixel of the value's height; `smallest`
// holds.
template <class Fits>
double largest(double smallest, double beyond, const Fits& fits) {
    double fitting = smallest;
    while (beyond - fitting > 2e-4) {
        const double between = (fitting + beyond) / 2.0;
        (fits(between) ? fitting : beyond) = between;
    }
    return fitting;
}

double barScaleFor(const QSizeF& size) {
    return std::clamp(std::min(size.width() / barReferenceSize.width(),
                               size.height() / barReferenceSize.height()),
                      1.0, largestBarScale);
}

enum class Sides {
    besideAll,    // columns along the whole readout, clear of every row
    besideValue,  // columns in the value's row, which is as high as they are
    under,        // a row under the label
};
enum class Badge { besideLabel, underLeftSide, ownRow };

struct Arrangement {
    Sides sides = Sides::besideAll;
    Badge badge = Badge::besideLabel;
};

// The preferred ones first.
constexpr std::array arrangements{
    Arrangement{Sides::besideAll, Badge::besideLabel},
    Arrangement{Sides::besideValue, Badge::besideLabel},
    Arrangement{Sides::besideValue, Badge::underLeftSide},
    Arrangement{Sides::besideValue, Badge::ownRow},
    Arrangement{Sides::under, Badge::besideLabel},
    Arrangement{Sides::under, Badge::ownRow},
};

// The parts in a room, as far as they are still there.
struct Room {
    ReadoutParts parts;
    QSizeF size;
    double barHeight = 0.0;
};

// What an arrangement takes at a scale.
struct Measures {
    double textScale = 1.0;
    double gap = 0.0;  // between two rows
    QSizeF value;
    QSizeF side;
    QSizeF badge;
    QSizeF button;
    QSizeF label;
    std::vector<QSizeF> rows;
    double columnWidth = 0.0;
    double columnHeight = 0.0;
    double columnGap = 0.0;
    double middleWidth = 0.0;  // what the columns keep clear of
    double valueRow = 0.0;     // heights
    double labelRow = 0.0;
    double content = 0.0;
    bool fits = true;
};

// Where the button and the badge go follows from what else is there.
bool isUnder(const Room& room, const Arrangement& arrangement) {
    return arrangement.sides == Sides::under && !room.parts.side.isEmpty();
}

bool hasColumns(const Room& room, const Arrangement& arrangement) {
    return arrangement.sides != Sides::under && !room.parts.side.isEmpty();
}

bool hasBadge(const Room& room, const Arrangement& arrangement, Badge place) {
    return arrangement.badge == place && !room.parts.badge.isEmpty();
}

bool buttonHasRow(const Room& room, const Arrangement& arrangement) {
    return room.parts.hasResetButton && !hasColumns(room, arrangement);
}

double innerWidth(const Room& room) {
    return room.size.width() - 2.0 * panelMarginAcross;
}

// Without the level bar and the margins.
double contentHeight(const Room& room) {
    const double bar = room.barHeight > 0.0 ? room.barHeight + Theme::Space::related : 0.0;
    return room.size.height() - bar - 2.0 * marginUpDown;
}

// The columns at both sides are equally wide, so that the value is in the middle.
void measureColumns(Measures& sizes, const Room& room, const Arrangement& arrangement,
                    double rowsWidth) {
    const bool hasBadgeInColumn = hasBadge(room, arrangement, Badge::underLeftSide);
    sizes.columnWidth = std::max(
        {sizes.side.width(), sizes.button.width(), hasBadgeInColumn ? sizes.badge.width() : 0.0});
    const double under =
        std::max(hasBadgeInColumn ? sizes.gap + sizes.badge.height() : 0.0,
                 room.parts.hasResetButton ? sizes.gap + sizes.button.height() : 0.0);
    sizes.columnHeight = sizes.side.height() + under;
    if (arrangement.sides == Sides::besideAll) {
        sizes.middleWidth = std::max(sizes.middleWidth, rowsWidth);
    } else {
        sizes.valueRow = std::max(sizes.valueRow, sizes.columnHeight);
    }
    const double smallest = smallestColumnGap * sizes.textScale;
    const double spare = (innerWidth(room) - sizes.middleWidth) / 2.0 - sizes.columnWidth;
    sizes.fits = sizes.fits && spare >= smallest;
    sizes.columnGap = std::clamp(spare / 2.0, smallest, largestColumnGap * sizes.textScale);
}

Measures measure(const Room& room, const Arrangement& arrangement, const Scales& scales) {
    const ReadoutParts& parts = room.parts;
    const double inner = innerWidth(room);
    const double textScale = scales.text;
    Measures sizes{
        .textScale = textScale,
        .gap = ReadoutLayout::rowGap * textScale,
        .value = parts.value * scales.value,
        .side = parts.side * textScale,
        .badge = parts.badge * textScale,
        .button = parts.hasResetButton ? resetButtonSize : QSizeF(0.0, 0.0),
        .label = {},
        .rows = {},
    };
    const auto demand = [&sizes](bool holds) { sizes.fits = sizes.fits && holds; };

    // A text that is too wide at its smallest scale is drawn smaller.
    const auto shown = [&](const QSizeF& size, double leastShare) {
        const QSizeF natural = size * textScale;
        demand(natural.width() * leastShare <= inner || textScale <= 1.0);
        return QSizeF(std::min(natural.width(), inner), natural.height());
    };
    sizes.label = shown(parts.label, 1.0);
    const double badgeAside = hasBadge(room, arrangement, Badge::besideLabel)
                                  ? badgeGap * textScale + sizes.badge.width()
                                  : 0.0;
    double rowsWidth = sizes.label.width() + 2.0 * badgeAside;
    demand(sizes.value.width() <= inner && rowsWidth <= inner);
    for (const ReadoutParts::Row& row : parts.rows) {
        demand(row.size.width() * row.leastShare <= inner);
        sizes.rows.push_back(shown(row.size, row.leastShare));
        rowsWidth = std::max(rowsWidth, sizes.rows.back().width());
    }

    sizes.valueRow = sizes.value.height();
    sizes.middleWidth = sizes.value.width();
    if (hasColumns(room, arrangement)) {
        measureColumns(sizes, room, arrangement, rowsWidth);
    }
    sizes.labelRow = badgeAside > 0.0 ? std::max(sizes.label.height(), sizes.badge.height())
                                      : sizes.label.height();
    double& content = sizes.content;
    content = sizes.valueRow + (sizes.labelRow > 0.0 ? sizes.gap + sizes.labelRow : 0.0);
    if (hasBadge(room, arrangement, Badge::ownRow)) {
        content += sizes.gap + sizes.badge.height();
    }
    for (std::size_t i = 0; i < sizes.rows.size(); ++i) {
        content += parts.rows[i].gapAbove * textScale + sizes.rows[i].height();
    }
    if (isUnder(room, arrangement)) {
        content += sizes.gap + sizes.side.height();
        demand(2.0 * sizes.side.width() + smallestColumnGap * textScale <= inner);
    }
    if (buttonHasRow(room, arrangement)) {
        content += sizes.gap + sizes.button.height();
        demand(sizes.button.width() <= inner);
    }
    content = std::max(content, sizes.columnHeight);
    demand(content <= contentHeight(room));
    return sizes;
}

// A control stands on whole pixels.
QRectF onWholePixels(const QRectF& rect) {
    return {std::round(rect.x()), std::round(rect.y()), rect.width(), rect.height()};
}

// Centred at `x`.
QRectF centred(double x, double top, const QSizeF& size) {
    return {QPointF(x - size.width() / 2.0, top), size};
}

void placeColumns(ReadoutLayout& layout, const Room& room, const Arrangement& arrangement,
                  const Measures& sizes, double contentTop) {
    const double middle = room.size.width() / 2.0;
    const double away = sizes.middleWidth / 2.0 + sizes.columnGap + sizes.columnWidth / 2.0;
    const double top = contentTop + std::max((sizes.valueRow - sizes.columnHeight) / 2.0, 0.0);
    const double under = top + sizes.side.height() + sizes.gap;
    layout.left = centred(middle - away, top, sizes.side);
    layout.right = centred(middle + away, top, sizes.side);
    if (hasBadge(room, arrangement, Badge::underLeftSide)) {
        layout.frame.clipBadge = centred(middle - away, under, sizes.badge);
    }
    if (room.parts.hasResetButton) {
        layout.frame.resetButton = onWholePixels(centred(middle + away, under, sizes.button));
    }
}

ReadoutLayout place(const Room& room, const Arrangement& arrangement, const Scales& scales) {
    const Measures sizes = measure(room, arrangement, scales);
    const double middle = room.size.width() / 2.0;
    ReadoutLayout layout;
    ReadoutFrame& frame = layout.frame;
    frame.valuePixelSize = std::max(std::floor(Theme::Text::readout * scales.value), 1.0);
    frame.textScale = sizes.textScale;
    if (room.barHeight > 0.0) {
        frame.levelBar =
            QRectF(Theme::Space::panel, room.size.height() - Theme::Space::related - room.barHeight,
                   room.size.width() - 2.0 * Theme::Space::panel, room.barHeight);
    }
    double y = marginUpDown + (contentHeight(room) - sizes.content) / 2.0;
    if (hasColumns(room, arrangement)) {
        placeColumns(layout, room, arrangement, sizes, y);
    }
    frame.value = centred(middle, y + (sizes.valueRow - sizes.value.height()) / 2.0, sizes.value);
    y += sizes.valueRow;
    if (sizes.labelRow > 0.0) {
        y += sizes.gap;
        frame.label = centred(middle, y, {sizes.label.width(), sizes.labelRow});
        if (hasBadge(room, arrangement, Badge::besideLabel)) {
            frame.clipBadge = QRectF(QPointF(frame.label.right() + badgeGap * sizes.textScale,
                                             frame.label.center().y() - sizes.badge.height() / 2.0),
                                     sizes.badge);
        }
        y += sizes.labelRow;
    }
    if (hasBadge(room, arrangement, Badge::ownRow)) {
        frame.clipBadge = centred(middle, y + sizes.gap, sizes.badge);
        y += sizes.gap + sizes.badge.height();
    }
    if (isUnder(room, arrangement)) {
        const double spare = innerWidth(room) - 2.0 * sizes.side.width();
        const double away =
            (std::min(spare / 2.0, largestColumnGap * sizes.textScale) + sizes.side.width()) / 2.0;
        layout.left = centred(middle - away, y + sizes.gap, sizes.side);
        layout.right = centred(middle + away, y + sizes.gap, sizes.side);
        y += sizes.gap + sizes.side.height();
    }
    for (std::size_t i = 0; i < sizes.rows.size(); ++i) {
        y += room.parts.rows[i].gapAbove * sizes.textScale;
        layout.rows.push_back(centred(middle, y, sizes.rows[i]));
        y += sizes.rows[i].height();
    }
    if (buttonHasRow(room, arrangement)) {
        frame.resetButton = onWholePixels(centred(middle, y + sizes.gap, sizes.button));
    }
    return layout;
}

// An arrangement at the largest scale at which it fits; 0 where it doesn't.
struct Choice {
    Arrangement arrangement;
    double scale = 0.0;
};

double largestScale(const Room& room, const Arrangement& arrangement, double smallest) {
    const auto fits = [&](double scale) {
        return measure(room, arrangement, Scales::of(scale)).fits;
    };
    const double beyond = std::max(room.size.height() / room.parts.value.height(), smallest) + 1.0;
    return fits(smallest) ? largest(smallest, beyond, fits) : 0.0;
}

// The other texts as large as the value leaves room for.
Scales scalesFor(const Room& room, const Choice& choice) {
    const double value = std::max(choice.scale, leastScale);
    return Scales::of(value, largest(textGrowth, largestTextGrowth, [&](double growth) {
                          return measure(room, choice.arrangement, Scales::of(value, growth)).fits;
                      }));
}

Choice choose(const Room& room, double smallest) {
    Choice best;
    for (const Arrangement& arrangement : arrangements) {
        const double scale = largestScale(room, arrangement, smallest);
        if (scale > best.scale * (best.scale > 0.0 ? worthwhileGain : 1.0)) {
            best = {arrangement, scale};
        }
    }
    return best;
}

// Takes an extra out of the room; false where it isn't there.
bool takeOut(ReadoutExtra extra, Room& room) {
    switch (extra) {
        case ReadoutExtra::barScale:
            room.barHeight = std::min(room.barHeight, LevelBarGeometry::bareHeight);
            return room.barHeight > 0.0;
        case ReadoutExtra::resetButton:
            return std::exchange(room.parts.hasResetButton, false);
        case ReadoutExtra::bar:
            return std::exchange(room.barHeight, 0.0) > 0.0;
        default:
            return std::erase_if(room.parts.rows, [extra](const ReadoutParts::Row& row) {
                       return row.extra == extra;
                   }) > 0;
    }
}

// Every row of the parts its place, an empty one if it has left.
void restoreRows(ReadoutLayout& layout, const Room& shown, const ReadoutParts& parts) {
    std::vector<QRectF> places(parts.rows.size());
    for (std::size_t i = 0; i < shown.parts.rows.size(); ++i) {
        const auto all = std::find_if(
            parts.rows.begin(), parts.rows.end(),
            [&](const ReadoutParts::Row& row) { return row.extra == shown.parts.rows[i].extra; });
        places[static_cast<std::size_t>(all - parts.rows.begin())] = layout.rows[i];
    }
    layout.rows = std::move(places);
}

}  // namespace

ReadoutLayout ReadoutLayout::of(const ReadoutParts& parts, const QSizeF& size) {
    Room room{
        parts, size,
        parts.hasLevelBar ? std::round(LevelBarGeometry::naturalHeight * barScaleFor(size)) : 0.0};
    // From all of it to the least, until the value gains nothing more that it needs.
    std::vector<std::pair<Room, Choice>> steps{{room, choose(room, smallestValueScale)}};
    for (const ReadoutExtra extra :
         {ReadoutExtra::barScale, ReadoutExtra::resetButton, ReadoutExtra::progress,
          ReadoutExtra::sides, ReadoutExtra::readings, ReadoutExtra::bar}) {
        if (steps.back().second.scale >= 1.0) {
            break;
        }
        if (takeOut(extra, room)) {
            steps.emplace_back(room, choose(room, smallestValueScale));
        }
    }
    if (steps.back().second.scale <= 0.0) {
        room.parts.side = room.parts.badge = QSizeF();
        steps.emplace_back(room, choose(room, smallestValueScale));
    }
    if (steps.back().second.scale <= 0.0) {
        room.parts.label = QSizeF();
        steps.emplace_back(room, choose(room, leastScale));
    }
    const double wanted = worthLeaving * std::min(steps.back().second.scale, 1.0);
    const auto chosen = std::find_if(steps.begin(), steps.end(), [wanted](const auto& step) {
        return step.second.scale >= wanted;
    });
    const auto& [shown, choice] = *chosen;
    ReadoutLayout layout = place(shown, choice.arrangement, scalesFor(shown, choice));
    restoreRows(layout, shown, parts);
    return layout;
}

}  // namespace TarvaneApp
