// Calibrates a channel on the tone that it hears: the button, above it what it is about to do, and
// under it what speaks against doing so. It listens while it is visible, and costs nothing while it
// isn't. Main thread.
#pragma once

#include <QWidget>
#include <functional>
#include <optional>

#include "Core/UUID.h"
#include "Engine/ChannelDemand.h"
#include "LiveDisplays/LiveBinding.h"
#include "Shell/Preferences/ReferenceToneDoubts.h"

class QLabel;
class QPushButton;

namespace TarvaneApp {

class MeterEngine;

class ReferenceToneControl final : public QWidget {
    Q_OBJECT
  public:
    /// `knownSPL` is the tone's level, absent while the user has typed none.
    ReferenceToneControl(MeterEngine& engine, const TarvaneKit::UUID& channelID,
                         std::function<std::optional<double>()> knownSPL,
                         QWidget* parent = nullptr);

  public Q_SLOTS:
    /// The tone's level is another, or the channel is.
    void refresh();

  protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

  private:
    void listen();
    void calibrate();
    HeardTone heardTone();
    double levelSpreadDB();

    MeterEngine& engine_;
    const TarvaneKit::UUID channelID_;
    const std::function<std::optional<double>()> knownSPL_;
    QPushButton* button_;
    QLabel* preview_;
    QLabel* doubts_;
    QLabel* failure_;
    LiveBinding binding_;
    ChannelDemandRegistration demand_;
    double shownAt_ = 0.0;    // of the channel's level history, seconds
    double offsetDB_ = 0.0;   // of the calibration in force
    double settledAt_ = 0.0;  // until then the level moves, and the tone does not
};

}  // namespace TarvaneApp
