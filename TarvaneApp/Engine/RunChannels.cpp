// What a change of a setting resets or hands to the channels. Whatever reaches the analysis goes as
// a counter that travels with the next tick; a meter takes what is handed to it with its next
// block.

#include <cmath>
#include <limits>

#include "Engine/Run.h"

namespace TarvaneApp {

using TarvaneKit::CalibrationProfile;
using TarvaneKit::InputClipState;
using TarvaneKit::SPLMetric;
using TarvaneKit::UUID;
using TarvaneKit::Weighting;

namespace {

// Where bands and their holds stand before a first spectrum.
constexpr double emptyBandLevelDB = -120.0;

constexpr double noValue = -std::numeric_limits<double>::infinity();

}  // namespace

std::optional<double> Run::level(const SPLMetric& metric, const UUID& id) const {
    const MeterChannel* channel = existingChannel(id);
    // A processor that is no longer fed has a level, but not of what sounds now.
    if (channel == nullptr || !channel->processor || !channel->processor->isConfigured() ||
        !isRunning() || isPaused()) {
        return std::nullopt;
    }
    return channel->processor->value(metric);
}

void Run::takeCalibrations() {
    ++calibrationGeneration_;
    for (const ChannelInfo& info : list_.channelInfos()) {
        MeterChannel* channel = existingChannel(info.id);
        if (channel != nullptr && channel->processor) {
            channel->calibration = std::make_shared<const CalibrationProfile>(info.calibration);
            channel->processor->setCalibration(info.calibration);
        }
    }
}

// A level's min and max mean nothing of a loudness, nor the other way about.
void Run::takeLoudnessSwitches() {
    for (const ChannelInfo& info : list_.channelInfos()) {
        const MeterChannel* channel = existingChannel(info.id);
        if (channel != nullptr && channel->processor &&
            channel->processor->setMeasuresLoudness(info.measuresLoudness)) {
            metricChanged(info.id);
        }
    }
}

void Run::configureLeq(Weighting weighting, double integrationSeconds) {
    forEachProcessor([&](ChannelProcessor& processor) {
        processor.configureLeq(weighting, integrationSeconds);
    });
}

// All metrics are measured all the time, so the new one is there at once, also while no tick
// comes because metering is paused or stopped.
void Run::metricChanged(const UUID& id) {
    MeterChannel& channel = channelOf(id);
    resetMinMax(channel);
    if (channel.processor && channel.processor->isConfigured()) {
        publishLevels(channel);
    } else if (channel.live.loudness) {
        channel.live.currentSPLValueDB = currentValue(channel);
    }
}

double Run::currentValue(const MeterChannel& channel) const {
    const SPLMetric metric = displays_.displayedMetric(channel.id);
    if (channel.processor) {
        return channel.processor->value(metric);
    }
    const auto* loudness = std::get_if<SPLMetric::Loudness>(&metric.reading);
    return loudness != nullptr && channel.live.loudness ? (*channel.live.loudness)[loudness->metric]
                                                        : noValue;
}

void Run::resetMinMax(MeterChannel& channel) {
    Q_EMIT channel.live.willChange();
    recordLevels(channel, clock_.steadyNow());  // what came in counts before, and not after
    channel.live.minSPLValueDB = std::numeric_limits<double>::infinity();
    channel.live.maxSPLValueDB = -std::numeric_limits<double>::infinity();
    if (channel.processor) {
        channel.processor->resetPeakDetectors();
    }
    channel.lastClipDate.reset();
    channel.clippedSinceReset = false;
    channel.live.inputClipState = InputClipState::none;
}

void Run::resetMinMax() {
    for (const auto& [id, channel] : channels_) {
        resetMinMax(*channel);
    }
}

void Run::resetBandLevels(const UUID& id) {
    resetSmoothing();
    LiveMeterData& live = channelOf(id).live;
    Q_EMIT live.willChange();
    live.bandLevelsDB.assign(displays_.bands(id).size(), emptyBandLevelDB);
    live.bandPeakHoldDB.assign(displays_.bands(id).size(), emptyBandLevelDB);
}

void Run::resetPeakHold() {
    ++peakHoldGeneration_;
    for (const auto& [id, channel] : channels_) {
        Q_EMIT channel->live.willChange();
        channel->live.bandPeakHoldDB.assign(displays_.bands(id).size(), emptyBandLevelDB);
        channel->live.linePeakHoldDB.clear();
    }
}

void Run::resetLoudness(const UUID& id) {
    MeterChannel& channel = channelOf(id);
    if (channel.processor) {
        channel.processor->resetLoudness();
    } else {
        channel.live.loudness.reset();
    }
    resetMinMax(channel);
}

void Run::clearRingAlerts(const UUID& id) {
    MeterChannel& channel = channelOf(id);
    Q_EMIT channel.live.willChange();
    channel.live.currentRingAlert.reset();
    channel.live.heldRingAlert.reset();
    channel.heldRingAlertDate.reset();
}

}  // namespace TarvaneApp
