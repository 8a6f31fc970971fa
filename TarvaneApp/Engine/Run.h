// A measurement from start to stop: opening and losing sources, the display tick, the publication
// of its results; and the channels' readings, which outlive it.
//
//   Run.cpp           start, pause, resume, stop; sources that die
//   RunTick.cpp       60 times a second: analysis of every running channel, publication
//   RunChannels.cpp   what a change of a setting resets or hands to the running channels
//
// Work leaves the main thread twice, for opening sources (`startQueue_`) and for a tick's
// analysis (`analysisQueue_`), always with values alone, and comes back through the event loop
// carrying the generation it began with; what comes back late is let go of.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "AudioIO/AudioSystem.h"
#include "Core/SerialQueue.h"
#include "Engine/ChannelChanges.h"
#include "Engine/ChannelDemand.h"
#include "Engine/ChannelDisplays.h"
#include "Engine/ChannelList.h"
#include "Engine/Clock.h"
#include "Engine/ErrorMessage.h"
#include "Engine/InputDevices.h"
#include "Engine/MainThreadQueue.h"
#include "Engine/MeterChannel.h"
#include "Engine/TickTimer.h"
#include "Metering/AnalysisSettings.h"
#include "Metering/CaptureGroup.h"
#include "Metering/ParallelLoop.h"
#include "Metering/StartPlan.h"
#include "Settings/Published.h"

namespace TarvaneApp {

class Run {
  public:
    /// All of it outlives this.
    struct Environment {
        TarvaneKit::AudioSystem& audio;
        const Clock& clock;
        TickTimer& tickTimer;
        MainThreadQueue& mainThread;
        const MeterSettings& settings;
        const InputDevices& devices;
        const ChannelList& channels;
        const ChannelDisplays& displays;
        ChannelChanges& changes;
        ErrorMessage& errorMessage;
    };
    explicit Run(const Environment& environment);
    /// Shuts every source. Waits for a start that is under way.
    ~Run();

    Published<bool> isRunning{false};
    Published<bool> isStarting{false};
    Published<bool> isPaused{false};
    Published<bool> microphonePermissionDenied{false};
    /// A channel's device or input was changed since the start: offer a restart.
    Published<bool> channelSourcesChangedWhileRunning{false};
    /// The main channel's rate in Hz; 48000 until the first start.
    Published<double> sampleRate{48000.0};

    void start();
    void stop();
    void pause();
    void resume();
    /// Sources stay as they are; `channelSourcesChangedWhileRunning` offers a restart.
    void noteSourceChange();

    /// Made at first use, so that a view may bind to a channel before it has ever run.
    const MeterChannel& meterChannel(const TarvaneKit::UUID& id) { return channelOf(id); }
    /// The channel's level now, of samples that are coming in; absent when none are.
    std::optional<double> level(const TarvaneKit::SPLMetric& metric,
                                const TarvaneKit::UUID& id) const;

    ChannelDemandCounts demand;

    // What a change of a setting does to the channels, running or not.

    /// Every channel's profile anew, from the list of channels.
    void takeCalibrations();
    void takeLoudnessSwitches();
    void configureLeq(TarvaneKit::Weighting weighting, double integrationSeconds);
    /// The channel's reading is another one: min and max start over, and it is shown at once.
    void metricChanged(const TarvaneKit::UUID& id);
    void resetMinMax();
    void resetMinMax(const TarvaneKit::UUID& id) { resetMinMax(channelOf(id)); }
    void resetSmoothing() { ++smoothingGeneration_; }
    /// The displays have the new number of bands at once, ahead of the next analysis.
    void resetBandLevels(const TarvaneKit::UUID& id);
    void resetPeakHold();
    void resetLoudness(const TarvaneKit::UUID& id);
    void clearRingAlerts(const TarvaneKit::UUID& id);

  private:
    friend struct TarvaneTests::EngineInsides;

    // Run.cpp
    void startAuthorized();
    void microphoneRefused();
    void startReturned(int generation, const std::vector<ChannelInfo>& infos,
                       const std::vector<StartPlan>& plans, std::vector<StartResult> results);
    void finishStart(const std::vector<ChannelInfo>& infos, const std::vector<StartPlan>& plans,
                     std::vector<StartResult> results, const std::vector<std::string>& failures);
    void sourceLost(const std::shared_ptr<CaptureGroup>& group);
    void closeGroup(const std::shared_ptr<CaptureGroup>& group);
    void startTicks();
    template <class Action>
    void forEachProcessor(Action action) {
        for (const auto& [id, channel] : channels_) {
            if (channel->processor) {
                action(*channel->processor);
            }
        }
    }
    /// One that is there, or null.
    MeterChannel* existingChannel(const TarvaneKit::UUID& id) const;
    MeterChannel& channelOf(const TarvaneKit::UUID& id);

    // RunTick.cpp
    void tick();
    void analysisReturned(int generation, const std::vector<MeterChannel*>& channels,
                          std::vector<ChannelFrame>& frames);
    void publish(ChannelFrame& frame, MeterChannel& channel, TarvaneKit::Date now);
    void publishRingAlert(const std::optional<TarvaneKit::RingAlert>& alert, MeterChannel& channel,
                          TarvaneKit::Date now);
    static void publishSpectrogram(std::vector<std::vector<float>>& rows, LiveMeterData& live);
    void publishLevels(MeterChannel& channel);
    static void recordLevels(MeterChannel& channel, TarvaneKit::Date now);
    static void updateClipState(MeterChannel& channel, bool clippedThisTick, TarvaneKit::Date now);
    static void updateInputMeter(MeterChannel& channel, float peak, TarvaneKit::Date now);

    // RunChannels.cpp
    static void resetMinMax(MeterChannel& channel);

    TarvaneKit::AudioSystem& audio_;
    const Clock& clock_;
    TickTimer& tickTimer_;
    MainThreadQueue& mainThread_;
    const MeterSettings& settings_;
    const InputDevices& devices_;
    const ChannelList& list_;
    const ChannelDisplays& displays_;
    ChannelChanges& changes_;
    ErrorMessage& errorMessage_;

    std::map<TarvaneKit::UUID, std::unique_ptr<MeterChannel>> channels_;
    std::vector<std::shared_ptr<CaptureGroup>> captureGroups_;
    int startGeneration_ = 0;  // raised by every start and by a stop during one
    int runGeneration_ = 0;    // raised when a run begins and when it ends

    bool analysisInFlight_ = false;
    int smoothingGeneration_ = 0;
    int peakHoldGeneration_ = 0;
    int timingGeneration_ = 0;
    int calibrationGeneration_ = 0;

    // Last, so that their work ends before anything it could reach is gone.
    ParallelLoop analysisLoop_;
    TarvaneKit::SerialQueue analysisQueue_{"org.brenlow.tarvane.analysis"};
    TarvaneKit::SerialQueue startQueue_{"org.brenlow.tarvane.start"};
};

}  // namespace TarvaneApp
