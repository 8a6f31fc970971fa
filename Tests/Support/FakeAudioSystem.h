// A made-up audio system: devices that the test plugs in and out, and sources that open slowly,
// fail, or die when told to, and deliver exactly what the test feeds them.
#pragma once

#include <algorithm>
#include <cmath>
#include <condition_variable>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "AudioIO/AudioSystem.h"

namespace TarvaneTests {

/// How the sources of one uid behave; "" stands for the default input.
struct SourceBehaviour {
    double sampleRate = 48000.0;
    int channelCount = 1;
    std::optional<TarvaneKit::AudioIOError> startError;
    /// `start()` waits until the test calls `FakeAudioSystem::open` for that uid.
    bool opensSlowly = false;
    /// A `stop()` while `start()` waits doesn't end it.
    bool opensInSpiteOfStop = false;
    /// Dies inside `start()`, just ahead of its return.
    std::optional<TarvaneKit::AudioSourceLoss> diesAtOnce;
};

/// The controls of a device's inputs.
struct FakeControls {
    double minDB = -60.0;
    double maxDB = 0.0;
    /// By input; an input that isn't there has none of its own.
    std::map<int, double> gainsDB;
    /// The one for all inputs.
    std::optional<double> masterGainDB;
    /// Where there is a volume and no gain.
    std::optional<float> volume;
    bool refusesToBeSet = false;
};

class FakeAudioSystem final : public TarvaneKit::AudioSystem {
  public:
    class Source;

    // The test's side.

    void plugIn(const TarvaneKit::AudioInputDevice& device) {
        {
            const std::lock_guard hold(lock_);
            devices_.push_back(device);
            behaviours_[device.uid].channelCount = device.channelCount;
        }
        tellDevicesChanged();
    }
    void unplug(const std::string& uid) {
        {
            const std::lock_guard hold(lock_);
            std::erase_if(devices_, [&](const auto& device) { return device.uid == uid; });
        }
        tellDevicesChanged();
    }
    void setDefaultInput(std::optional<std::uint32_t> id) {
        const std::lock_guard hold(lock_);
        defaultID_ = id;
    }
    void setVirtual(std::uint32_t id) {
        const std::lock_guard hold(lock_);
        virtualIDs_.push_back(id);
    }
    void setListingError(std::optional<TarvaneKit::AudioIOError> error) {
        const std::lock_guard hold(lock_);
        listingError_ = std::move(error);
    }
    void setAuthorization(TarvaneKit::MicrophoneAuthorization authorization) {
        authorization_ = authorization;
    }
    /// Gives the device controls, moves them, or takes them away, and tells who listens.
    void setControls(std::uint32_t deviceID, std::optional<FakeControls> controls) {
        {
            const std::lock_guard hold(lock_);
            if (controls) {
                controls_[deviceID] = std::move(*controls);
            } else {
                controls_.erase(deviceID);
            }
        }
        tellControlsChanged(deviceID);
    }
    FakeControls controls(std::uint32_t deviceID) const {
        const std::lock_guard hold(lock_);
        return controls_.at(deviceID);
    }
    /// The inputs that each observation of the device listens to, sorted.
    std::vector<std::vector<int>> observedChannels(std::uint32_t deviceID) const;

    /// To be changed while no start is under way.
    SourceBehaviour& behaviour(const std::string& uid) {
        const std::lock_guard hold(lock_);
        return behaviours_[uid];
    }

    /// Lets slow starts of that uid go on.
    void open(const std::string& uid) {
        const std::lock_guard hold(lock_);
        behaviours_[uid].opensSlowly = false;
        opened_.notify_all();
    }

    /// Delivers one block to every running source of that uid; true when there was one.
    bool feed(const std::string& uid, const std::vector<std::vector<float>>& channels);
    /// Tells every running source of that uid that frames are missing ahead of what is fed next;
    /// true when there was one.
    bool loseAudio(const std::string& uid, std::int64_t frameCount);
    /// Every running source of that uid dies.
    void lose(const std::string& uid, TarvaneKit::AudioSourceLoss loss);

