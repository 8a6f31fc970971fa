#include "Shell/Controls/SpokenSlider.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QSlider>
#include <QVariant>
#include <algorithm>
#include <cmath>

namespace TarvaneApp {

namespace {

constexpr char atZeroKey[] = "spokenAtZero";
constexpr char perStepKey[] = "spokenPerStep";

// It looks at the scale each time, since a form may change it.
class SpokenSlider final : public QAccessibleWidget, public QAccessibleValueInterface {
  public:
    explicit SpokenSlider(QSlider& slider)
        : QAccessibleWidget(&slider, QAccessible::Slider), slider_(slider) {}

    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ValueInterface ? static_cast<QAccessibleValueInterface*>(this)
                                                   : QAccessibleWidget::interface_cast(type);
    }

    QVariant currentValue() const override { return meant(slider_.value()); }
    void setCurrentValue(const QVariant& value) override {
        slider_.setValue(static_cast<int>(std::lround((value.toDouble() - atZero()) / perStep())));
    }
    QVariant maximumValue() const override {
        return std::max(meant(slider_.minimum()), meant(slider_.maximum()));
    }
    QVariant minimumValue() const override {
        return std::min(meant(slider_.minimum()), meant(slider_.maximum()));
    }
    QVariant minimumStepSize() const override { return std::abs(perStep()) * slider_.singleStep(); }

  private:
    double atZero() const { return slider_.property(atZeroKey).toDouble(); }
    double perStep() const {
        const QVariant scale = slider_.property(perStepKey);
        return scale.isValid() ? scale.toDouble() : SpokenScale().perStep;
    }
    double meant(int step) const { return atZero() + step * perStep(); }

    QSlider& slider_;
};

}  // namespace

void setSpokenScale(QSlider& slider, const SpokenScale& scale) {
    slider.setProperty(atZeroKey, scale.atZero);
    slider.setProperty(perStepKey, scale.perStep);
}

QAccessibleInterface* makeSpokenSlider(QObject& object) {
    auto* slider = qobject_cast<QSlider*>(&object);
    return slider != nullptr ? new SpokenSlider(*slider) : nullptr;
}

}  // namespace TarvaneApp
