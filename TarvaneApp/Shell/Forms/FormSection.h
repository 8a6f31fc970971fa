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
#include "Shell/Forms/FormList.h"
#include "Shell/Forms/FormRow.h"
#include "Shell/Forms/FormTextField.h"
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
    /// The scale may be another at each refresh.
    FormRow& addSlider(const QString& label, std::function<NumberScale()> scale,
                       FormValue<double> value);
    FormRow& addStepper(const QString& label, const ValueStepper::Scale& scale,
                        FormValue<double> value);
    FormRow& addColor(const QString& label, FormValue<TarvaneKit::RGBAColor> value);
    FormRow& addTextField(const QString& label, FormValue<QString> value,
                          FormTextField::Counts counts = FormTextField::Counts::whenDone);
    /// A text to read, as "+3.0 dB".
    FormRow& addReading(const QString& label, std::function<QString()> text);
    FormRow& addButton(const QString& text, std::function<void()> press);
    /// Buttons beside each other. `show` says which of them can be pressed.
    FormRow& addButtons(const std::vector<QPushButton*>& buttons, std::function<void()> show = {});
    /// A small explanation of the row above.
    FormRow& addHelp(const QString& text);
    FormRow& addHelp(std::function<QString()> text);
    /// As many items as `count` tells at each refresh, over the whole width.
    FormRow& addList(std::function<int()> count, FormList::MakeItem makeItem);
    /// A control of another kind. `show` puts the value of now into it. Without a label it has the
    /// whole width.
    FormRow& addControl(const QString& label, QWidget* control, std::function<void()> show = {});

  private:
    FormRow& addRow(const QString& label, QWidget* control, std::function<void()> show);
    FormRow& keep(QWidget* control, std::function<void()> show);
    /// For the next row that is added: sets the value, then shows what that has come to.
    template <class T>
    std::function<void(T)> settingAndShowing(std::function<void(T)> set) {
        return [this, row = all_.size(), set = std::move(set)](T value) {
            set(std::move(value));
            all_[row]->refresh();
        };
    }
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
    // What the list shows, which is what an index of it means.
    auto offered = std::make_shared<std::vector<FormChoice<T>>>();
    return addPickerRow(
        label,
        [offered, set = std::move(value.set)](int index) {
            set((*offered)[static_cast<std::size_t>(index)].value);
        },
        [offered, choices = std::move(choices), get = std::move(value.get)] {
            *offered = choices();
            QStringList labels;
            for (const FormChoice<T>& choice : *offered) {
                labels.append(choice.label);
            }
            const auto found = std::ranges::find(*offered, get(), &FormChoice<T>::value);
            return std::pair(
                labels, found != offered->end() ? static_cast<int>(found - offered->begin()) : -1);
        });
}

/// A button of a form; no key presses it but its own.
QPushButton* makeFormButton(const QString& text, std::function<void()> press, QWidget* parent);

}  // namespace TarvaneApp
