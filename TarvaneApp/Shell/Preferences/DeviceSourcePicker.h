// Which device feeds the main input: the default, any input device, or the machine's own output.
#pragma once

#include <QComboBox>

namespace TarvaneApp {

class MeterEngine;

class DeviceSourcePicker final : public QComboBox {
    Q_OBJECT
  public:
    explicit DeviceSourcePicker(MeterEngine& engine, QWidget* parent = nullptr);

  private:
    void showDevices();

    MeterEngine& engine_;
};

}  // namespace TarvaneApp
