// What a loudness meter shows large, and the target that the programme is held against. Both apply
// to every channel that measures loudness.
#pragma once

#include <QWidget>

class QLabel;

namespace TarvaneApp {

class MenuButton;
class MeterSettings;

class LoudnessControls final : public QWidget {
    Q_OBJECT
  public:
    explicit LoudnessControls(MeterSettings& settings, QWidget* parent = nullptr);

    /// Without the label, for a window that has no room for it.
    void setNarrow(bool narrow);
    /// With the label, whether it is shown or not.
    int ordinaryWidth() const;

  private:
    void showReadout();
    void showTarget();

    MeterSettings& settings_;
    QLabel* label_;
    MenuButton* readout_;
    MenuButton* target_;
};

}  // namespace TarvaneApp
