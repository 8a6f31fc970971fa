// A number that is typed, or stepped up and down.
#pragma once

#include <QDoubleSpinBox>
#include <functional>

namespace TarvaneApp {

class ValueStepper final : public QDoubleSpinBox {
    Q_OBJECT
  public:
    struct Scale {
        double lowest;
        double highest;
        double step;
        QString unit;
        QString prefix = {};  ///< ahead of the number, as "±"
    };

    /// `onChange` runs when the user steps, or is done typing.
    ValueStepper(const Scale& scale, std::function<void(double)> onChange,
                 QWidget* parent = nullptr);

    /// A value beyond the scale is shown as its nearer end, and stays until the user changes it.
    /// What is being typed isn't overwritten, and what is not finite passed over.
    void showValue(double value);

    QString textFromValue(double value) const override;
    /// A comma is a decimal point too, and every minus is one.
    QValidator::State validate(QString& text, int& position) const override;

  protected:
    /// Scrolling a form must not turn what happens to lie under the pointer.
    void wheelEvent(QWheelEvent* event) override;
};

}  // namespace TarvaneApp
