// Start, pause, resume, stop; and what happens when a source dies.
//
//   state      isStarting  isRunning  isPaused   entered by
//   Idle       false       false      false      launch, stop, a failed start
//   Starting   true        false      false      start
//   Running    false       true       false      the start's result, resume
//   Paused     false       true       true       pause

#include "Engine/Run.h"

#include <algorithm>
#include <limits>

namespace TarvaneApp {

using TarvaneKit::AudioIOError;
using TarvaneKit::AudioSourceLoss;
using TarvaneKit::MicrophoneAuthorization;
using TarvaneKit::UUID;

namespace {

std::string joinedLines(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) {
        text += "\n" + line;
    }
    return text;
}

bool feedsMainInput(const CaptureGroup& group) {
    return std::ranges::any_of(group.subscribers(), [](const auto& subscriber) {
        return subscriber.processor->id == UUID::main();
    });
}

}  // namespace

Run::Run(const Environment& environment)
    : audio_(environment.audio),
      clock_(environment.clock),
      tickTimer_(environment.tickTimer),
      mainThread_(environment.mainThread),
      settings_(environment.settings),
      devices_(environment.devices),
      list_(environment.channels),
      displays_(environment.displays),
      changes_(environment.changes),
      errorMessage_(environment.errorMessage) {}

Run::~Run() {
    stop();
}

MeterChannel* Run::existingChannel(const UUID& id) const {
    const auto found = channels_.find(id);
    return found != channels_.end() ? found->second.get() : nullptr;
}

MeterChannel& Run::channelOf(const UUID& id) {
    auto& channel = channels_[id];
    if (!channel) {
        channel = std::make_unique<MeterChannel>(id);
    }
    return *channel;
}

void Run::noteSourceChange() {
    if (isRunning()) {
        channelSourcesChangedWhileRunning.set(true);
    }
}

void Run::start() {
    if (isRunning() || isStarting()) {
        return;
    }
    const auto infos = list_.activeChannelInfos();
    const bool onlySystemOutput = std::ranges::all_of(infos, [](const ChannelInfo& info) {
        return info.deviceUID == TarvaneKit::systemOutputUID;
    });
    if (onlySystemOutput) {
        startAuthorized();
        return;
    }
    switch (audio_.microphoneAuthorizationStatus()) {
        case MicrophoneAuthorization::authorized:
            startAuthorized();
            break;
        case MicrophoneAuthorization::undetermined:
            audio_.requestMicrophoneAccess([this](bool granted) {
                mainThread_.post([this, granted] {
                    if (granted) {
                        startAuthorized();
                    } else {
                        microphoneRefused();
                    }
                });
            });
            break;
        case MicrophoneAuthorization::restricted:
        case MicrophoneAuthorization::denied:
            microphoneRefused();
            break;
    }
}

void Run::microphoneRefused() {
    microphonePermissionDenied.set(true);
    errorMessage_.tell(AudioIOError::microphoneAccessDenied().what());
}

void Run::startAuthorized() {
    if (isRunning() || isStarting()) {
        return;
    }
    auto infos = list_.activeChannelInfos();
    auto plans = makeStartPlans(infos, devices_.available());
    for (StartPlan& plan : plans) {
        // A device that isn't there opens as the default input.
        const bool opensUID = plan.device || plan.uid == TarvaneKit::systemOutputUID;
        plan.deviceName = devices_.displayName(opensUID ? plan.uid : std::nullopt);
    }
    StartSettings settings{.leqWeighting = settings_.leqWeighting(),
                           .leqIntegrationSeconds = settings_.leqIntegrationSeconds(),
                           .ringOutSensitivities = {}};
    for (const ChannelInfo& info : infos) {
        settings.ringOutSensitivities[info.id] = displays_.display(info.id).ringOutSensitivity;
    }
    isStarting.set(true);
    const int generation = ++startGeneration_;
    const LossHandler onLoss = [this](const std::weak_ptr<CaptureGroup>& lost) {
        mainThread_.post([this, lost] {
            if (const auto group = lost.lock()) {
                sourceLost(group);
            }
        });
    };
    startQueue_.post([this, generation, infos, plans, settings, onLoss] {
        // Shared, since the way back through the event loop copies what it carries.
        const auto results =
            std::make_shared<std::vector<StartResult>>(openPlans(plans, settings, audio_, onLoss));
        mainThread_.post([this, generation, infos, plans, results] {
            startReturned(generation, infos, plans, std::move(*results));
        });
    });
}

void Run::startReturned(int generation, const std::vector<ChannelInfo>& infos,
                        const std::vector<StartPlan>& plans, std::vector<StartResult> results) {
    const auto shutAll = [&] {
        for (StartResult& result : results) {
            if (result.group) {
                result.group->shut();
            }
        }
    };
    if (generation != startGeneration_ || !isStarting()) {
        shutAll();  // that start was cancelled
        return;
    }
    isStarting.set(false);

    std::optional<std::string> primaryError;
    std::vector<std::string> failures;
    for (std::size_t i = 0; i < plans.size(); ++i) {
        if (results[i].group) {
            continue;
        }
        if (plans[i].holdsMainInput()) {
            primaryError = results[i].error;
        } else {
            failures.push_back(plans[i].channelNames() + ": " + results[i].error);
        }
    }
    if (primaryError) {
        shutAll();
        microphonePermissionDenied.set(false);
        errorMessage_.tell(*primaryError);
        return;
    }
    finishStart(infos, plans, std::move(results), failures);
}

