// Which target curve lies over a channel's spectrum, and at which level.
#pragma once

#include <QWidget>

#include "Core/UUID.h"

namespace TarvaneApp {

class MenuButton;
class MeterEngine;
class TargetCurveReferenceControl;

class TargetCurveControls final : public QWidget {
    Q_OBJECT
  public:
    /// `referenceLabel` is the label of the level. Both are hidden while there is no curve.
    TargetCurveControls(MeterEngine& engine, const TarvaneKit::UUID& channelID,
                        const QString& referenceLabel, QWidget* parent = nullptr);

    void setChannelID(const TarvaneKit::UUID& channelID);

  private:
    void showCurves();

    MeterEngine& engine_;
    TarvaneKit::UUID channelID_;
    MenuButton* curves_;
    QWidget* reference_;
    TargetCurveReferenceControl* level_;
};

}  // namespace TarvaneApp
