// The display tick: 60 times a second the main thread orders the analysis of every running
// channel, and publishes what comes back. A tick that finds the last one's analysis still at
// work does nothing: no order ever queues up, and the meters, which ran on the capture thread,
// have lost nothing.

#include <algorithm>
#include <cmath>

#include "Engine/Run.h"

namespace TarvaneApp {

using TarvaneKit::Date;
using TarvaneKit::InputClipState;
using TarvaneKit::RingAlert;
using TarvaneKit::SPLHistoryRecorder;
using TarvaneKit::SPLMetric;
using TarvaneKit::UUID;

namespace {

// Full scale less 0.009 dB: converters clip a little below their last code.
constexpr float clipThreshold = 0.999F;
constexpr double clipShowsSeconds = 1.5;

constexpr double inputMeterFallDBPerSecond = 20.0;
constexpr double inputMeterHoldSeconds = 1.5;
constexpr float inputMeterSmallestPeak = 1e-9F;

// A level at or below this is silence and not a minimum.
constexpr double lowestMeasuredLevelDB = -200.0;

double secondsBetween(Date earlier, Date later) {
    return std::chrono::duration<double>(later - earlier).count();
}

}  // namespace

void Run::tick() {
    if (analysisInFlight_) {
        return;
    }
    const AnalysisSettings settings{.now = clock_.steadyNow(),
                                    .rtaTimeWeighting = settings_.rtaTimeWeighting(),
                                    .smoothingGeneration = smoothingGeneration_,
                                    .peakHoldGeneration = peakHoldGeneration_,
                                    .timingGeneration = timingGeneration_,
                                    .calibrationGeneration = calibrationGeneration_};
    std::vector<MeterChannel*> channels;
    std::vector<ChannelAnalysisRequest> requests;
    std::vector<ChannelFrame> frames;
    const auto ask = [&](const UUID& id, bool detectsRings, const ChannelDisplaySettings& display) {
        MeterChannel* const found = existingChannel(id);
        if (found == nullptr || !found->processor) {
            return;
        }
        MeterChannel& channel = *found;
        channels.push_back(&channel);
        requests.push_back({.processor = channel.processor,
                            .calibration = channel.calibration,
                            .wantsRTA = demand.contains(ChannelDemand::rta, id),
                            .wantsSpectrogram = demand.contains(ChannelDemand::spectrogram, id),
                            .ringOutEnabled = detectsRings,
                            .octaveFraction = display.octaveFraction,
                            .octaveNormalized = display.octaveNormalized,
                            .ringOutSensitivity = display.ringOutSensitivity});
        frames.push_back(std::move(channel.spareFrame));
    };
    const ChannelDisplaySettings main = settings_.mainDisplay();
    ask(UUID::main(), settings_.ringOutEnabled(), main);
    for (const ChannelConfig& config : settings_.extraChannels()) {
        if (config.isEnabled) {
            ask(config.id, config.ringOutEnabled, config.display ? *config.display : main);
        }
    }
    if (requests.empty()) {
        return;
    }
    analysisInFlight_ = true;
    const int generation = runGeneration_;
    analysisQueue_.post([this, settings, generation, channels = std::move(channels),
                         requests = std::move(requests), frames = std::move(frames)]() mutable {
        analysisLoop_.run(static_cast<int>(requests.size()), [&](int i) {
            const auto& request = requests[static_cast<std::size_t>(i)];
            ChannelFrame& frame = frames[static_cast<std::size_t>(i)];
            frame = request.processor->analyze(settings, request, std::move(frame));
        });
        mainThread_.post([this, generation, channels = std::move(channels),
                          frames = std::move(frames)]() mutable {
            analysisReturned(generation, channels, frames);
        });
    });
}

void Run::analysisReturned(int generation, const std::vector<MeterChannel*>& channels,
                           std::vector<ChannelFrame>& frames) {
    if (generation != runGeneration_) {
        return;  // of a run that has ended
    }
    analysisInFlight_ = false;
    if (!isRunning() || isPaused()) {
        return;
    }
    const Date now = clock_.steadyNow();
    for (std::size_t i = 0; i < channels.size(); ++i) {
        publish(frames[i], *channels[i], now);
        channels[i]->spareFrame = std::move(frames[i]);
    }
}

void Run::publish(ChannelFrame& frame, MeterChannel& channel, Date now) {
    LiveMeterData& live = channel.live;
    Q_EMIT live.willChange();
    updateClipState(channel, frame.peak >= clipThreshold, now);
    updateInputMeter(channel, frame.peak, now);
    if (frame.rta) {
        // What the displays had goes back with the frame, to be filled again.
        live.bandLevelsDB.swap(frame.rta->bandLevelsDB);
        live.bandPeakHoldDB.swap(frame.rta->bandPeakHoldDB);
        live.lineSpectrumDB.swap(frame.rta->lineSpectrumDB);
        live.linePeakHoldDB.swap(frame.rta->linePeakHoldDB);
        if (frame.rta->ringAlert) {
            publishRingAlert(*frame.rta->ringAlert, channel, now);
        }
    }
    publishSpectrogram(frame.spectrogramRows, live);
    if (channel.processor && channel.processor->isConfigured()) {
        publishLevels(channel);
        recordLevels(channel, now);
    }
}

void Run::publishRingAlert(const std::optional<RingAlert>& alert, MeterChannel& channel, Date now) {
    const ChannelConfig* config = list_.extraChannel(channel.id);
    if (config != nullptr ? !config->ringOutEnabled : !settings_.ringOutEnabled()) {
        return;  // switched off since the analysis was ordered
    }
    LiveMeterData& live = channel.live;
    live.currentRingAlert = alert;
    if (alert) {
        live.heldRingAlert = alert;
        channel.heldRingAlertDate = now;
    } else if (channel.heldRingAlertDate && secondsBetween(*channel.heldRingAlertDate, now) >
                                                LiveMeterData::ringAlertHoldSeconds) {
        live.heldRingAlert.reset();
        channel.heldRingAlertDate.reset();
    }
}

void Run::publishSpectrogram(std::vector<std::vector<float>>& rows, LiveMeterData& live) {
    for (auto& row : rows) {
        live.spectrogramHistory.push_back(std::move(row));
        ++live.spectrogramRowsAdded;
    }
    while (live.spectrogramHistory.size() > LiveMeterData::spectrogramMaxHistoryRows) {
        live.spectrogramHistory.pop_front();
    }
}

void Run::publishLevels(MeterChannel& channel) {
    LiveMeterData& live = channel.live;
    const SPLMetric metric = displays_.displayedMetric(channel.id);
    const double value = channel.processor->value(metric);
    live.currentSPLValueDB = value;
    live.sideSPLValuesDB = channel.processor->sideValues(metric).value_or(std::vector<double>{});
    live.loudness = channel.processor->loudnessReadings();
    if (std::isfinite(value) && value > lowestMeasuredLevelDB) {
        live.minSPLValueDB = std::min(live.minSPLValueDB, value);
        live.maxSPLValueDB = std::max(live.maxSPLValueDB, value);
    }
    live.trafficLightColor = displays_.trafficLightColor(value, channel.id);
    live.leqElapsedFraction = channel.processor->leqElapsedFraction();
}

void Run::recordLevels(MeterChannel& channel, Date now) {
    SPLHistoryRecorder& history = channel.recorder();
    if (history.sessionStartDate() &&
        history.record(channel.processor->values(history.metrics()),
                       secondsBetween(channel.levelHistoryBegan, now))) {
        ++channel.live.levelHistoryRevision;
    }
}

void Run::updateClipState(MeterChannel& channel, bool clippedThisTick, Date now) {
    if (clippedThisTick) {
        channel.lastClipDate = now;
        channel.clippedSinceReset = true;
    }
    if (channel.lastClipDate && secondsBetween(*channel.lastClipDate, now) < clipShowsSeconds) {
        channel.live.inputClipState = InputClipState::active;
    } else {
        channel.live.inputClipState =
            channel.clippedSinceReset ? InputClipState::latched : InputClipState::none;
    }
}

void Run::updateInputMeter(MeterChannel& channel, float peak, Date now) {
    LiveMeterData& live = channel.live;
    constexpr double floorDBFS = LiveMeterData::inputMeterFloorDBFS;
    const double decayDB =
        channel.lastInputMeterUpdate
            ? inputMeterFallDBPerSecond * secondsBetween(*channel.lastInputMeterUpdate, now)
            : 0.0;
    channel.lastInputMeterUpdate = now;

    const double levelDBFS = std::max(
        20.0 * std::log10(static_cast<double>(std::max(peak, inputMeterSmallestPeak))), floorDBFS);
    const double fallingDBFS = std::max(live.inputPeakDBFS - decayDB, floorDBFS);
    const double shownDBFS = std::max(levelDBFS, fallingDBFS);
    if (live.inputPeakHoldDBFS <= shownDBFS) {
        live.inputPeakHoldDBFS = shownDBFS;
        channel.inputPeakHoldDate = now;
    } else if (channel.inputPeakHoldDate &&
               secondsBetween(*channel.inputPeakHoldDate, now) > inputMeterHoldSeconds) {
        live.inputPeakHoldDBFS = std::max(shownDBFS, live.inputPeakHoldDBFS - decayDB);
    }
    live.inputPeakDBFS = shownDBFS;
}

}  // namespace TarvaneApp
