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

    /// How high the meter is above other modules, in a window that leaves all of them that much:
    /// a good quarter, between what its parts need and what is left to read on the rest.
    static int heightAboveOthers(int windowHeight);
    /// The height that the panel asks for.
    void setPreferredHeight(int height);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  private:
    int preferredHeight_;
};

}  // namespace TarvaneApp
