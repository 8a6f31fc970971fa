// How a channel is shown: its display settings, and what follows from them and from its
// calibration: metric, bands, unit, colours, the range of its spectrogram.
//
// An extra channel has display settings of its own, or follows the main input's. Looks settings
// and channels up and writes settings; keeps nothing but tables that they determine. Main
// thread only.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "DSP/OctaveBands.h"
#include "Engine/ActiveTrafficLight.h"
#include "Engine/ChannelList.h"
#include "Engine/InputGains.h"
#include "Engine/MeterSettings.h"
#include "Metrics/SPLMetric.h"
#include "Records/LoudnessTarget.h"
#include "Records/RTAScale.h"

namespace TarvaneApp {

class ChannelDisplays {
  public:
    /// All of it outlives this.
    ChannelDisplays(MeterSettings& settings, ChannelList& channels, const InputGains& gains)
        : settings_(settings), channels_(channels), gains_(gains) {}

    /// The channel's own display settings, or the main input's where it follows them.
    ChannelDisplaySettings display(const TarvaneKit::UUID& id) const;
    void updateDisplay(const TarvaneKit::UUID& id,
                       const std::function<void(ChannelDisplaySettings&)>& edit);

    TarvaneKit::SPLMetric displayedMetric(const TarvaneKit::UUID& id) const;
    /// What the channel's level history shows.
    TarvaneKit::SPLMetric historyMetric(const TarvaneKit::UUID& id) const;
    /// The level, peak or Leq that the channel's meter is set to.
    TarvaneKit::SPLMetric meterMetric(const TarvaneKit::UUID& id) const;
    /// The bands of the channel's spectrum.
    const std::vector<TarvaneKit::OctaveBand>& bands(const TarvaneKit::UUID& id) const;

    bool isCalibrated(const TarvaneKit::UUID& id) const;
    /// dB SPL for a calibrated channel, unless it is set to show dBFS.
    RTAScale rtaScale(const TarvaneKit::UUID& id) const;
    ReadoutUnit readoutUnit(const TarvaneKit::UUID& id) const;
    /// "LUFS" for a channel that measures loudness, "dB" for a calibrated one in SPL, else "dBFS".
    std::string levelUnitLabel(const TarvaneKit::UUID& id) const;
    /// What is to be taken off a level in the channel's calibrated scale to show it in its unit.
    double splReadoutDisplayOffsetDB(const TarvaneKit::UUID& id) const;

    ActiveTrafficLight activeTrafficLight(const TarvaneKit::UUID& id) const;
    TarvaneKit::RGBAColor trafficLightColor(double levelDB, const TarvaneKit::UUID& id) const;

    /// In the unit that the channel is shown in: one range per unit, so that a change of unit
    /// brings back the range last used there.
    SpectrogramRange spectrogramRange(const TarvaneKit::UUID& id) const;
    /// The same in the unit of the spectrogram's rows.
    SpectrogramRange spectrogramColorMapRange(const TarvaneKit::UUID& id) const;
    /// How far floor and ceiling can be moved.
    SpectrogramRange spectrogramSliderBounds(const TarvaneKit::UUID& id) const;
    /// Each stays 3 dB clear of the other.
    void setSpectrogramFloorDB(double floorDB, const TarvaneKit::UUID& id);
    void setSpectrogramCeilingDB(double ceilingDB, const TarvaneKit::UUID& id);

  private:
    /// What the publication of every channel asks for; without a copy of its record.
    struct LevelScale {
        bool isCalibrated = false;
        double offsetDB = 0.0;  ///< from a raw level to the channel's
    };
    /// The same as `ActiveTrafficLight`, of a table that somebody else keeps.
    struct TrafficLight {
        const TarvaneKit::TrafficLightConfig& config;
        double offsetDB;
    };
    TrafficLight trafficLight(const TarvaneKit::UUID& id) const;
    const TarvaneKit::TrafficLightConfig& loudnessTrafficLight() const;
    /// Null where the channel follows the main input.
    const ChannelDisplaySettings* ownDisplay(const TarvaneKit::UUID& id) const;
    /// Empty for an unknown channel.
    std::optional<LevelScale> levelScale(const TarvaneKit::UUID& id) const;
    void pinChannelsFollowingMain(const ChannelDisplaySettings& to);
    void editSpectrogramRange(const TarvaneKit::UUID& id,
                              const std::function<void(SpectrogramRange&)>& edit);

    MeterSettings& settings_;
    ChannelList& channels_;
    const InputGains& gains_;
    /// The loudness target's table, and what it was made of last.
    mutable LoudnessTarget loudnessTarget_;
    mutable LoudnessColors loudnessColors_;
    mutable std::optional<TarvaneKit::TrafficLightConfig> loudnessTrafficLight_;
    /// Per fraction, filled at first need.
    mutable std::map<TarvaneKit::OctaveFraction, std::vector<TarvaneKit::OctaveBand>> bandCache_;
};

}  // namespace TarvaneApp
