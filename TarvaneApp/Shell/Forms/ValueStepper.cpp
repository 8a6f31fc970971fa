#include "Shell/Forms/ValueStepper.h"

#include <QLineEdit>
#include <QLocale>
#include <QSignalBlocker>
#include <QWheelEvent>
#include <cmath>

#include "Displays/Theme.h"

namespace TarvaneApp {

namespace {

// Steppers under each other are equally wide.
constexpr int smallestStepperWidth = 104;

}  // namespace

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
    setMinimumWidth(smallestStepperWidth);
    setFixedHeight(Theme::controlHeight);
    connect(this, &QDoubleSpinBox::valueChanged, this, std::move(onChange));
    connect(this, &QDoubleSpinBox::editingFinished, this,
            [this] { lineEdit()->setModified(false); });
}

void ValueStepper::showValue(double value) {
    if (lineEdit()->isModified() || !std::isfinite(value)) {
        return;
    }
    const QSignalBlocker quiet(this);
    setValue(value);
}

QString ValueStepper::textFromValue(double value) const {
    return QString::number(value, 'g');
}

QValidator::State ValueStepper::validate(QString& text, int& position) const {
    text.replace(u',', u'.');
    text.replace(QChar(0x2212), u'-');
    return QDoubleSpinBox::validate(text, position);
}

void ValueStepper::wheelEvent(QWheelEvent* event) {
    event->ignore();
}

}  // namespace TarvaneApp
