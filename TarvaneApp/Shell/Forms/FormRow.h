// One row of a form: its control, how that shows its value, and when the row is there.
#pragma once

#include <functional>

class QFormLayout;
class QWidget;

namespace TarvaneApp {

class FormRow {
  public:
    /// `control` is in `rows` already. `show` puts the value of now into it.
    FormRow(QFormLayout& rows, QWidget& control, std::function<void()> show);

    /// The row is there while the condition holds.
    FormRow& shownWhile(std::function<bool()> condition);
    /// The row can be used while the condition holds.
    FormRow& enabledWhile(std::function<bool()> condition);

    QWidget& control() { return control_; }

    /// Looks at the value and the conditions again.
    void refresh();

  private:
    QFormLayout& rows_;
    QWidget& control_;
    std::function<void()> show_;
    std::function<bool()> isShown_;
    std::function<bool()> isEnabled_;
};

}  // namespace TarvaneApp
