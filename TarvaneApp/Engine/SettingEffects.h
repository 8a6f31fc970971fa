// What a change of a setting does beyond saving it, all of it in one place, to be read one after
// another. A setting that isn't named here is saved, and that is all. Main thread only.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Engine/ChannelChanges.h"
#include "Engine/ChannelList.h"
#include "Engine/InputDevices.h"
#include "Engine/InputGains.h"
#include "Engine/MeterSettings.h"
#include "Engine/ModuleLayout.h"
#include "Engine/Run.h"

namespace TarvaneApp {

class SettingEffects {
  public:
    /// All of it outlives this.
    struct Environment {
        MeterSettings& settings;
        const InputDevices& devices;
        InputGains& gains;
        const ChannelList& channels;
        Run& run;
        ModuleLayout& layout;
        ChannelChanges& changes;
    };
    /// Attaches the effects: what is loaded before has none.
    explicit SettingEffects(const Environment& environment);
    SettingEffects(const SettingEffects&) = delete;
    SettingEffects& operator=(const SettingEffects&) = delete;

  private:
    void attachMainInput();
    void attachMainDisplay();
    void attachMeters();
    void attachLayout();
    void attachChannelChanges();

    void selectedDeviceChanged(const std::optional<std::string>& old);
    void mainInputsChanged(bool changed);
    void mainMetricChanged();
    void loudnessReadoutChanged();
    void extraChannelsChanged(const std::vector<ChannelConfig>& old);
    void extraChannelChanged(const ChannelConfig& old, const ChannelConfig& now);

    MeterSettings& settings_;
    const InputDevices& devices_;
    InputGains& gains_;
    const ChannelList& channels_;
    Run& run_;
    ModuleLayout& layout_;
    ChannelChanges& changes_;
    /// The watchers of what is not a setting hang on it.
    QObject context_;
};

}  // namespace TarvaneApp
