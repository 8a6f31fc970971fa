// Which input of the main input's device is measured: the only one, or the left of a pair, or
// the right of a pair.
#pragma once

#include <QComboBox>

namespace TarvaneApp {

class MeterEngine;
template <class T>
class Setting;

class InputChannelPicker final : public QComboBox {
    Q_OBJECT
  public:
    /// `input` is the engine's setting of that input's index.
    InputChannelPicker(MeterEngine& engine, Setting<int>& input, QWidget* parent = nullptr);

  private:
    void showInputs();

    MeterEngine& engine_;
    Setting<int>& input_;
};

}  // namespace TarvaneApp
