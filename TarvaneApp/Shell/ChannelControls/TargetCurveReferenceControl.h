// The level at which a channel's target curve has its 0 dB, in the unit of the channel's
// readout: each unit has its own level.
#pragma once

#include <QWidget>

#include "Core/UUID.h"

class QLabel;
class QSlider;

namespace TarvaneApp {

class MeterEngine;

class TargetCurveReferenceControl final : public QWidget {
    Q_OBJECT
  public:
    TargetCurveReferenceControl(MeterEngine& engine, const TarvaneKit::UUID& channelID,
                                QWidget* parent = nullptr);

    void setChannelID(const TarvaneKit::UUID& channelID);

  private:
    void showLevel();
    void setLevel(int level);

    MeterEngine& engine_;
    TarvaneKit::UUID channelID_;
    QSlider* slider_;
    QLabel* value_;
};

}  // namespace TarvaneApp
