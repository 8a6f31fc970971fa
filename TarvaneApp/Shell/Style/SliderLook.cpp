#include "Shell/Style/SliderLook.h"

#include <QPainter>
#include <QStyle>
#include <QStyleOptionSlider>
#include <algorithm>
#include <cstdint>

#include "Displays/FocusRing.h"
#include "Displays/Plate.h"
#include "Displays/Theme.h"

namespace TarvaneApp::SliderLook {

namespace {

constexpr double trackWidth = 3.0;
constexpr double thumbSize = 14.0;
constexpr int shortestBarThumb = 32;
constexpr double barThumbInset = 3.0;

bool isEnabled(const QStyleOption& option) {
    return (option.state & QStyle::State_Enabled) != 0;
}

// The thumb, or what else is dragged, is held or under the pointer.
bool isTouched(const QStyleOptionComplex& option, QStyle::SubControl part) {
    return isEnabled(option) && (option.state & QStyle::State_MouseOver) != 0 &&
           (option.activeSubControls & part) != 0;
}

// A piece along the slider or bar, `from` its beginning.
QRect piece(const QStyleOptionSlider& option, int from, int length) {
    const QRect& room = option.rect;
    return option.orientation == Qt::Horizontal
               ? QRect(room.left() + from, room.top(), length, room.height())
               : QRect(room.left(), room.top() + from, room.width(), length);
}

int lengthOf(const QStyleOptionSlider& option) {
    return option.orientation == Qt::Horizontal ? option.rect.width() : option.rect.height();
}

}  // namespace

QRect thumb(const QStyleOptionSlider& option) {
    const int from =
        QStyle::sliderPositionFromValue(option.minimum, option.maximum, option.sliderPosition,
                                        lengthOf(option) - thumbRoom, option.upsideDown);
    QRect square(0, 0, thumbRoom, thumbRoom);
    square.moveCenter(piece(option, from, thumbRoom).center());
    return square;
}

void paint(QPainter& painter, const QStyleOptionSlider& option) {
    const bool isHorizontal = option.orientation == Qt::Horizontal;
    const QRectF room = option.rect;
    const QPointF middle = QRectF(thumb(option)).center();
    const double spare = (thumbRoom - thumbSize) / 2.0;
    const QRectF track = isHorizontal ? QRectF(room.left() + spare, middle.y() - trackWidth / 2.0,
                                               room.width() - 2.0 * spare, trackWidth)
                                      : QRectF(middle.x() - trackWidth / 2.0, room.top() + spare,
                                               trackWidth, room.height() - 2.0 * spare);
    // From the lowest value to the thumb.
    QRectF filled = track;
    if (isHorizontal) {
        option.upsideDown ? filled.setLeft(middle.x()) : filled.setRight(middle.x());
    } else {
        option.upsideDown ? filled.setTop(middle.y()) : filled.setBottom(middle.y());
    }
    QRectF disc(0.0, 0.0, thumbSize, thumbSize);
    disc.moveCenter(middle);
    painter.save();
    paintPlate(painter, track, trackWidth / 2.0, Theme::gridLineStrong);
    paintPlate(painter, filled, trackWidth / 2.0,
               isEnabled(option) ? Theme::accent : Theme::dimmed);
    // A gap to the track, which says that it is a thing of its own.
    painter.setBrush(Theme::panelBackground);
    painter.drawEllipse(disc.adjusted(-1.5, -1.5, 1.5, 1.5));
    const bool isHeld = isEnabled(option) && (option.state & QStyle::State_Sunken) != 0;
    painter.setBrush(!isEnabled(option)                                     ? Theme::dimmed
                     : isHeld || isTouched(option, QStyle::SC_SliderHandle) ? QColor(Qt::white)
                                                                            : Theme::primaryText);
    painter.drawEllipse(disc);
    painter.restore();
    if ((option.state & QStyle::State_HasFocus) != 0) {
        paintFocusRing(painter, thumb(option), thumbRoom / 2.0);
    }
}

QRect barThumb(const QStyleOptionSlider& option) {
    const int length = lengthOf(option);
    if (option.maximum <= option.minimum) {
        return option.rect;
    }
    const std::int64_t range = std::int64_t{option.maximum} - option.minimum;
    const auto share =
        static_cast<int>(option.pageStep * std::int64_t{length} / (range + option.pageStep));
    const int thumbLength = std::clamp(share, std::min(shortestBarThumb, length), length);
    return piece(
        option,
        QStyle::sliderPositionFromValue(option.minimum, option.maximum, option.sliderPosition,
                                        length - thumbLength, option.upsideDown),
        thumbLength);
}

void paintBar(QPainter& painter, const QStyleOptionSlider& option) {
    if (option.maximum <= option.minimum) {
        return;
    }
    const QRectF body = QRectF(barThumb(option))
                            .adjusted(barThumbInset, barThumbInset, -barThumbInset, -barThumbInset);
    const bool isHeld = (option.state & QStyle::State_Sunken) != 0;
    painter.save();
    paintPlate(
        painter, body, std::min(body.width(), body.height()) / 2.0,
        isHeld || isTouched(option, QStyle::SC_ScrollBarSlider) ? Theme::axisText : Theme::dimmed);
    painter.restore();
}

}  // namespace TarvaneApp::SliderLook
