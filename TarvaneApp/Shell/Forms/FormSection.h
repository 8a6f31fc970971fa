// A titled section of a form. Its rows are all of few kinds, one call each, so that a section
// reads as the list of what it offers.
//
// A row shows what its value is whenever the form is refreshed, and sets it when the user changes
// it: it keeps nothing itself.
#pragma once

#include <QGroupBox>
#include <QStringList>
#include <algorithm>
#include <functional>
#include <memory>
#include <vector>

#include "Core/RGBAColor.h"
#include "Shell/Forms/FormRow.h"
#include "Shell/Forms/FormValue.h"
#include "Shell/Forms/NumberScale.h"
#include "Shell/Forms/ValueStepper.h"

class QFormLayout;
class QPushButton;

namespace TarvaneApp {

/// What a picker offers: its text, and the value that picking it sets.
template <class T>
struct FormChoice {
    QString label;
    T value;
};

class FormSection final : public QGroupBox {
    Q_OBJECT
  public:
    explicit FormSection(const QString& title, QWidget* parent = nullptr);
    ~FormSection() override;

    /// The section is there while the condition holds.
    void shownWhile(std::function<bool()> condition) { isShown_ = std::move(condition); }
    /// Looks at all values and conditions again.
    void refresh();

    // Rows, each under those before it. The label is what a screen reader calls the control.

    FormRow& addToggle(const QString& label, FormValue<bool> value);

    /// The choices may be others at each refresh. A value that is none of them selects nothing.
    template <class T>
    FormRow& addPicker(const QString& label, std::function<std::vector<FormChoice<T>>()> choices,
                       FormValue<T> value);
    template <class T>
    FormRow& addPicker(const QString& label, std::vector<FormChoice<T>> choices,
                       FormValue<T> value) {
        return addPicker<T>(
            label, [choices = std::move(choices)] { return choices; }, std::move(value));
    }

    FormRow& addSlider(const QString& label, NumberScale scale, FormValue<double> value);
    FormRow& addStepper(const QString& label, const ValueStepper::Scale& scale,
                        FormValue<double> value);
    FormRow& addColor(const QString& label, FormValue<TarvaneKit::RGBAColor> value);
    /// Sets the text when the user is done with it.
    FormRow& addTextField(const QString& label, FormValue<QString> value);
    /// A text to read, as "+3.0 dB".
    FormRow& addReading(const QString& label, std::function<QString()> text);
    FormRow& addButton(const QString& text, std::function<void()> press);
    /// Buttons beside each other. Each can be had by its place for `setEnabled`.
    FormRow& addButtons(const std::vector<QPushButton*>& buttons);
    /// A small explanation of the row above.
    FormRow& addHelp(const QString& text);
    FormRow& addHelp(std::function<QString()> text);
    /// A control of another kind. `show` puts the value of now into it. Without a label it has the
    /// whole width.
    FormRow& addControl(const QString& label, QWidget* control, std::function<void()> show = {});

  private:
    FormRow& addRow(const QString& label, QWidget* control, std::function<void()> show);
    FormRow& addPickerRow(const QString& label, std::function<void(int)> pick,
                          std::function<std::pair<QStringList, int>()> labelsAndCurrent);

    QFormLayout* rows_;
    std::vector<std::unique_ptr<FormRow>> all_;
    std::function<bool()> isShown_;
};

template <class T>
FormRow& FormSection::addPicker(const QString& label,
                                std::function<std::vector<FormChoice<T>>()> choices,
                                FormValue<T> value) {
    return addPickerRow(
        label,
        [choices, set = std::move(value.set)](int index) {
            set(choices()[static_cast<std::size_t>(index)].value);
        },
        [choices, get = std::move(value.get)] {
            const auto offered = choices();
            QStringList labels;
            for (const FormChoice<T>& choice : offered) {
                labels.append(choice.label);
            }
            const auto found = std::ranges::find(offered, get(), &FormChoice<T>::value);
            return std::pair(
                labels, found != offered.end() ? static_cast<int>(found - offered.begin()) : -1);
        });
}

/// A button of a form; no key presses it but its own.
QPushButton* makeFormButton(const QString& text, std::function<void()> press, QWidget* parent);

}  // namespace TarvaneApp
