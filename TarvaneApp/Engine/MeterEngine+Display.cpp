// What a channel shows: its display settings, its metric, unit and colour, its min and max.

#include <algorithm>
#include <limits>

#include "Engine/MeterEngine.h"

namespace TarvaneApp {

using TarvaneKit::CalibrationProfile;
using TarvaneKit::CalibrationSource;
using TarvaneKit::InputClipState;
using TarvaneKit::OctaveBand;
using TarvaneKit::RGBAColor;
using TarvaneKit::SPLMetric;
using TarvaneKit::UUID;
using TarvaneKit::Weighting;

namespace {

// The audible range, which every frequency axis spans.
constexpr double lowestHz = 20.0;
constexpr double highestHz = 20000.0;

// Where bands and their holds stand before a first spectrum.
constexpr double emptyBandLevelDB = -120.0;

}  // namespace

ChannelDisplaySettings MeterEngine::mainDisplay() const {
    ChannelDisplaySettings settings;
    settings.showsDBFS = splReadoutShowsDBFS();
    settings.viewMode = viewMode();
    settings.octaveFraction = octaveFraction();
    settings.octaveNormalized = octaveNormalizedSpectrumDisplay();
    settings.showsPeakHold = showPeakHold();
    settings.peakHoldColor = rtaPeakColor();
    settings.ringOutSensitivity = ringOutSensitivity();
    settings.targetCurveName = selectedTargetCurveName();
    settings.targetCurveReferenceDB = targetCurveReferenceDB();
    settings.targetCurveReferenceDBFS = targetCurveReferenceDBFS();
    settings.metricMode = metricMode();
    settings.splWeighting = splWeighting();
    settings.splTimeWeighting = splTimeWeighting();
    settings.peakWeighting = peakWeighting();
    return settings;
}

ChannelDisplaySettings MeterEngine::display(const UUID& id) const {
    const ChannelConfig* channel = extraChannel(id);
    return channel != nullptr && channel->display ? *channel->display : mainDisplay();
}

void MeterEngine::updateDisplay(const UUID& id,
                                const std::function<void(ChannelDisplaySettings&)>& edit) {
    const ChannelDisplaySettings before = display(id);
    ChannelDisplaySettings after = before;
    edit(after);
    if (after == before) {
        return;
    }
    if (id != UUID::main()) {
        if (extraChannel(id) == nullptr) {
            return;
        }
        updateChannel(id, [&](ChannelConfig& channel) { channel.display = after; });
    } else {
        if (after.metricDiffers(before)) {
            pinChannelsFollowingMain(before);
        }
        const auto assign = [](auto& setting, const auto& value) {
            if (setting() != value) {
                setting.set(value);
            }
        };
        assign(splReadoutShowsDBFS, after.showsDBFS);
        assign(viewMode, after.viewMode);
        assign(octaveFraction, after.octaveFraction);
        assign(octaveNormalizedSpectrumDisplay, after.octaveNormalized);
        assign(showPeakHold, after.showsPeakHold);
        assign(rtaPeakColor, after.peakHoldColor);
        assign(ringOutSensitivity, after.ringOutSensitivity);
        assign(selectedTargetCurveName, after.targetCurveName);
        assign(targetCurveReferenceDB, after.targetCurveReferenceDB);
        assign(targetCurveReferenceDBFS, after.targetCurveReferenceDBFS);
        assign(metricMode, after.metricMode);
        assign(splWeighting, after.splWeighting);
        assign(splTimeWeighting, after.splTimeWeighting);
        assign(peakWeighting, after.peakWeighting);
    }
    if (after.octaveFraction != before.octaveFraction ||
        after.octaveNormalized != before.octaveNormalized) {
        resetBandLevels(id);
    }
    if (after.metricDiffers(before)) {
        metricChanged(meterChannel(id));
    }
}

// A change of the main metric doesn't silently change what the other channels show.
void MeterEngine::pinChannelsFollowingMain(const ChannelDisplaySettings& to) {
    auto channels = extraChannels();
    bool pinned = false;
    for (ChannelConfig& channel : channels) {
        if (!channel.display) {
            channel.display = to;
            pinned = true;
        }
    }
    if (pinned) {
        extraChannels.set(std::move(channels));
    }
}

SPLMetric MeterEngine::meterMetric(const UUID& id) const {
    const ChannelDisplaySettings settings = display(resolvedChannelID(id));
    switch (settings.metricMode) {
        case MetricMode::spl:
            return SPLMetric::spl(settings.splWeighting, settings.splTimeWeighting);
        case MetricMode::peak:
            return SPLMetric::peak(settings.peakWeighting);
        case MetricMode::leq:
            break;
    }
    return SPLMetric::leq(ChannelProcessor::userLeqID);
}

SPLMetric MeterEngine::displayedMetric(const UUID& id) const {
    return measuresLoudness(id) ? SPLMetric::loudness(loudnessReadout()) : meterMetric(id);
}

SPLMetric MeterEngine::historyMetric(const UUID& id) const {
    return measuresLoudness(id) ? SPLMetric::loudness(TarvaneKit::LoudnessMetric::shortTerm)
                                : meterMetric(id);
}

bool MeterEngine::measuresLoudness(const UUID& id) const {
    if (id == UUID::main()) {
        return mainInputMeasuresLoudness();
    }
    const ChannelConfig* channel = extraChannel(id);
    return channel != nullptr && channel->measuresLoudness;
}

const std::vector<OctaveBand>& MeterEngine::bands(const UUID& id) {
    const TarvaneKit::OctaveFraction fraction = display(id).octaveFraction;
    auto& bands = bandCache_[fraction];
    if (bands.empty()) {
        bands = TarvaneKit::OctaveBands::standardBands(fraction, lowestHz, highestHz);
    }
    return bands;
}

std::optional<MeterEngine::LevelScale> MeterEngine::levelScale(const UUID& id) const {
    const auto scale = [](const CalibrationProfile& profile,
                          const std::optional<TarvaneKit::InputGainState>& gain) {
        return LevelScale{profile.calibrationSource() != CalibrationSource::none,
                          profile.broadbandOffsetDB(gain)};
    };
    if (id == UUID::main()) {
        return mainInputIsDigital() ? LevelScale{} : scale(calibration(), currentInputGain());
    }
    const ChannelConfig* channel = extraChannel(id);
    if (channel == nullptr) {
        return std::nullopt;
    }
    return channel->isDigital || !channel->calibration
               ? LevelScale{}
               : scale(*channel->calibration, inputGain(*channel));
}

bool MeterEngine::isCalibrated(const UUID& id) const {
    return levelScale(id).value_or(LevelScale{}).isCalibrated;
}

RTAScale MeterEngine::rtaScale(const UUID& id) const {
    return isCalibrated(id) && !display(id).showsDBFS ? RTAScale::spl : RTAScale::dbfs;
}

ReadoutUnit MeterEngine::readoutUnit(const UUID& id) const {
    if (measuresLoudness(id)) {
        return ReadoutUnit::lufs;
    }
    return rtaScale(id) == RTAScale::spl ? ReadoutUnit::spl : ReadoutUnit::dbfs;
}

std::string MeterEngine::levelUnitLabel(const UUID& id) const {
    const ReadoutUnit unit = readoutUnit(id);
    return unit == ReadoutUnit::spl ? "dB" : std::string(TarvaneKit::rawValue(unit));
}

double MeterEngine::splReadoutDisplayOffsetDB(const UUID& id) const {
    return display(id).showsDBFS && !measuresLoudness(id)
               ? levelScale(id).value_or(LevelScale{}).offsetDB
               : 0.0;
}

MeterEngine::ActiveTrafficLight MeterEngine::activeTrafficLight(const UUID& id) const {
    const auto scale = levelScale(id);
    if (!scale) {
        return {trafficLightConfigDBFS(), 0.0};
    }
    if (measuresLoudness(id)) {
        return {loudnessTarget().trafficLight(loudnessColors()), 0.0};
    }
    if (rtaScale(id) == RTAScale::spl) {
        return {trafficLightConfig(), 0.0};
    }
    // The digital thresholds always judge the digital level.
    return {trafficLightConfigDBFS(), scale->offsetDB};
}

RGBAColor MeterEngine::trafficLightColor(double levelDB, const UUID& id) const {
    const ActiveTrafficLight light = activeTrafficLight(id);
    return light.config.color(levelDB - light.offsetDB);
}

void MeterEngine::resetMinMax(MeterChannel& channel) {
    Q_EMIT channel.live.willChange();
    channel.live.minSPLValueDB = std::numeric_limits<double>::infinity();
    channel.live.maxSPLValueDB = -std::numeric_limits<double>::infinity();
    if (channel.processor) {
        channel.processor->resetPeakDetectors();
    }
    channel.lastClipDate.reset();
    channel.clippedSinceReset = false;
    channel.live.inputClipState = InputClipState::none;
}

void MeterEngine::resetMinMax() {
    for (const auto& [id, channel] : meterChannels_) {
        resetMinMax(*channel);
    }
}

void MeterEngine::resetMinMax(const UUID& id) {
    resetMinMax(meterChannel(id));
}

// All metrics are measured all the time, so the new one is there at once, also while no tick
// comes because metering is paused or stopped.
void MeterEngine::metricChanged(MeterChannel& channel) {
    resetMinMax(channel);
    if (channel.processor && channel.processor->isConfigured()) {
        publishLevels(channel);
    }
}

// A channel with display settings of its own shows what it showed.
void MeterEngine::mainMetricChanged() {
    metricChanged(meterChannel(UUID::main()));
    for (const ChannelConfig& config : extraChannels()) {
        if (!config.display) {
            metricChanged(meterChannel(config.id));
        }
    }
}

// The displays have the new number of bands at once, ahead of the next analysis.
void MeterEngine::resetBandLevels(const UUID& id) {
    ++smoothingGeneration_;
    LiveMeterData& live = meterChannel(id).live;
    Q_EMIT live.willChange();
    live.bandLevelsDB.assign(bands(id).size(), emptyBandLevelDB);
    live.bandPeakHoldDB.assign(bands(id).size(), emptyBandLevelDB);
}

void MeterEngine::resetPeakHold() {
    ++peakHoldGeneration_;
    for (const auto& [id, channel] : meterChannels_) {
        Q_EMIT channel->live.willChange();
        channel->live.bandPeakHoldDB.assign(bands(id).size(), emptyBandLevelDB);
        channel->live.linePeakHoldDB.clear();
    }
}

void MeterEngine::resetLoudness(const UUID& id) {
    MeterChannel& channel = meterChannel(id);
    if (channel.processor) {
        channel.processor->resetLoudness();
    }
    resetMinMax(channel);
}

void MeterEngine::clearRingAlerts(const UUID& id) {
    MeterChannel& channel = meterChannel(id);
    Q_EMIT channel.live.willChange();
    channel.live.currentRingAlert.reset();
    channel.live.heldRingAlert.reset();
    channel.heldRingAlertDate.reset();
}

void MeterEngine::configureLeq(Weighting weighting, double integrationSeconds) {
    leqWeighting.set(weighting);
    leqIntegrationSeconds.set(integrationSeconds);
    for (const auto& [id, channel] : meterChannels_) {
        if (channel->processor) {
            channel->processor->configureLeq(weighting, integrationSeconds);
        }
    }
}

}  // namespace TarvaneApp
