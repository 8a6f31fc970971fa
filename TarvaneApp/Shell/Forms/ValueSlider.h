// A slider with its value as text beside it.
#pragma once

#include <QWidget>
#include <functional>

#include "Shell/Forms/NumberScale.h"

class QLabel;
class QSlider;

namespace TarvaneApp {

class ValueSlider final : public QWidget {
    Q_OBJECT
  public:
    /// `onMove` runs when the user moves the slider, with a value on the scale.
    ValueSlider(NumberScale scale, std::function<void(double)> onMove, QWidget* parent = nullptr);

    /// A value beyond the scale is told as it is, with the slider at the nearer end. One that is
    /// not finite is passed over.
    void setValue(double value);
    /// The value stays the same.
    void setScale(NumberScale scale);
    const NumberScale& scale() const { return scale_; }

    /// It counts in steps of the scale.
    QSlider& slider() { return *slider_; }

  private:
    void layOut();

    NumberScale scale_;
    double value_;
    QSlider* slider_;
    QLabel* text_;
};

}  // namespace TarvaneApp
