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

    /// Without the label and with tighter menus, for a window that has no room for more.
    void setNarrow(bool narrow);
    /// That of the row when it isn't narrow.
    int ordinaryWidth() const;

  private:
    void showReadout();
    void showTarget();

    MeterSettings& settings_;
    QLabel* label_;
    MenuButton* readout_;
    MenuButton* target_;
    bool isNarrow_ = false;
};

}  // namespace TarvaneApp
