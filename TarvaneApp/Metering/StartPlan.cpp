#include "Metering/StartPlan.h"

#include <algorithm>
#include <thread>

#include "Core/UUID.h"

namespace TarvaneApp {

using TarvaneKit::AudioInputDevice;
using TarvaneKit::AudioSystem;
using TarvaneKit::MultiChannelAudioSource;
using TarvaneKit::UUID;

namespace {

std::unique_ptr<MultiChannelAudioSource> makeSource(const StartPlan& plan, AudioSystem& audio) {
    if (plan.uid == TarvaneKit::systemOutputUID) {
        return audio.makeSystemOutputSource();
    }
    // The main input carries on with the default input when its device is gone; another
    // channel says so.
    if (plan.uid && !plan.device && !plan.holdsMainInput()) {
        throw ChannelStartError::deviceUnavailable("The selected device");
    }
    return audio.makeDeviceSource(plan.device);
}

}  // namespace

class StartAttempt::Opening {
  public:
    Opening(StartAttempt& attempt, std::shared_ptr<CaptureGroup> group)
        : attempt_(attempt), group_(std::move(group)) {
        const std::lock_guard hold(attempt_.lock_);
        if (attempt_.isCancelled_) {
            throw std::runtime_error("The start was cancelled.");
        }
        attempt_.opening_.push_back(group_);
    }
    ~Opening() {
        const std::lock_guard hold(attempt_.lock_);
        std::erase(attempt_.opening_, group_);
    }
    Opening(const Opening&) = delete;
    Opening& operator=(const Opening&) = delete;

  private:
    StartAttempt& attempt_;
    const std::shared_ptr<CaptureGroup> group_;
};

namespace {

std::shared_ptr<CaptureGroup> openPlan(const StartPlan& plan, const StartSettings& settings,
                                       AudioSystem& audio, const LossHandler& onLoss,
                                       StartAttempt& attempt) {
    auto source = makeSource(plan, audio);
    std::vector<CaptureGroup::Subscriber> subscribers;
    for (const ChannelInfo& member : plan.members) {
        subscribers.push_back(
            {std::make_shared<ChannelProcessor>(member.id, member.rightChannelIndex.has_value()),
             member.channelIndex, member.rightChannelIndex});
    }
    auto group =
        std::make_shared<CaptureGroup>(plan.deviceName, std::move(source), std::move(subscribers));
    group->source().onLoss = [weak = std::weak_ptr(group),
                              onLoss](TarvaneKit::AudioSourceLoss loss) {
        if (const auto lost = weak.lock()) {
            lost->noteLoss(loss);
        }
        onLoss(weak);
    };
    {
        const StartAttempt::Opening opening(attempt, group);
        group->open();
    }
    for (std::size_t i = 0; i < plan.members.size(); ++i) {
        group->subscribers()[i].processor->configure(
            {.sampleRate = group->source().sampleRate(),
             .calibration = plan.members[i].calibration,
             .leqWeighting = settings.leqWeighting,
             .leqIntegrationSeconds = settings.leqIntegrationSeconds,
             .ringOutSensitivity = settings.ringOutSensitivities.at(plan.members[i].id)});
        group->subscribers()[i].processor->setMeasuresLoudness(plan.members[i].measuresLoudness);
    }
    return group;
}

}  // namespace

bool StartPlan::holdsMainInput() const {
    return std::ranges::any_of(members, [](const auto& info) { return info.id == UUID::main(); });
}

std::string StartPlan::channelNames() const {
    std::string names;
    for (const ChannelInfo& member : members) {
        names += (names.empty() ? "" : ", ") + member.name;
    }
    return names;
}

std::vector<StartPlan> makeStartPlans(const std::vector<ChannelInfo>& channels,
                                      const std::vector<AudioInputDevice>& devices) {
    std::vector<StartPlan> plans;
    for (const ChannelInfo& channel : channels) {
        const auto uid =
            channel.deviceUID && channel.deviceUID->empty() ? std::nullopt : channel.deviceUID;
        auto plan = std::ranges::find(plans, uid, &StartPlan::uid);
        if (plan == plans.end()) {
            plan = plans.insert(
                plans.end(), StartPlan{.uid = uid, .members = {}, .device = {}, .deviceName = {}});
            const auto device =
                uid ? std::ranges::find(devices, *uid, &AudioInputDevice::uid) : devices.end();
            if (device != devices.end()) {
                plan->device = *device;
            }
        }
        plan->members.push_back(channel);
    }
    return plans;
}

// Without the lock, since the opener takes it when its source has given up.
void StartAttempt::cancel() {
    std::vector<std::shared_ptr<CaptureGroup>> opening;
    {
        const std::lock_guard hold(lock_);
        isCancelled_ = true;
        opening = opening_;
    }
    for (const auto& group : opening) {
        group->cancelOpening();
    }
}

bool StartAttempt::isCancelled() const {
    const std::lock_guard hold(lock_);
    return isCancelled_;
}

std::vector<SourceSignature> sourceSignatures(const std::vector<ChannelInfo>& channels) {
    std::vector<SourceSignature> signatures;
    signatures.reserve(channels.size());
    for (const ChannelInfo& channel : channels) {
        signatures.emplace_back(channel.id, channel.deviceUID, channel.channelIndex,
                                channel.rightChannelIndex);
    }
    std::ranges::sort(signatures);
    return signatures;
}

std::vector<StartResult> openPlans(const std::vector<StartPlan>& plans,
                                   const StartSettings& settings, AudioSystem& audio,
                                   const LossHandler& onLoss, StartAttempt& attempt) {
    std::vector<StartResult> results(plans.size());
    const auto open = [&](std::size_t i) {
        try {
            results[i].group = openPlan(plans[i], settings, audio, onLoss, attempt);
        } catch (const std::exception& error) {
            results[i].error = error.what();
        }
    };
    // Opening waits for devices rather than computes: a thread for each, so that a start takes
    // as long as its slowest device, however few the cores.
    std::vector<std::thread> openers;
    for (std::size_t i = 1; i < plans.size(); ++i) {
        openers.emplace_back(open, i);
    }
    if (!plans.empty()) {
        open(0);
    }
    for (std::thread& opener : openers) {
        opener.join();
    }
    return results;
}

}  // namespace TarvaneApp
