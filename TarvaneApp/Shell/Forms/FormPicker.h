// A drop-down list of a form.
#pragma once

#include <functional>

#include "Shell/Controls/DropDown.h"

namespace TarvaneApp {

class FormPicker : public DropDown {
    Q_OBJECT
  public:
    /// `onPick` runs with the index that the user picked.
    explicit FormPicker(std::function<void(int)> onPick, QWidget* parent = nullptr);

    /// Nothing is selected at -1.
    void showChoices(const QStringList& labels, int current);

  protected:
    /// Scrolling a form must not turn what happens to lie under the pointer.
    void wheelEvent(QWheelEvent* event) override;
};

}  // namespace TarvaneApp