    int runningCount() const {
        const std::lock_guard hold(lock_);
        return static_cast<int>(running_.size());
    }
    int madeCount() const {
        const std::lock_guard hold(lock_);
        return static_cast<int>(made_.size());
    }
    /// The uids of all sources made so far, sorted: plans open in parallel.
    std::vector<std::string> madeUIDs() const {
        const std::lock_guard hold(lock_);
        auto uids = made_;
        std::ranges::sort(uids);
        return uids;
    }
    int permissionRequests() const { return permissionRequests_; }
    /// Sources whose callback was cleared while they could still deliver.
    int clearedTooEarly() const { return clearedTooEarly_; }
    void answerPermission(bool granted) { std::exchange(permission_, nullptr)(granted); }

    // The engine's side.

    std::vector<TarvaneKit::AudioInputDevice> availableInputDevices() override {
        const std::lock_guard hold(lock_);
        if (listingError_) {
            throw *listingError_;
        }
        return devices_;
    }
    int inputChannelCount(std::uint32_t deviceID) override {
        const std::lock_guard hold(lock_);
        const auto found = std::ranges::find(devices_, deviceID, &TarvaneKit::AudioInputDevice::id);
        return found != devices_.end() ? found->channelCount : 0;
    }
    std::optional<std::uint32_t> defaultInputDeviceID() override {
        const std::lock_guard hold(lock_);
        return defaultID_;
    }
    std::optional<TarvaneKit::TransportType> transportType(std::uint32_t deviceID) override {
        const std::lock_guard hold(lock_);
        return std::ranges::count(virtualIDs_, deviceID) > 0
                   ? TarvaneKit::TransportType::virtualDevice
                   : TarvaneKit::TransportType::hardware;
    }
    std::optional<float> inputVolumeScalar(std::uint32_t deviceID, int channel) override {
        {
            const std::lock_guard hold(lock_);
            const auto found = controls_.find(deviceID);
            if (found != controls_.end() && found->second.volume) {
                return found->second.volume;
            }
        }
        const auto gain = inputGainDB(deviceID, channel);
        return gain ? std::optional(static_cast<float>(std::pow(10.0, gain->currentDB / 20.0)))
                    : std::nullopt;
    }
    std::optional<TarvaneKit::InputGainState> inputGainDB(std::uint32_t deviceID,
                                                          int channel) override {
        const std::lock_guard hold(lock_);
        const auto found = controls_.find(deviceID);
        if (found == controls_.end()) {
            return std::nullopt;
        }
        const FakeControls& controls = found->second;
        const auto own = controls.gainsDB.find(channel);
        const bool isShared = own == controls.gainsDB.end();
        if (isShared && !controls.masterGainDB) {
            return std::nullopt;
        }
        return TarvaneKit::InputGainState::create(isShared ? *controls.masterGainDB : own->second,
                                                  controls.maxDB, controls.minDB, isShared);
    }
    bool setInputGainDB(double gainDB, std::uint32_t deviceID,
                        const std::vector<int>& channels) override {
        const bool isTaken = takeGain(gainDB, deviceID, channels);
        if (isTaken) {
            tellControlsChanged(deviceID);
        }
        return isTaken;
    }
    bool setInputVolumeScalar(float volume, std::uint32_t deviceID,
                              const std::vector<int>& channels) override {
        {
            const std::lock_guard hold(lock_);
            const auto found = controls_.find(deviceID);
            if (found != controls_.end() && found->second.volume) {
                if (!found->second.refusesToBeSet) {
                    found->second.volume = volume;
                }
                return !found->second.refusesToBeSet;
            }
        }
        return setInputGainDB(20.0 * std::log10(static_cast<double>(volume)), deviceID, channels);
    }
    std::unique_ptr<TarvaneKit::InputVolumeObservation> observeInputVolume(
        std::uint32_t deviceID, const std::vector<int>& channels,
        std::function<void()> handler) override;
    TarvaneKit::MicrophoneAuthorization microphoneAuthorizationStatus() override {
        return authorization_;
    }
    void requestMicrophoneAccess(std::function<void(bool)> completion) override {
        ++permissionRequests_;
        permission_ = std::move(completion);
    }
    std::unique_ptr<TarvaneKit::MultiChannelAudioSource> makeDeviceSource(
        const std::optional<TarvaneKit::AudioInputDevice>& device) override {
        return make(device ? device->uid : "");
    }
    std::unique_ptr<TarvaneKit::MultiChannelAudioSource> makeSystemOutputSource() override {
        return make(TarvaneKit::systemOutputUID);
    }
    void setDevicesChangedHandler(std::function<void()> handler) override {
        const std::lock_guard hold(lock_);
        devicesChanged_ = std::move(handler);
    }