void Run::finishStart(const std::vector<ChannelInfo>& infos, const std::vector<StartPlan>& plans,
                      std::vector<StartResult> results, const std::vector<std::string>& failures) {
    for (const auto& [id, channel] : channels_) {
        channel->processor.reset();
    }
    captureGroups_.clear();
    for (std::size_t i = 0; i < plans.size(); ++i) {
        if (!results[i].group) {
            continue;
        }
        for (const CaptureGroup::Subscriber& subscriber : results[i].group->subscribers()) {
            MeterChannel& channel = channelOf(subscriber.processor->id);
            channel.processor = subscriber.processor;
            channel.sampleRate = subscriber.processor->sampleRate();
        }
        captureGroups_.push_back(std::move(results[i].group));
    }
    sampleRate.set(channelOf(UUID::main()).sampleRate);
    ++runGeneration_;
    analysisInFlight_ = false;
    ++smoothingGeneration_;
    for (const ChannelInfo& info : infos) {
        MeterChannel& channel = channelOf(info.id);
        Q_EMIT channel.live.willChange();
        channel.live.spectrogramHistory.clear();
        channel.recorder().reset(clock_.now());
        channel.levelHistoryBegan = clock_.steadyNow();
        channel.levelHistoryInputDescription = list_.inputDescription(info);
        ++channel.live.levelHistoryRevision;
        resetMinMax(channel);
    }
    channelSourcesChangedWhileRunning.set(false);
    isPaused.set(false);
    isRunning.set(true);
    takeCalibrations();
    takeLoudnessSwitches();
    startTicks();
    Q_EMIT changes_.changed(std::nullopt);
    if (!failures.empty()) {
        errorMessage_.tell("Some channels couldn't start:" + joinedLines(failures));
    }
    // A source may have died between its start and now, when it was nobody's yet.
    for (const auto& group : std::vector(captureGroups_)) {
        if (group->loss()) {
            sourceLost(group);
        }
    }
}

// The main input's source takes the run with it, and so does the server's end, which ends all
// sources at once. Another source leaves its own channels silent and the rest running.
void Run::sourceLost(const std::shared_ptr<CaptureGroup>& group) {
    const auto loss = group->loss();
    if (!loss || std::ranges::find(captureGroups_, group) == captureGroups_.end()) {
        return;
    }
    const bool endsRun = *loss == AudioSourceLoss::serverLost || feedsMainInput(*group);
    std::string message = description(*loss);
    if (*loss != AudioSourceLoss::serverLost) {
        message = group->deviceName() + ": " + message;
    }
    if (endsRun) {
        stop();
    } else {
        closeGroup(group);
    }
    errorMessage_.tell(message);
}

void Run::closeGroup(const std::shared_ptr<CaptureGroup>& group) {
    group->shut();
    std::erase(captureGroups_, group);
    for (const CaptureGroup::Subscriber& subscriber : group->subscribers()) {
        MeterChannel& channel = channelOf(subscriber.processor->id);
        channel.processor.reset();
        Q_EMIT channel.live.willChange();
        channel.live.currentSPLValueDB = -std::numeric_limits<double>::infinity();
        channel.live.sideSPLValuesDB.clear();
        channel.live.bandLevelsDB.clear();
        channel.live.bandPeakHoldDB.clear();
        channel.live.lineSpectrumDB.clear();
        channel.live.linePeakHoldDB.clear();
        channel.live.currentRingAlert.reset();
        channel.live.loudness.reset();
        channel.live.inputPeakDBFS = LiveMeterData::inputMeterFloorDBFS;
        channel.live.inputPeakHoldDBFS = LiveMeterData::inputMeterFloorDBFS;
        Q_EMIT changes_.changed(channel.id);
    }
}

void Run::startTicks() {
    tickTimer_.start([this] { tick(); });
}

void Run::stop() {
    if (isStarting()) {
        // The queue's work runs on; what it opens is shut when its result arrives.
        ++startGeneration_;
        isStarting.set(false);
        return;
    }
    if (!isRunning()) {
        return;
    }
    for (const auto& group : captureGroups_) {
        group->shut();
    }
    captureGroups_.clear();
    tickTimer_.stop();
    ++runGeneration_;
    channelSourcesChangedWhileRunning.set(false);
    isPaused.set(false);
    isRunning.set(false);
    Q_EMIT changes_.changed(std::nullopt);
}

void Run::pause() {
    if (!isRunning() || isPaused()) {
        return;
    }
    forEachProcessor([](ChannelProcessor& processor) { processor.setDropsIncomingAudio(true); });
    tickTimer_.stop();
    isPaused.set(true);
    Q_EMIT changes_.changed(std::nullopt);
}

void Run::resume() {
    if (!isRunning() || !isPaused()) {
        return;
    }
    forEachProcessor([](ChannelProcessor& processor) { processor.resumeAfterPause(); });
    ++timingGeneration_;
    isPaused.set(false);
    startTicks();
    Q_EMIT changes_.changed(std::nullopt);
}

}  // namespace TarvaneApp
