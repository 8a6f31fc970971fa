// The display tick: 60 times a second the main thread orders the analysis of every running
// channel, and publishes what comes back. A tick that finds the last one's analysis still at
// work does nothing: no order ever queues up, and the meters, which ran on the capture thread,
// have lost nothing.

#include <algorithm>
#include <cmath>

#include "MeterEngine.h"

namespace TarvaneApp {

using TarvaneKit::Date;
using TarvaneKit::InputClipState;
using TarvaneKit::SPLMetric;

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

void MeterEngine::tick() {
    if (analysisInFlight_) {
        return;
    }
    const AnalysisSettings settings{.smoothingGeneration = smoothingGeneration_,
                                    .peakHoldGeneration = peakHoldGeneration_,
                                    .timingGeneration = timingGeneration_,
                                    .calibrationGeneration = calibrationGeneration_};
    std::vector<MeterChannel*> channels;
    std::vector<ChannelAnalysisRequest> requests;
    for (const ChannelInfo& info : activeChannelInfos()) {
        const auto found = meterChannels_.find(info.id);
        if (found != meterChannels_.end() && found->second->processor) {
            channels.push_back(found->second.get());
            requests.push_back({.processor = found->second->processor});
        }
    }
    if (requests.empty()) {
        return;
    }
    analysisInFlight_ = true;
    const int generation = runGeneration_;
    analysisQueue_.post([this, settings, generation, channels = std::move(channels),
                         requests = std::move(requests)] {
        std::vector<ChannelFrame> frames(requests.size());
        analysisLoop_.run(static_cast<int>(requests.size()), [&](int i) {
            const auto& request = requests[static_cast<std::size_t>(i)];
            frames[static_cast<std::size_t>(i)] = request.processor->analyze(settings, request);
        });
        mainThread_.post([this, generation, channels, frames = std::move(frames)] {
            analysisReturned(generation, channels, frames);
        });
    });
}

void MeterEngine::analysisReturned(int generation, const std::vector<MeterChannel*>& channels,
                                   const std::vector<ChannelFrame>& frames) {
    if (generation != runGeneration_) {
        return;  // of a run that has ended
    }
    analysisInFlight_ = false;
    if (!isRunning() || isPaused()) {
        return;
    }
    const Date now = clock_.now();
    for (std::size_t i = 0; i < channels.size(); ++i) {
        publish(frames[i], *channels[i], now);
    }
}

void MeterEngine::publish(const ChannelFrame& frame, MeterChannel& channel, Date now) {
    Q_EMIT channel.live.willChange();
    updateClipState(channel, frame.peak >= clipThreshold, now);
    updateInputMeter(channel, frame.peak, now);
    if (channel.processor && channel.processor->isConfigured()) {
        publishLevels(channel);
    }
}

void MeterEngine::publishLevels(MeterChannel& channel) {
    LiveMeterData& live = channel.live;
    const SPLMetric metric = displayedMetric(channel.id);
    const double value = channel.processor->value(metric);
    live.currentSPLValueDB = value;
    live.sideSPLValuesDB = channel.processor->sideValues(metric).value_or(std::vector<double>{});
    if (std::isfinite(value) && value > lowestMeasuredLevelDB) {
        live.minSPLValueDB = std::min(live.minSPLValueDB, value);
        live.maxSPLValueDB = std::max(live.maxSPLValueDB, value);
    }
    live.trafficLightColor = trafficLightColor(value, channel.id);
    live.leqElapsedFraction = channel.processor->leqElapsedFraction();
}

void MeterEngine::updateClipState(MeterChannel& channel, bool clippedThisTick, Date now) {
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

void MeterEngine::updateInputMeter(MeterChannel& channel, float peak, Date now) {
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
