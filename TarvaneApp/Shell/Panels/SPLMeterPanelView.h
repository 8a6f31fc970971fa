// The meter as a panel: its control bar above its readout, or the clock in place of both.
#pragma once

#include <QWidget>
#include <optional>

#include "Core/UUID.h"

namespace TarvaneApp {

class MeterEngine;

class SPLMeterPanelView final : public QWidget {
    Q_OBJECT
  public:
    /// Shows the fixed channel, or without one the channel that the engine's `splMeterChannelID`
    /// names.
    SPLMeterPanelView(MeterEngine& engine, const std::optional<TarvaneKit::UUID>& fixedChannelID,
                      QWidget* parent = nullptr);

    /// As high as the meter is where other modules take the rest of the window.
    QSize sizeHint() const override;
};

}  // namespace TarvaneApp
