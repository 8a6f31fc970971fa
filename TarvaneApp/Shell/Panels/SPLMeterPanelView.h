// The meter as a panel: its control bar above its readout, or the clock in place of both.
#pragma once

#include <QWidget>

namespace TarvaneApp {

class MeterEngine;

class SPLMeterPanelView final : public QWidget {
    Q_OBJECT
  public:
    /// Shows the channel that the engine's `splMeterChannelID` names.
    explicit SPLMeterPanelView(MeterEngine& engine, QWidget* parent = nullptr);
};

}  // namespace TarvaneApp