  private:
    class Observation;

    std::unique_ptr<TarvaneKit::MultiChannelAudioSource> make(const std::string& uid);
    /// Under the lock.
    std::optional<TarvaneKit::AudioInputDevice> deviceOf(const std::string& uid) const {
        const auto found = std::ranges::find_if(devices_, [&](const auto& device) {
            return uid.empty() ? device.id == defaultID_ : device.uid == uid;
        });
        return found != devices_.end() ? std::optional(*found) : std::nullopt;
    }
    bool takeGain(double gainDB, std::uint32_t deviceID, const std::vector<int>& channels) {
        const std::lock_guard hold(lock_);
        const auto found = controls_.find(deviceID);
        if (found == controls_.end() || found->second.refusesToBeSet) {
            return false;
        }
        FakeControls& controls = found->second;
        const double taken = std::clamp(gainDB, controls.minDB, controls.maxDB);
        bool isTaken = false;
        for (const int channel : channels) {
            if (const auto own = controls.gainsDB.find(channel); own != controls.gainsDB.end()) {
                own->second = taken;
                isTaken = true;
            }
        }
        if (!isTaken && controls.masterGainDB) {
            controls.masterGainDB = taken;
            isTaken = true;
        }
        return isTaken;
    }
    void tellControlsChanged(std::uint32_t deviceID);
    void tellDevicesChanged() {
        std::function<void()> handler;
        {
            const std::lock_guard hold(lock_);
            handler = devicesChanged_;
        }
        if (handler) {
            handler();
        }
    }

    mutable std::mutex lock_;
    std::condition_variable opened_;
    std::vector<TarvaneKit::AudioInputDevice> devices_;
    std::optional<std::uint32_t> defaultID_;
    std::vector<std::uint32_t> virtualIDs_;
    std::optional<TarvaneKit::AudioIOError> listingError_;
    TarvaneKit::MicrophoneAuthorization authorization_ =
        TarvaneKit::MicrophoneAuthorization::authorized;
    std::map<std::string, SourceBehaviour> behaviours_;
    std::vector<std::string> made_;
    std::vector<Source*> running_;
    std::map<std::uint32_t, FakeControls> controls_;
    std::vector<Observation*> observations_;
    std::function<void()> devicesChanged_;
    std::function<void(bool)> permission_;
    int permissionRequests_ = 0;
    int clearedTooEarly_ = 0;
};

class FakeAudioSystem::Observation final : public TarvaneKit::InputVolumeObservation {
  public:
    Observation(FakeAudioSystem& system, std::uint32_t device, std::vector<int> inputs,
                std::function<void()> onChange)
        : deviceID(device),
          channels(std::move(inputs)),
          handler(std::move(onChange)),
          system_(system) {
        const std::lock_guard hold(system_.lock_);
        system_.observations_.push_back(this);
    }
    ~Observation() override {
        const std::lock_guard hold(system_.lock_);
        std::erase(system_.observations_, this);
    }

    const std::uint32_t deviceID;
    const std::vector<int> channels;
    const std::function<void()> handler;

