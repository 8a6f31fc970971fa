#include "Engine/MeterSettings.h"

#include "Engine/CalibrationProfiles.h"
#include "Records/ExtraChannels.h"
#include "Settings/SettingStorage.h"

namespace TarvaneApp {

using namespace TarvaneKit;

namespace {

// One range for both units was stored once.
SpectrogramRanges migratedSpectrogramRanges(const Persistence& persistence) {
    using Legacy = SpectrogramRanges::LegacyKeys;
    return SpectrogramRanges::fromLegacy(persistence.load<double>(Legacy::floorDB),
                                         persistence.load<double>(Legacy::ceilingDB));
}

}  // namespace

MeterSettings::MeterSettings(KeyValueStore& store) : channels_(store), windows_(store) {
    calibration.setSanitizer(CalibrationProfiles::sanitized);
    spectrogramRanges.setMigration(migratedSpectrogramRanges);
    extraChannels.setSanitizer(channelsThatMayStand);
    extraChannels.setConstraint(channelsThatMayStand);
    channels_.loadAll();
    windows_.loadAll();
}

ChannelDisplaySettings MeterSettings::mainDisplay() const {
    ChannelDisplaySettings display;
    for (const DisplaySettingBase* setting : display_.list) {
        setting->read(display);
    }
    return display;
}

void MeterSettings::assignMainDisplay(const ChannelDisplaySettings& display) {
    for (DisplaySettingBase* setting : display_.list) {
        setting->assign(display);
    }
}

// How each type is stored, compiled once.
template class Setting<CalibrationProfile>;
template class Setting<GraphOrder>;
template class Setting<GraphOrientation>;
template class Setting<LevelHistoryPosition>;
template class Setting<LevelHistoryZoom>;
template class Setting<LoudnessColors>;
template class Setting<LoudnessMetric>;
template class Setting<LoudnessTarget>;
template class Setting<MetricMode>;
template class Setting<ModulePlacement>;
template class Setting<OctaveFraction>;
template class Setting<PanelLayout>;
template class Setting<RGBAColor>;
template class Setting<RingOutSensitivity>;
template class Setting<SpectrogramRanges>;
template class Setting<SpectrumViewMode>;
template class Setting<TimeWeighting>;
template class Setting<TrafficLightConfig>;
template class Setting<UUID>;
template class Setting<Weighting>;
template class Setting<bool>;
template class Setting<double>;
template class Setting<int>;
template class Setting<std::map<UUID, ChannelWindowLayout>>;
template class Setting<std::optional<UUID>>;
template class Setting<std::optional<std::string>>;
template class Setting<std::vector<ChannelConfig>>;
template class Setting<std::vector<SpectrogramColorPreset>>;
template class Setting<std::vector<SpectrogramColorStop>>;
template class Setting<std::vector<UUID>>;

}  // namespace TarvaneApp
