#include "Engine/SettingEffects.h"

#include <algorithm>
#include <utility>

#include "Records/PossibleNumbers.h"

namespace TarvaneApp {

using TarvaneKit::CalibrationProfile;
using TarvaneKit::LoudnessMetric;
using TarvaneKit::OctaveFraction;
using TarvaneKit::TimeWeighting;
using TarvaneKit::UUID;
using TarvaneKit::Weighting;

namespace {

// Of the channels that run.
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

SettingEffects::SettingEffects(const Environment& environment)
    : settings_(environment.settings),
      devices_(environment.devices),
      gains_(environment.gains),
      channels_(environment.channels),
      run_(environment.run),
      layout_(environment.layout),
      changes_(environment.changes) {
    attachMainInput();
    attachMainDisplay();
    attachMeters();
    attachLayout();
    attachChannelChanges();
}

void SettingEffects::attachMainInput() {
    settings_.selectedDeviceUID.setEffect([this](const auto& old) { selectedDeviceChanged(old); });
    settings_.selectedChannelIndex.setEffect(
        [this](int old) { mainInputsChanged(old != settings_.selectedChannelIndex()); });
    settings_.mainInputIsStereo.setEffect(
        [this](bool old) { mainInputsChanged(old != settings_.mainInputIsStereo()); });
    settings_.mainInputRightChannelIndex.setEffect(
        [this](int old) { mainInputsChanged(old != settings_.mainInputRightChannelIndex()); });
    settings_.mainInputIsDigital.setEffect([this](bool) { run_.takeCalibrations(); });
    // Whatever is assigned, the profile in force carries the gain of now.
    settings_.calibration.setConstraint([this](CalibrationProfile profile) {
        profile.inputGain = gains_.currentInputGain();
        return profile;
    });
    settings_.calibration.setEffect([this](const CalibrationProfile&) { run_.takeCalibrations(); },
                                    Setting<CalibrationProfile>::Saving::afterEffect);
    settings_.mainInputMeasuresLoudness.setEffect([this](bool) { run_.takeLoudnessSwitches(); });
    settings_.loudnessReadout.setEffect([this](LoudnessMetric old) {
        if (old != settings_.loudnessReadout()) {
            loudnessReadoutChanged();
        }
    });
    settings_.ringOutEnabled.setEffect([this](bool) {
        if (!settings_.ringOutEnabled()) {
            run_.clearRingAlerts(UUID::main());
        }
    });
    settings_.extraChannels.setEffect([this](const auto& old) { extraChannelsChanged(old); });
}

void SettingEffects::attachMainDisplay() {
    settings_.octaveFraction.setEffect(
        [this](OctaveFraction) { run_.resetBandLevels(UUID::main()); });
    settings_.octaveNormalizedSpectrumDisplay.setEffect(
        [this](bool) { run_.resetBandLevels(UUID::main()); });
    settings_.metricMode.setEffect([this](MetricMode) { mainMetricChanged(); });
    settings_.splWeighting.setEffect([this](Weighting) { mainMetricChanged(); });
    settings_.splTimeWeighting.setEffect([this](TimeWeighting) { mainMetricChanged(); });
    settings_.peakWeighting.setEffect([this](Weighting) { mainMetricChanged(); });
}

// Of every channel.
void SettingEffects::attachMeters() {
    settings_.rtaTimeWeighting.setEffect([this](TimeWeighting) { run_.resetSmoothing(); });
    const auto startLeqOver = [this] {
        run_.configureLeq(settings_.leqWeighting(), settings_.leqIntegrationSeconds());
    };
    settings_.leqWeighting.setEffect([startLeqOver](Weighting) { startLeqOver(); });
    settings_.leqIntegrationSeconds.setEffect([startLeqOver](double) { startLeqOver(); });
}

void SettingEffects::attachLayout() {
    settings_.panelSplitFraction.setConstraint([](double fraction) {
        // In this order a fraction that is no number ends at the smallest.
        return std::min(std::max(PossibleNumbers::smallestSplitFraction, fraction),
                        PossibleNumbers::largestSplitFraction);
    });
    for (Setting<ModulePlacement>* placement :
         {&settings_.splMeterPlacement, &settings_.rtaPlacement, &settings_.spectrogramPlacement,
          &settings_.levelHistoryPlacement}) {
        placement->setEffect([this](ModulePlacement) { layout_.keepMainWindowFilled(); });
    }
    // A settings file written by hand may hold what no menu brings about.
    layout_.keepMainWindowFilled();
}

// Which channel a change of a setting is of only the list of extra channels says, and tells itself.
void SettingEffects::attachChannelChanges() {
    const auto tellAll = [this] { Q_EMIT changes_.changed(std::nullopt); };
    for (const SettingBase* setting : settings_.channelSettings()) {
        if (setting != &settings_.extraChannels) {
            QObject::connect(&setting->changes(), &ChangeNotifier::changed, &context_, tellAll);
        }
    }
    // A gain that was turned moves what a calibrated channel reads.
    QObject::connect(&gains_.deviceGains.notifier(), &ChangeNotifier::changed, &context_,
                     [this, tellAll] {
                         run_.takeCalibrations();
                         tellAll();
                     });
    QObject::connect(&devices_.available.notifier(), &ChangeNotifier::changed, &context_,
                     [this, tellAll] {
                         run_.noteDeviceChange();
                         tellAll();
                     });
    QObject::connect(&run_.sampleRate.notifier(), &ChangeNotifier::changed, &context_, tellAll);
}

void SettingEffects::selectedDeviceChanged(const std::optional<std::string>& old) {
    gains_.refreshInputVolume();
    const auto& uid = settings_.selectedDeviceUID();
    const int inputs = devices_.channelCount(uid);
    if (settings_.selectedChannelIndex() >= inputs) {
        settings_.selectedChannelIndex.set(0);
    }
    if (uid == old) {
        return;
    }
    settings_.mainInputIsDigital.set(devices_.isLikelyDigitalSource(uid));
    if (uid == TarvaneKit::systemOutputUID) {
        settings_.selectedChannelIndex.set(0);
        settings_.mainInputRightChannelIndex.set(1);
        settings_.mainInputIsStereo.set(true);
    } else if (settings_.mainInputRightChannelIndex() >= inputs) {
        settings_.mainInputIsStereo.set(false);
    }
    run_.noteSourceChange();
}

void SettingEffects::mainInputsChanged(bool changed) {
    if (changed) {
        run_.noteSourceChange();
    }
    gains_.refreshInputVolume();
}

// A channel with display settings of its own shows what it showed.
void SettingEffects::mainMetricChanged() {
    run_.metricChanged(UUID::main());
    for (const ChannelConfig& channel : settings_.extraChannels()) {
        if (!channel.display) {
            run_.metricChanged(channel.id);
        }
    }
}

// A channel's min and max are of the reading that it shows.
void SettingEffects::loudnessReadoutChanged() {
    for (const ChannelInfo& channel : channels_.channelInfos()) {
        if (channel.measuresLoudness) {
            run_.metricChanged(channel.id);
        }
    }
}

void SettingEffects::extraChannelsChanged(const std::vector<ChannelConfig>& old) {
    const auto& now = settings_.extraChannels();
    gains_.refreshDeviceGains();
    run_.takeCalibrations();
    if (loudnessSwitches(old) != loudnessSwitches(now)) {
        run_.takeLoudnessSwitches();
    }
    if (sourceSignatures(old) != sourceSignatures(now)) {
        run_.noteSourceChange();
    }
    for (const ChannelConfig& channel : now) {
        const auto before = std::ranges::find(old, channel.id, &ChannelConfig::id);
        if (before == old.end()) {
            Q_EMIT changes_.changed(channel.id);
        } else if (*before != channel) {
            extraChannelChanged(*before, channel);
            Q_EMIT changes_.changed(channel.id);
        }
    }
    for (const ChannelConfig& channel : old) {
        if (channels_.extraChannel(channel.id) == nullptr) {
            Q_EMIT changes_.changed(channel.id);
        }
    }
}

void SettingEffects::extraChannelChanged(const ChannelConfig& old, const ChannelConfig& now) {
    const auto display = [this](const ChannelConfig& channel) {
        return channel.display ? *channel.display : settings_.mainDisplay();
    };
    const ChannelDisplaySettings before = display(old);
    const ChannelDisplaySettings after = display(now);
    if (after.octaveFraction != before.octaveFraction ||
        after.octaveNormalized != before.octaveNormalized) {
        run_.resetBandLevels(now.id);
    }
    if (after.metricDiffers(before)) {
        run_.metricChanged(now.id);
    }
    if (old.ringOutEnabled && !now.ringOutEnabled) {
        run_.clearRingAlerts(now.id);
    }
}

}  // namespace TarvaneApp
