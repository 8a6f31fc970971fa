// The devices' own gains. They are read when a channel's device or input changes and followed
// while the device is there, so that a gain turned at the device doesn't move a calibrated
// channel's reading.

#include <algorithm>
#include <set>

#include "Engine/MeterEngine.h"

namespace TarvaneApp {

using TarvaneKit::AudioInputDevice;
using TarvaneKit::InputGainState;
using TarvaneKit::systemOutputUID;

namespace {

std::string gainKey(const ChannelConfig& channel) {
    return channel.deviceUID.value_or("") + "#" + std::to_string(channel.channelIndex);
}

std::vector<int> gainChannels(int left, std::optional<int> right) {
    return right ? std::vector{left, *right} : std::vector{left};
}

std::vector<int> gainChannels(const ChannelConfig& channel) {
    return gainChannels(channel.channelIndex,
                        channel.isStereo ? std::optional(channel.rightChannelIndex) : std::nullopt);
}

std::string refusal(const std::string& control) {
    return "Couldn't set input " + control + " — this device may not support it in software.";
}

}  // namespace

// The system's output has no gain of its own.
std::optional<std::uint32_t> MeterEngine::deviceID(const std::optional<std::string>& uid) const {
    if (!uid) {
        return audio_.defaultInputDeviceID();
    }
    const auto device = std::ranges::find(availableDevices(), *uid, &AudioInputDevice::uid);
    return *uid != systemOutputUID && device != availableDevices().end() ? std::optional(device->id)
                                                                         : std::nullopt;
}

std::vector<int> MeterEngine::mainGainChannels() const {
    return gainChannels(selectedChannelIndex(), mainInputIsStereo()
                                                    ? std::optional(mainInputRightChannelIndex())
                                                    : std::nullopt);
}

void MeterEngine::refreshInputVolume() {
    const auto device = deviceID(selectedDeviceUID());
    if (!device) {
        inputVolumeObservation_.reset();
        currentInputVolumeScalar.set(std::nullopt);
        setCurrentInputGain(std::nullopt);
        return;
    }
    const auto channels = mainGainChannels();
    if (!inputVolumeObservation_ || inputVolumeObservation_->deviceID != *device ||
        inputVolumeObservation_->channels != channels) {
        auto observation = audio_.observeInputVolume(
            *device, channels, [this] { mainThread_.post([this] { refreshInputVolume(); }); });
        inputVolumeObservation_ = GainObservation{*device, channels, std::move(observation)};
    }
    currentInputVolumeScalar.set(audio_.inputVolumeScalar(*device, selectedChannelIndex()));
    setCurrentInputGain(audio_.inputGainDB(*device, selectedChannelIndex()));
}

void MeterEngine::setCurrentInputGain(const std::optional<InputGainState>& gain) {
    if (gain == currentInputGain()) {
        return;
    }
    currentInputGain.set(gain);
    calibration.set(calibration());  // takes the gain on its way
    if (!extraChannels().empty()) {
        refreshDeviceGains();  // another channel may share the control
    }
}

void MeterEngine::refreshDeviceGains() {
    std::map<std::string, InputGainState> gains;
    std::map<std::uint32_t, std::set<int>> observedChannels;
    for (const ChannelConfig& channel : extraChannels()) {
        const auto device = deviceID(channel.deviceUID);
        if (!device) {
            continue;
        }
        if (const auto gain = audio_.inputGainDB(*device, channel.channelIndex)) {
            gains.insert_or_assign(gainKey(channel), *gain);
        }
        const auto channels = gainChannels(channel);
        observedChannels[*device].insert(channels.begin(), channels.end());
    }
    if (gains != deviceGains()) {
        deviceGains.set(std::move(gains));
        calibrationChanged();
    }

    std::vector<GainObservation> observations;
    for (const auto& observed : observedChannels) {
        const auto device = observed.first;
        const std::vector<int> channels(observed.second.begin(), observed.second.end());
        const auto kept = std::ranges::find_if(deviceGainObservations_, [&](const auto& old) {
            return old.deviceID == device && old.channels == channels;
        });
        observations.push_back(
            kept != deviceGainObservations_.end()
                ? std::move(*kept)
                : GainObservation{device, channels,
                                  audio_.observeInputVolume(device, channels, [this] {
                                      mainThread_.post([this] { refreshDeviceGains(); });
                                  })});
    }
    deviceGainObservations_ = std::move(observations);
}

std::optional<InputGainState> MeterEngine::inputGain(const ChannelConfig& channel) const {
    const auto found = deviceGains().find(gainKey(channel));
    return found != deviceGains().end() ? std::optional(found->second) : std::nullopt;
}

void MeterEngine::setInputGain(double gainDB, const ChannelConfig& channel) {
    const auto device = deviceID(channel.deviceUID);
    if (!device) {
        return;
    }
    if (!audio_.setInputGainDB(gainDB, *device, gainChannels(channel))) {
        errorMessage.set(refusal("gain"));
        return;
    }
    refreshDeviceGains();
    if (channel.deviceUID == selectedDeviceUID()) {
        refreshInputVolume();
    }
}

void MeterEngine::setInputGain(double gainDB) {
    const auto device = deviceID(selectedDeviceUID());
    if (!device) {
        return;
    }
    if (audio_.setInputGainDB(gainDB, *device, mainGainChannels())) {
        refreshInputVolume();
    } else {
        errorMessage.set(refusal("gain"));
    }
}

void MeterEngine::setInputVolume(float volume) {
    const auto device = deviceID(selectedDeviceUID());
    if (!device) {
        return;
    }
    if (audio_.setInputVolumeScalar(volume, *device, mainGainChannels())) {
        refreshInputVolume();
    } else {
        errorMessage.set(refusal("volume"));
    }
}

}  // namespace TarvaneApp
