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

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>
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
#include "Metering/LevelReadings.h"
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
    /// What the main input is fed from, in words; absent while nothing runs.
    Published<std::optional<std::string>> meteredDevice;

    void start();
    void stop();
    void pause();
    void resume();
    // Sources stay as they are, and `channelSourcesChangedWhileRunning` offers a restart.

    /// A channel reads another input than before.
    void noteSourceChange();
    /// Devices came or went, or the default input is another.
    void noteDeviceChange();
    /// Takes up that offer, and begins a start under way anew if it opens other inputs than now
    /// hold.
    void restartOnOtherSources();

    /// Made at first use, so that a view may bind to a channel before it has ever run.
    const MeterChannel& meterChannel(const TarvaneKit::UUID& id) { return channelOf(id); }
    /// Null where nobody has used it.
    const MeterChannel* findMeterChannel(const TarvaneKit::UUID& id) const {
        return existingChannel(id);
    }
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
    void askForMicrophone();
    void microphoneAnswered(bool granted, int generation);
    void startAuthorized();
    void microphoneRefused();
    /// What a start was asked for.
    struct Order {
        std::vector<ChannelInfo> infos;
        std::vector<StartPlan> plans;
        StartSettings settings;
    };
    void startReturned(int generation, const Order& order, std::vector<StartResult> results);
    void finishStart(const Order& order, std::vector<StartResult> results,
                     const std::vector<std::string>& failures);
    void takeSettingsOfNow(const Order& order);
    void recordAll();
    std::string nameOfMeteredDevice() const;
    std::optional<std::string> deviceAfterRestart(const StartPlan& plan) const;
    /// The channel's source is gone, or another one begins: nothing of it is live any more.
    void clearLive(MeterChannel& channel);
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
    /// What the analysis of one channel was asked of, and where its result goes.
    struct Asked {
        MeterChannel* channel = nullptr;
        std::shared_ptr<ChannelProcessor> processor;
    };
    void analysisReturned(int generation, const std::vector<Asked>& asked,
                          std::vector<ChannelFrame>& frames);
    void publish(ChannelFrame& frame, MeterChannel& channel, TarvaneKit::Date now);
    void publishRingAlert(const std::optional<TarvaneKit::RingAlert>& alert, MeterChannel& channel,
                          TarvaneKit::Date now);
    static void publishSpectrogram(std::vector<std::vector<float>>& rows, LiveMeterData& live);
    void publishLevels(MeterChannel& channel);
    void recordLevels(MeterChannel& channel, TarvaneKit::Date now);
    static void noteHoles(const LevelReadings::Taken& taken, double nowElapsed,
                          MeterChannel& channel);
    static void updateClipState(MeterChannel& channel, bool clippedThisTick, TarvaneKit::Date now);
    static void updateInputMeter(MeterChannel& channel, float peak, TarvaneKit::Date now);

    // RunChannels.cpp
    void resetMinMax(MeterChannel& channel);
    /// The value of the displayed metric: of a lost source what stands of its session.
    double currentValue(const MeterChannel& channel) const;

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

    std::unordered_map<TarvaneKit::UUID, std::unique_ptr<MeterChannel>> channels_;
    std::vector<std::shared_ptr<CaptureGroup>> captureGroups_;
    std::vector<StartPlan> plans_;                 // of the run as it began
    std::shared_ptr<StartAttempt> attempt_;        // of the start under way
    std::vector<SourceSignature> orderedSources_;  // of that start
    int startGeneration_ = 0;                      // raised by every start and by a stop during one
    bool devicesChangedDuringStart_ = false;
    bool isAskingForMicrophone_ = false;
    /// Whom an answer that comes at any time, on any thread, finds; null when it is too late.
    struct Addressee {
        std::mutex lock;
        Run* run;
    };
    const std::shared_ptr<Addressee> addressee_;
    int runGeneration_ = 0;  // raised when a run begins and when it ends

    LevelReadings::Taken taken_;  // of the channel published last: memory for the next

    bool analysisInFlight_ = false;
    std::uint64_t tickCount_ = 0;
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
