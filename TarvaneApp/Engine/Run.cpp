// Start, pause, resume, stop; and what happens when a source dies.
//
//   state      isStarting  isRunning  isPaused   entered by
//   Idle       false       false      false      launch, stop, a failed start
//   Starting   true        false      false      start
//   Running    false       true       false      the start's result, resume
//   Paused     false       true       true       pause

#include "Engine/Run.h"

#include <algorithm>

namespace TarvaneApp {

using TarvaneKit::AudioInputDevice;
using TarvaneKit::AudioIOError;
using TarvaneKit::AudioSourceLoss;
using TarvaneKit::Date;
using TarvaneKit::InputClipState;
using TarvaneKit::LoudnessReadings;
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
      errorMessage_(environment.errorMessage),
      addressee_(std::make_shared<Addressee>()) {
    addressee_->run = this;
}

Run::~Run() {
    {
        const std::lock_guard hold(addressee_->lock);
        addressee_->run = nullptr;
    }
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

void Run::noteDeviceChange() {
    devicesChangedDuringStart_ = isStarting();
    if (!isRunning() || channelSourcesChangedWhileRunning()) {
        return;
    }
    const bool opensAnother = std::ranges::any_of(plans_, [this](const StartPlan& plan) {
        const auto after = deviceAfterRestart(plan);
        const auto group = std::ranges::find_if(captureGroups_, [&](const auto& open) {
            return std::ranges::any_of(open->subscribers(), [&](const auto& subscriber) {
                return subscriber.processor->id == plan.members.front().id;
            });
        });
        const bool isOpen = group != captureGroups_.end();
        const auto device = isOpen ? (*group)->device() : std::nullopt;
        return after && (!isOpen || (device && device->uid != *after));
    });
    if (opensAnother) {
        channelSourcesChangedWhileRunning.set(true);
    }
}

void Run::restartOnOtherSources() {
    const bool opensOthers =
        isStarting() && orderedSources_ != sourceSignatures(list_.activeChannelInfos());
    if (channelSourcesChangedWhileRunning() || opensOthers) {
        stop();
        start();
    }
}

// Absent where there is none to open.
std::optional<std::string> Run::deviceAfterRestart(const StartPlan& plan) const {
    if (plan.uid == TarvaneKit::systemOutputUID || (plan.uid && devices_.listed(*plan.uid))) {
        return plan.uid;
    }
    const AudioInputDevice* byDefault = devices_.defaultInput();
    const bool opensDefault = !plan.uid || plan.holdsMainInput();
    return opensDefault && byDefault != nullptr ? std::optional(byDefault->uid) : std::nullopt;
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
            askForMicrophone();
            break;
        case MicrophoneAuthorization::restricted:
        case MicrophoneAuthorization::denied:
            microphoneRefused();
            break;
    }
}

// The answer may come when nobody waits for it any more: after a stop, or after the end of this.
void Run::askForMicrophone() {
    isAskingForMicrophone_ = true;
    audio_.requestMicrophoneAccess(
        [addressee = addressee_, generation = ++startGeneration_](bool granted) {
            const std::lock_guard hold(addressee->lock);
            if (Run* const run = addressee->run) {
                run->mainThread_.post(
                    [run, granted, generation] { run->microphoneAnswered(granted, generation); });
            }
        });
}

void Run::microphoneAnswered(bool granted, int generation) {
    if (!isAskingForMicrophone_ || generation != startGeneration_) {
        return;
    }
    isAskingForMicrophone_ = false;
    if (granted) {
        startAuthorized();
    } else {
        microphoneRefused();
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
    Order order;
    order.infos = list_.activeChannelInfos();
    order.plans = makeStartPlans(order.infos, devices_.available());
    for (StartPlan& plan : order.plans) {
        // A device that isn't there opens as the default input.
        const bool opensUID = plan.device || plan.uid == TarvaneKit::systemOutputUID;
        plan.deviceName = devices_.displayName(opensUID ? plan.uid : std::nullopt);
    }
    order.settings = {.leqWeighting = settings_.leqWeighting(),
                      .leqIntegrationSeconds = settings_.leqIntegrationSeconds(),
                      .ringOutSensitivities = {}};
    for (const ChannelInfo& info : order.infos) {
        order.settings.ringOutSensitivities[info.id] =
            displays_.display(info.id).ringOutSensitivity;
    }
    orderedSources_ = sourceSignatures(order.infos);
    isStarting.set(true);
    devicesChangedDuringStart_ = false;
    const int generation = ++startGeneration_;
    attempt_ = std::make_shared<StartAttempt>();
    // The queue outlives this, and may hold a source that is open still.
    const LossHandler onLoss = [this,
                                &queue = mainThread_](const std::weak_ptr<CaptureGroup>& lost) {
        queue.post([this, lost] {
            if (const auto group = lost.lock()) {
                sourceLost(group);
            }
        });
    };
    startQueue_.post([this, generation, attempt = attempt_, order = std::move(order), onLoss] {
        if (attempt->isCancelled()) {
            return;
        }
        // Shared, since the way back through the event loop copies what it carries.
        const auto results = std::make_shared<std::vector<StartResult>>(
            openPlans(order.plans, order.settings, audio_, onLoss, *attempt));
        mainThread_.post([this, generation, order, results] {
            startReturned(generation, order, std::move(*results));
        });
    });
}

void Run::startReturned(int generation, const Order& order, std::vector<StartResult> results) {
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
    attempt_.reset();

    std::optional<std::string> primaryError;
    std::vector<std::string> failures;
    for (std::size_t i = 0; i < order.plans.size(); ++i) {
        if (results[i].group) {
            continue;
        }
        if (order.plans[i].holdsMainInput()) {
            primaryError = results[i].error;
        } else {
            failures.push_back(order.plans[i].channelNames() + ": " + results[i].error);
        }
    }
    if (primaryError) {
        shutAll();
        microphonePermissionDenied.set(false);
        errorMessage_.tell(*primaryError);
        return;
    }
    finishStart(order, std::move(results), failures);
}

void Run::finishStart(const Order& order, std::vector<StartResult> results,
                      const std::vector<std::string>& failures) {
    for (const auto& [id, channel] : channels_) {
        channel->processor.reset();
        clearLive(*channel);
        channel->live.loudness.reset();
    }
    captureGroups_.clear();
    for (StartResult& result : results) {
        if (!result.group) {
            continue;
        }
        for (const CaptureGroup::Subscriber& subscriber : result.group->subscribers()) {
            MeterChannel& channel = channelOf(subscriber.processor->id);
            channel.processor = subscriber.processor;
            channel.sampleRate = subscriber.processor->sampleRate();
        }
        captureGroups_.push_back(std::move(result.group));
    }
    plans_ = order.plans;
    sampleRate.set(channelOf(UUID::main()).sampleRate);
    meteredDevice.set(nameOfMeteredDevice());
    ++runGeneration_;
    analysisInFlight_ = false;
    ++smoothingGeneration_;
    for (const ChannelInfo& info : order.infos) {
        MeterChannel& channel = channelOf(info.id);
        Q_EMIT channel.live.willChange();
        channel.live.spectrogramHistory.clear();
        channel.live.lostAudio.clear();
        channel.recorder().reset(clock_.now());
        channel.levelHistoryBegan = clock_.steadyNow();
        channel.recordedUpTo = 0.0;
        channel.levelHistoryInputDescription = list_.inputDescription(info);
        ++channel.live.levelHistoryRevision;
        if (channel.processor) {
            channel.processor->takeReadings();  // of before the session
        }
        resetMinMax(channel);
    }
    channelSourcesChangedWhileRunning.set(false);
    isPaused.set(false);
    isRunning.set(true);
    takeSettingsOfNow(order);
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

// The channels began with what was set when the start was asked for.
void Run::takeSettingsOfNow(const Order& order) {
    takeCalibrations();
    takeLoudnessSwitches();
    if (order.settings.leqWeighting != settings_.leqWeighting() ||
        order.settings.leqIntegrationSeconds != settings_.leqIntegrationSeconds()) {
        configureLeq(settings_.leqWeighting(), settings_.leqIntegrationSeconds());
    }
    if (orderedSources_ != sourceSignatures(list_.activeChannelInfos())) {
        noteSourceChange();
    }
    if (devicesChangedDuringStart_) {
        noteDeviceChange();
    }
}

std::string Run::nameOfMeteredDevice() const {
    const auto group = std::ranges::find_if(captureGroups_,
                                            [](const auto& open) { return feedsMainInput(*open); });
    const auto plan =
        std::ranges::find_if(plans_, [](const StartPlan& each) { return each.holdsMainInput(); });
    const std::string& name = (*group)->deviceName();
    if (plan->uid == TarvaneKit::systemOutputUID) {
        return InputDevices::defaultOutputInWords(name);
    }
    if (!(*group)->device() || plan->device) {
        return name;
    }
    return InputDevices::defaultInputInWords(name, plan->uid.has_value());
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
    const Date now = clock_.steadyNow();
    for (const CaptureGroup::Subscriber& subscriber : group->subscribers()) {
        MeterChannel& channel = channelOf(subscriber.processor->id);
        Q_EMIT channel.live.willChange();
        recordLevels(channel, now);
        channel.live.loudness = channel.processor->loudnessReadings();
        channel.processor.reset();
        clearLive(channel);
        Q_EMIT changes_.changed(channel.id);
    }
}

// Levels of the session stay: its MIN and MAX, its histories, and of the loudness what is of the
// whole session.
void Run::clearLive(MeterChannel& channel) {
    LiveMeterData& live = channel.live;
    Q_EMIT live.willChange();
    if (live.loudness) {
        live.loudness->momentary = LoudnessReadings::noValue;
        live.loudness->shortTerm = LoudnessReadings::noValue;
    }
    live.currentSPLValueDB = currentValue(channel);
    live.trafficLightColor = displays_.trafficLightColor(live.currentSPLValueDB, channel.id);
    live.leqElapsedFraction = 0.0;
    live.sideSPLValuesDB.clear();
    live.bandLevelsDB.clear();
    live.bandPeakHoldDB.clear();
    live.lineSpectrumDB.clear();
    live.linePeakHoldDB.clear();
    live.currentRingAlert.reset();
    live.heldRingAlert.reset();
    channel.heldRingAlertDate.reset();
    live.inputPeakDBFS = LiveMeterData::inputMeterFloorDBFS;
    live.inputPeakHoldDBFS = LiveMeterData::inputMeterFloorDBFS;
    channel.lastInputMeterUpdate.reset();
    channel.inputPeakHoldDate.reset();
    live.inputClipState = InputClipState::none;
    channel.lastClipDate.reset();
    channel.clippedSinceReset = false;
}

// What came in since the last tick. The caller tells that something has changed.
void Run::recordAll() {
    const Date now = clock_.steadyNow();
    for (const auto& [id, channel] : channels_) {
        recordLevels(*channel, now);
    }
}

void Run::startTicks() {
    tickTimer_.start([this] { tick(); });
}

void Run::stop() {
    isAskingForMicrophone_ = false;
    if (isStarting()) {
        // What opens ends; what is open already is shut when the result arrives.
        attempt_->cancel();
        attempt_.reset();
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
    recordAll();
    captureGroups_.clear();
    tickTimer_.stop();
    meteredDevice.set(std::nullopt);
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
    recordAll();
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
