#include "Shell/Forms/ValueSlider.h"

#include <QFontMetrics>
#include <QHBoxLayout>
#include <QLabel>
#include <QSignalBlocker>
#include <QSlider>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

#include "Displays/Theme.h"
#include "Shell/Controls/BareLayout.h"
#include "Shell/Controls/SpokenSlider.h"
#include "Shell/Controls/TextLabel.h"

namespace TarvaneApp {

namespace {

constexpr int smallestSliderWidth = 120;
// So that sliders of like values end under each other.
constexpr int smallestTextWidth = 56;

// Scrolling a form must not turn what happens to lie under the pointer.
class StillSlider final : public QSlider {
  public:
    using QSlider::QSlider;

  protected:
    void wheelEvent(QWheelEvent* event) override { event->ignore(); }
};

}  // namespace

ValueSlider::ValueSlider(NumberScale scale, std::function<void(double)> onMove, QWidget* parent)
    : QWidget(parent),
      scale_(std::move(scale)),
      value_(scale_.lowest),
      slider_(new StillSlider(Qt::Horizontal, this)),
      text_(makeTextLabel({}, Theme::Text::body, Theme::primaryText, this)) {
    setFocusProxy(slider_);
    slider_->setFocusPolicy(Qt::StrongFocus);
    slider_->setMinimumWidth(smallestSliderWidth);
    text_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    auto* row = layOutRow(this, Theme::Space::row);
    row->addWidget(slider_, 1);
    row->addWidget(text_);
    connect(slider_, &QSlider::valueChanged, this, [this, onMove = std::move(onMove)](int steps) {
        onMove(
            std::min(scale_.lowest + (steps - slider_->minimum()) * scale_.step, scale_.highest));
    });
    layOut();
    setValue(value_);
}

void ValueSlider::setScale(NumberScale scale) {
    scale_ = std::move(scale);
    layOut();
    setValue(value_);
}

// Steps are counted from zero where that lies on the scale, so that those of a scale in whole
// numbers are its values.
void ValueSlider::layOut() {
    const QSignalBlocker quiet(slider_);
    const int lowest = static_cast<int>(std::lround(scale_.lowest / scale_.step));
    const int steps =
        static_cast<int>(std::ceil((scale_.highest - scale_.lowest) / scale_.step - 0.001));
    slider_->setRange(lowest, lowest + steps);
    setSpokenScale(*slider_,
                   {.atZero = scale_.lowest - lowest * scale_.step, .perStep = scale_.step});
    slider_->setPageStep(std::max(steps / 10, 1));
    // As wide as the widest value, so that the slider doesn't move under the pointer.
    const QFontMetrics metrics(text_->font());
    int width = smallestTextWidth;
    for (const double value : {scale_.lowest, scale_.highest}) {
        width = std::max(width, metrics.horizontalAdvance(scale_.text(value)));
    }
    text_->setMinimumWidth(width);
}

void ValueSlider::setValue(double value) {
    if (!std::isfinite(value)) {
        return;
    }
    value_ = value;
    const QSignalBlocker quiet(slider_);
    const double inRange = std::clamp(value, scale_.lowest, scale_.highest);
    slider_->setValue(slider_->minimum() +
                      static_cast<int>(std::lround((inRange - scale_.lowest) / scale_.step)));
    const QString text = scale_.text(value);
    text_->setText(text);
    slider_->setAccessibleDescription(text);
}

}  // namespace TarvaneApp
