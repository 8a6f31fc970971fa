#include "Engine/MeterSettings.h"

#include "Engine/CalibrationProfiles.h"
#include "Records/ExtraChannels.h"
#include "Records/PossibleNumbers.h"
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

// What is stored of the setting stands if it may, else the default.
template <class T, class Predicate>
void takeOnly(Setting<T>& setting, const Predicate& mayStand) {
    setting.setSanitizer([mayStand, usual = setting()](T stored) {
        return mayStand(stored) ? std::move(stored) : usual;
    });
}

}  // namespace

MeterSettings::MeterSettings(KeyValueStore& store) : channels_(store), windows_(store) {
    constrainStoredValues();
    spectrogramRanges.setMigration(migratedSpectrogramRanges);
    extraChannels.setConstraint(channelsThatMayStand);
    channels_.loadAll();
    windows_.loadAll();
}

void MeterSettings::constrainStoredValues() {
    namespace Possible = PossibleNumbers;
    takeOnly(selectedChannelIndex, Possible::isInput);
    takeOnly(mainInputRightChannelIndex, Possible::isInput);
    takeOnly(loudnessTarget, Possible::isLoudnessTarget);
    takeOnly(targetCurveReferenceDB, Possible::isLevel);
    takeOnly(targetCurveReferenceDBFS, Possible::isLevel);
    takeOnly(leqIntegrationSeconds, Possible::isLeqTime);
    takeOnly(trafficLightConfig, Possible::areThresholds);
    takeOnly(trafficLightConfigDBFS, Possible::areThresholds);
    takeOnly(spectrogramTimeSpanSeconds, Possible::isSpectrogramTimeSpan);
    takeOnly(spectrogramSliceHeightMultiplier, Possible::isSliceHeight);
    takeOnly(panelSplitFraction, Possible::isSplitFraction);
    calibration.setSanitizer(CalibrationProfiles::sanitized);
    spectrogramRanges.setSanitizer(
        [](const SpectrogramRanges& ranges) { return Possible::repaired(ranges); });
    extraChannels.setSanitizer([](std::vector<ChannelConfig> channels) {
        channels = channelsThatMayStand(std::move(channels));
        for (ChannelConfig& channel : channels) {
            channel = Possible::repaired(std::move(channel));
        }
        return channels;
    });
    channelWindowLayouts.setSanitizer([](std::map<UUID, ChannelWindowLayout> layouts) {
        for (auto& [id, layout] : layouts) {
            layout = Possible::repaired(layout);
        }
        return layouts;
    });
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

void MeterSettings::configureLeq(Weighting weighting, double integrationSeconds) {
    leqWeighting.setWithoutEffect(weighting);
    leqIntegrationSeconds.set(integrationSeconds);
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
