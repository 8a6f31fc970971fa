// Sliders and scroll bars: a thin track, and on it what is dragged. Where things are and how they
// are drawn, by the toolkit's own options, in logical pixels.
#pragma once

#include <QRect>

class QPainter;
class QStyleOptionSlider;

namespace TarvaneApp::SliderLook {

/// A slider's height, and how long the part of it is that is dragged: the thumb with its focus
/// ring.
inline constexpr int thumbRoom = 20;
/// A scroll bar's width.
inline constexpr int barWidth = 12;

/// Where the slider's thumb is, with the room for its ring.
QRect thumb(const QStyleOptionSlider& option);
void paint(QPainter& painter, const QStyleOptionSlider& option);

/// Where the scroll bar's thumb is, as wide as the bar.
QRect barThumb(const QStyleOptionSlider& option);
void paintBar(QPainter& painter, const QStyleOptionSlider& option);

}  // namespace TarvaneApp::SliderLook
