// The display tick: 60 times a second the main thread orders the analysis of every running
// channel, and publishes what comes back. A tick that finds the last one's analysis still at
// work does nothing: no order ever queues up, and the meters, which ran on the capture thread,
// have lost nothing.

#include <algorithm>
#include <cmath>

#include "Engine/Run.h"
#include "Metrics/InputClipState.h"

namespace TarvaneApp {

using TarvaneKit::Date;
using TarvaneKit::InputClipState;
using TarvaneKit::RingAlert;
using TarvaneKit::SPLHistoryRecorder;
using TarvaneKit::SPLMetric;
using TarvaneKit::UUID;

namespace {

constexpr double clipShowsSeconds = 1.5;

constexpr double inputMeterFallDBPerSecond = 20.0;
constexpr double inputMeterHoldSeconds = 1.5;
constexpr float inputMeterSmallestPeak = 1e-9F;

// A level at or below this is silence and not a minimum.
constexpr double lowestMeasuredLevelDB = -200.0;

// Half of the level history's first bucket.
constexpr double longestReadingSeconds = 0.05;

constexpr std::size_t mostLostAudioMarks = 1000;

void widenMinMax(LiveMeterData& live, double levelDB) {
    if (std::isfinite(levelDB) && levelDB > lowestMeasuredLevelDB) {
        live.minSPLValueDB = std::min(live.minSPLValueDB, levelDB);
        live.maxSPLValueDB = std::max(live.maxSPLValueDB, levelDB);
    }
}

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
    ++tickCount_;
    std::vector<Asked> asked;
    std::vector<ChannelAnalysisRequest> requests;
    std::vector<ChannelFrame> frames;
    const auto ask = [&](const UUID& id, bool detectsRings, const ChannelDisplaySettings& display) {
        MeterChannel* const found = existingChannel(id);
        // A processor takes one analysis at a time, whatever the list of channels says.
        if (found == nullptr || !found->processor || found->lastTick == tickCount_) {
            return;
        }
        MeterChannel& channel = *found;
        channel.lastTick = tickCount_;
        asked.push_back({.channel = &channel, .processor = channel.processor});
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
    const bool goesBack = tickCount_ % 2 == 0;
    analysisQueue_.post([this, settings, generation, goesBack, asked = std::move(asked),
                         requests = std::move(requests), frames = std::move(frames)]() mutable {
        const std::size_t last = requests.size() - 1;
        analysisLoop_.run(static_cast<int>(requests.size()), [&](int i) {
            // There and back in turn: what the cache still holds is of the channels that came last.
            const auto at = static_cast<std::size_t>(i);
            const std::size_t channel = goesBack ? last - at : at;
            const auto& request = requests[channel];
            ChannelFrame& frame = frames[channel];
            frame = request.processor->analyze(settings, request, std::move(frame));
        });
        mainThread_.post(
            [this, generation, asked = std::move(asked), frames = std::move(frames)]() mutable {
                analysisReturned(generation, asked, frames);
            });
    });
}

void Run::analysisReturned(int generation, const std::vector<Asked>& asked,
                           std::vector<ChannelFrame>& frames) {
    if (generation != runGeneration_) {
        return;  // of a run that has ended
    }
    analysisInFlight_ = false;
    if (!isRunning() || isPaused()) {
        return;
    }
    const Date now = clock_.steadyNow();
    for (std::size_t i = 0; i < asked.size(); ++i) {
        MeterChannel& channel = *asked[i].channel;
        // A source that was lost meanwhile leaves nothing to show.
        if (channel.processor == asked[i].processor) {
            publish(frames[i], channel, now);
        }
        channel.spareFrame = std::move(frames[i]);
    }
}

void Run::publish(ChannelFrame& frame, MeterChannel& channel, Date now) {
    LiveMeterData& live = channel.live;
    Q_EMIT live.willChange();
    updateClipState(channel, frame.peak >= TarvaneKit::inputClipThreshold, now);
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
        recordLevels(channel, now);
        publishLevels(channel);
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
    live.loudness = channel.processor->loudnessReadings();
    const auto* loudness = std::get_if<SPLMetric::Loudness>(&metric.reading);
    const double value = loudness != nullptr && live.loudness ? (*live.loudness)[loudness->metric]
                                                              : channel.processor->value(metric);
    live.currentSPLValueDB = value;
    live.sideSPLValuesDB = channel.processor->sideValues(metric).value_or(std::vector<double>{});
    widenMinMax(live, value);
    live.trafficLightColor = displays_.trafficLightColor(value, channel.id);
    live.leqElapsedFraction = channel.processor->leqElapsedFraction();
}

// The newest sample is of now, and the others are as much older as there are frames between. A
// display that keeps up thus records at each tick, and a late one what it has missed.
void Run::recordLevels(MeterChannel& channel, Date now) {
    SPLHistoryRecorder& history = channel.recorder();
    if (!channel.processor || !history.sessionStartDate()) {
        return;
    }
    taken_ = channel.processor->takeReadings(std::move(taken_));
    const LevelReadings::Taken& taken = taken_;
    const double nowElapsed = secondsBetween(channel.levelHistoryBegan, now);
    const std::size_t valueCount = history.metrics().size();
    const auto shown = history.index(displays_.displayedMetric(channel.id));
    bool hasClosed = false;
    for (const LevelReadings::Reading& reading : taken.readings) {
        const auto values = taken.valuesOf(reading, valueCount);
        if (shown) {
            widenMinMax(channel.live, values[static_cast<std::size_t>(*shown)]);
        }
        const double behind =
            static_cast<double>(taken.frame - reading.endFrame) / channel.sampleRate;
        const double end = std::max(nowElapsed - behind, channel.recordedUpTo);
        const double begin =
            std::max(end - static_cast<double>(reading.frameCount) / channel.sampleRate,
                     channel.recordedUpTo);
        // A block that is longer than a bucket leaves none of its buckets empty.
        for (double steps = std::floor((end - begin) / longestReadingSeconds); steps >= 0.0;
             steps -= 1.0) {
            hasClosed |= history.record(values, end - steps * longestReadingSeconds);
        }
        channel.recordedUpTo = end;
    }
    noteHoles(taken, nowElapsed, channel);
    if (hasClosed) {
        ++channel.live.levelHistoryRevision;
    }
}

void Run::noteHoles(const LevelReadings::Taken& taken, double nowElapsed, MeterChannel& channel) {
    auto& lost = channel.live.lostAudio;
    for (const LevelReadings::Hole& hole : taken.holes) {
        const double behind = static_cast<double>(taken.frame - hole.endFrame) / channel.sampleRate;
        const LostAudio mark{.elapsed = std::max(nowElapsed - behind, 0.0),
                             .seconds = static_cast<double>(hole.frameCount) / channel.sampleRate};
        if (lost.size() < mostLostAudioMarks) {
            lost.push_back(mark);
        } else {
            lost.back().seconds += mark.seconds;
            ++lost.back().count;
        }
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
