// In which unit a channel reads: dB SPL, where it is calibrated, dBFS, or as programme loudness in
// LUFS.
#pragma once

#include "Core/UUID.h"
#include "Shell/Controls/MenuButton.h"

namespace TarvaneApp {

class MeterEngine;

class ReadoutUnitPicker final : public MenuButton {
    Q_OBJECT
  public:
    ReadoutUnitPicker(MeterEngine& engine, const TarvaneKit::UUID& channelID,
                      QWidget* parent = nullptr);

    void setChannelID(const TarvaneKit::UUID& channelID);

  private:
    void showChoices();

    MeterEngine& engine_;
    TarvaneKit::UUID channelID_;
};

}  // namespace TarvaneApp
