// One row of a form: its control, how that shows its value, and when the row is there.
#pragma once

#include <functional>

class QFormLayout;
class QWidget;

namespace TarvaneApp {

class FormRow {
  public:
    /// `control` is the last row of `rows`, under that of `before`, or the first where that is
    /// null. `show` puts the value of now into it.
    FormRow(QFormLayout& rows, QWidget& control, const FormRow* before, std::function<void()> show);

    /// The row is there while the condition holds.
    FormRow& shownWhile(std::function<bool()> condition);
    /// The row can be used while the condition holds.
    FormRow& enabledWhile(std::function<bool()> condition);

    QWidget& control() { return control_; }

    /// Looks at the value and the conditions again.
    void refresh();

  private:
    /// How many rows of the layout there are up to this one and with it.
    int count() const;
    void putIn();
    void takeOut();

    QFormLayout& rows_;
    QWidget& control_;
    QWidget* const label_;  ///< null without one
    const FormRow* const before_;
    bool spans_ = false;
    bool isIn_ = true;
    std::function<void()> show_;
    std::function<bool()> isShown_;
    std::function<bool()> isEnabled_;
};

}  // namespace TarvaneApp
