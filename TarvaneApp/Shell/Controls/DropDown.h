// A drop-down list. While it is open a screen reader knows it by the name of its box, and Escape
// closes it alone.
#pragma once

#include <QComboBox>

namespace TarvaneApp {

class DropDown : public QComboBox {
    Q_OBJECT
  public:
    using QComboBox::QComboBox;

    void showPopup() override;

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};

}  // namespace TarvaneApp
