// What a change of a setting does beyond saving it. Each effect runs with the new value in
// place and saved; a setting that isn't named here is saved, and that is all.

#include <algorithm>

#include "Engine/MeterEngine.h"

namespace TarvaneApp {

using TarvaneKit::CalibrationProfile;
using TarvaneKit::TimeWeighting;
using TarvaneKit::UUID;
using TarvaneKit::Weighting;

namespace {

// Each graph keeps enough room to be read and to be dragged open again.
constexpr double smallestSplitFraction = 0.15;
constexpr double largestSplitFraction = 0.85;

// What of a channel is fixed when its source opens.
using SourceSignature = std::tuple<UUID, std::optional<std::string>, int, std::optional<int>>;

std::vector<SourceSignature> sourceSignatures(const std::vector<ChannelConfig>& channels) {
    std::vector<SourceSignature> signatures;
    for (const ChannelConfig& channel : channels) {
        if (channel.isEnabled) {
            signatures.emplace_back(
                channel.id, channel.deviceUID, channel.channelIndex,
                channel.isStereo ? std::optional(channel.rightChannelIndex) : std::nullopt);
        }
    }
    std::ranges::sort(signatures);
    return signatures;
}

std::vector<std::pair<UUID, bool>> loudnessSwitches(const std::vector<ChannelConfig>& channels) {
    std::vector<std::pair<UUID, bool>> switches;
    for (const ChannelConfig& channel : channels) {
        switches.emplace_back(channel.id, channel.measuresLoudness);
    }
    return switches;
}

}  // namespace

void MeterEngine::attachSettingEffects() {
    // The main input.
    selectedDeviceUID.setEffect([this](const auto& old) { selectedDeviceChanged(old); });
    selectedChannelIndex.setEffect(
        [this](int old) { mainInputsChanged(old != selectedChannelIndex()); });
    mainInputIsStereo.setEffect(
        [this](bool old) { mainInputsChanged(old != mainInputIsStereo()); });
    mainInputRightChannelIndex.setEffect(
        [this](int old) { mainInputsChanged(old != mainInputRightChannelIndex()); });
    mainInputIsDigital.setEffect([this](bool) { calibrationChanged(); });
    mainInputMeasuresLoudness.setEffect([this](bool) { loudnessChannelsChanged(); });

    // The other channels.
    extraChannels.setEffect([this](const auto& old) { extraChannelsChanged(old); });

    // The main input's spectrum.
    octaveFraction.setEffect([this](TarvaneKit::OctaveFraction) { resetBandLevels(UUID::main()); });
    octaveNormalizedSpectrumDisplay.setEffect([this](bool) { ++smoothingGeneration_; });
    rtaTimeWeighting.setEffect([this](TimeWeighting) { ++smoothingGeneration_; });

    // The main input's meter.
    metricMode.setEffect([this](MetricMode) { mainMetricChanged(); });
    splWeighting.setEffect([this](Weighting) { mainMetricChanged(); });
    splTimeWeighting.setEffect([this](TimeWeighting) { mainMetricChanged(); });
    peakWeighting.setEffect([this](Weighting) { mainMetricChanged(); });
    // Whatever is assigned, the profile in force carries the gain of now.
    calibration.setConstraint([this](CalibrationProfile profile) {
        profile.inputGain = currentInputGain();
        return profile;
    });
    calibration.setEffect([this](const CalibrationProfile&) { calibrationChanged(); },
                          Setting<CalibrationProfile>::Saving::afterEffect);

    // The layout of the main window.
    panelSplitFraction.setConstraint([](double fraction) {
        // In this order a fraction that is no number ends at the smallest.
        return std::min(std::max(smallestSplitFraction, fraction), largestSplitFraction);
    });
    for (Setting<ModulePlacement>* placement :
         {&splMeterPlacement, &rtaPlacement, &spectrogramPlacement, &levelHistoryPlacement}) {
        placement->setEffect([this](ModulePlacement) { placementChanged(); });
    }

    // The main input's feedback alerts.
    ringOutEnabled.setEffect([this](bool) {
        if (!ringOutEnabled()) {
            clearRingAlerts(UUID::main());
        }
    });
}

void MeterEngine::selectedDeviceChanged(const std::optional<std::string>& old) {
    refreshInputVolume();
    const auto& uid = selectedDeviceUID();
    const int inputs = channelCount(uid);
    if (selectedChannelIndex() >= inputs) {
        selectedChannelIndex.set(0);
    }
    if (uid == old) {
        return;
    }
    mainInputIsDigital.set(isLikelyDigitalSource(uid));
    if (uid == TarvaneKit::systemOutputUID) {
        selectedChannelIndex.set(0);
        mainInputRightChannelIndex.set(1);
        mainInputIsStereo.set(true);
    } else if (mainInputRightChannelIndex() >= inputs) {
        mainInputIsStereo.set(false);
    }
    noteSourceChange(true);
}

void MeterEngine::extraChannelsChanged(const std::vector<ChannelConfig>& old) {
    refreshDeviceGains();
    calibrationChanged();
    if (loudnessSwitches(old) != loudnessSwitches(extraChannels())) {
        loudnessChannelsChanged();
    }
    noteSourceChange(sourceSignatures(old) != sourceSignatures(extraChannels()));
}

void MeterEngine::mainInputsChanged(bool changed) {
    noteSourceChange(changed);
    refreshInputVolume();
}

// A level's min and max mean nothing of a loudness, nor the other way about.
void MeterEngine::loudnessChannelsChanged() {
    for (const ChannelInfo& info : channelInfos()) {
        const auto found = meterChannels_.find(info.id);
        if (found != meterChannels_.end() && found->second->processor &&
            found->second->processor->setMeasuresLoudness(info.measuresLoudness)) {
            metricChanged(*found->second);
        }
    }
}

// The running sources stay as they are; the interface offers a restart.
void MeterEngine::noteSourceChange(bool changed) {
    if (changed && isRunning()) {
        channelSourcesChangedWhileRunning.set(true);
    }
}

}  // namespace TarvaneApp
