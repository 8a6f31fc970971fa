// The whole working setup from the engine into a snapshot, and from a snapshot into the engine.
//
// A snapshot may be a stranger's. What it says that no setting can hold is passed over, and the
// live value stays. Main thread only.
#pragma once

#include <vector>

#include "Engine/InputDevices.h"
#include "Engine/MeterSettings.h"
#include "Engine/ModuleLayout.h"
#include "Engine/Run.h"
#include "Records/SettingsSnapshot.h"

namespace TarvaneApp {

class SettingsTransfer {
  public:
    /// All of it outlives this.
    struct Environment {
        MeterSettings& settings;
        const InputDevices& devices;
        ModuleLayout& layout;
        Run& run;
    };
    explicit SettingsTransfer(const Environment& environment)
        : settings_(environment.settings),
          devices_(environment.devices),
          layout_(environment.layout),
          run_(environment.run) {}

    /// Every field but those of old files.
    SettingsSnapshot capture() const;
    /// Assigns what the snapshot says, in an order in which each setting's effect finds what it
    /// needs. Without audio and calibration every channel keeps its input and its profile, and no
    /// channel comes or goes.
    void apply(const SettingsSnapshot& snapshot, bool includeAudioAndCalibration);

  private:
    void applyAudioInput(const SettingsSnapshot::AudioInput& input);
    void applyChannelDisplaySettings(const std::vector<ChannelConfig>& channels);
    void applyLeq(const SettingsSnapshot& snapshot);
    void applyLoudnessReadout(const SettingsSnapshot& snapshot);
    void applySpectrogramRanges(const SettingsSnapshot& snapshot);

    MeterSettings& settings_;
    const InputDevices& devices_;
    ModuleLayout& layout_;
    Run& run_;
};

}  // namespace TarvaneApp
