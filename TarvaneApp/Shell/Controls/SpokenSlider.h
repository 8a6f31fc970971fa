// A slider counts whole steps. A screen reader reads and sets what they stand for.
#pragma once

class QAccessibleInterface;
class QObject;
class QSlider;

namespace TarvaneApp {

/// The value that `step` of the slider stands for is `atZero + step * perStep`. A negative
/// `perStep` is a scale that falls to the right.
struct SpokenScale {
    double atZero = 0.0;
    double perStep = 1.0;

    bool operator==(const SpokenScale&) const = default;
};

void setSpokenScale(QSlider& slider, const SpokenScale& scale);

/// Null for anything but a slider. One without a scale is read in its steps.
QAccessibleInterface* makeSpokenSlider(QObject& object);

}  // namespace TarvaneApp
