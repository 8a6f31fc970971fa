#include "Shell/Forms/ValueStepper.h"

#include <QLocale>
#include <QSignalBlocker>
#include <QWheelEvent>

namespace TarvaneApp {

ValueStepper::ValueStepper(const Scale& scale, std::function<void(double)> onChange,
                           QWidget* parent)
    : QDoubleSpinBox(parent) {
    setLocale(QLocale::c());
    setRange(scale.lowest, scale.highest);
    setSingleStep(scale.step);
    setPrefix(scale.prefix);
    setSuffix(u' ' + scale.unit);
    setKeyboardTracking(false);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(this, &QDoubleSpinBox::valueChanged, this, std::move(onChange));
}

void ValueStepper::showValue(double value) {
    const QSignalBlocker quiet(this);
    setValue(value);
}

QString ValueStepper::textFromValue(double value) const {
    return QString::number(value, 'g');
}

void ValueStepper::wheelEvent(QWheelEvent* event) {
    event->ignore();
}

}  // namespace TarvaneApp