  private:
    FakeAudioSystem& system_;
};

inline std::unique_ptr<TarvaneKit::InputVolumeObservation> FakeAudioSystem::observeInputVolume(
    std::uint32_t deviceID, const std::vector<int>& channels, std::function<void()> handler) {
    return std::make_unique<Observation>(*this, deviceID, channels, std::move(handler));
}

inline std::vector<std::vector<int>> FakeAudioSystem::observedChannels(
    std::uint32_t deviceID) const {
    const std::lock_guard hold(lock_);
    std::vector<std::vector<int>> result;
    for (const Observation* observation : observations_) {
        if (observation->deviceID == deviceID) {
            result.push_back(observation->channels);
        }
    }
    std::ranges::sort(result);
    return result;
}

inline void FakeAudioSystem::tellControlsChanged(std::uint32_t deviceID) {
    std::vector<std::function<void()>> handlers;
    {
        const std::lock_guard hold(lock_);
        for (const Observation* observation : observations_) {
            if (observation->deviceID == deviceID) {
                handlers.push_back(observation->handler);
            }
        }
    }
    for (const auto& handler : handlers) {
        handler();
    }
}

class FakeAudioSystem::Source final : public TarvaneKit::MultiChannelAudioSource {
  public:
    Source(FakeAudioSystem& system, std::string uid) : system_(system), uid_(std::move(uid)) {}
    ~Source() override {
        const std::lock_guard hold(system_.lock_);
        if (std::erase(system_.running_, this) > 0) {
            ++system_.clearedTooEarly_;
        }
    }

    double sampleRate() const override {
        const std::lock_guard hold(system_.lock_);
        return system_.behaviours_.at(uid_).sampleRate;
    }
    std::optional<TarvaneKit::AudioInputDevice> device() const override {
        const std::lock_guard hold(system_.lock_);
        return device_;
    }

    void start() override {
        std::unique_lock hold(system_.lock_);
        SourceBehaviour& behaviour = system_.behaviours_[uid_];
        system_.opened_.wait(hold, [&] {
            return !behaviour.opensSlowly || (isStopped_ && !behaviour.opensInSpiteOfStop);
        });
        if (behaviour.opensSlowly) {
            throw TarvaneKit::AudioIOError::engineStartFailed("The start was cancelled.");
        }
        if (behaviour.startError) {
            throw *behaviour.startError;
        }
        device_ = system_.deviceOf(uid_);
        system_.running_.push_back(this);
        const auto dies = behaviour.diesAtOnce;
        hold.unlock();
        if (dies) {
            onLoss(*dies);
        }
    }

    void stop() override {
        const std::lock_guard hold(system_.lock_);
        std::erase(system_.running_, this);
        isStopped_ = true;
        system_.opened_.notify_all();
    }

    const std::string& uid() const { return uid_; }

  private:
    FakeAudioSystem& system_;
    const std::string uid_;
    std::optional<TarvaneKit::AudioInputDevice> device_;
    bool isStopped_ = false;
};

inline std::unique_ptr<TarvaneKit::MultiChannelAudioSource> FakeAudioSystem::make(
    const std::string& uid) {
    const std::lock_guard hold(lock_);
    made_.push_back(uid);
    behaviours_.try_emplace(uid);
    return std::make_unique<Source>(*this, uid);
}

inline bool FakeAudioSystem::feed(const std::string& uid,
                                  const std::vector<std::vector<float>>& channels) {
    std::vector<const float*> pointers;
    for (const auto& channel : channels) {
        pointers.push_back(channel.data());
    }
    const std::lock_guard hold(lock_);
    bool fed = false;
    for (Source* source : running_) {
        if (source->uid() == uid) {
            source->onAudioBuffer(pointers.data(), static_cast<int>(pointers.size()),
                                  channels.empty() ? 0 : static_cast<int>(channels[0].size()));
            fed = true;
        }
    }
    return fed;
}

inline bool FakeAudioSystem::loseAudio(const std::string& uid, std::int64_t frameCount) {
    const std::lock_guard hold(lock_);
    bool told = false;
    for (Source* source : running_) {
        if (source->uid() == uid && source->onAudioLost) {
            source->onAudioLost(frameCount);
            told = true;
        }
    }
    return told;
}

inline void FakeAudioSystem::lose(const std::string& uid, TarvaneKit::AudioSourceLoss loss) {
    std::vector<Source*> dying;
    {
        const std::lock_guard hold(lock_);
        std::ranges::copy_if(running_, std::back_inserter(dying),
                             [&](const Source* source) { return source->uid() == uid; });
    }
    for (Source* source : dying) {
        source->onLoss(loss);
    }
}

}  // namespace TarvaneTests
