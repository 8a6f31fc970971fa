// Preferences, Loudness: what a programme's loudness is held against, which reading of it is the
// large one, and whether the main input measures it.
#pragma once

#include "Shell/Forms/Form.h"

namespace TarvaneApp {

class MeterEngine;

class LoudnessSettingsView final : public Form {
    Q_OBJECT
  public:
    explicit LoudnessSettingsView(MeterEngine& engine, QWidget* parent = nullptr);

  private:
    void addTarget();
    void addReadout();
    void addChannels();

    MeterEngine& engine_;
};

}  // namespace TarvaneApp
