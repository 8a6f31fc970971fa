// A small button of a row of which one is selected.
#pragma once

#include <QAbstractButton>
#include <functional>

namespace TarvaneApp {

class CompactToggleButton final : public QAbstractButton {
    Q_OBJECT
  public:
    /// `action` runs when the user presses it; the owner then sets the selection.
    CompactToggleButton(const QString& label, std::function<void()> action,
                        QWidget* parent = nullptr);

    bool isSelected() const { return isChecked(); }
    void setSelected(bool selected);

    QSize sizeHint() const override;

  protected:
    void nextCheckState() override { setChecked(true); }
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace TarvaneApp
