#include "Engine/InputGains.h"

#include <algorithm>
#include <set>

namespace TarvaneApp {

using TarvaneKit::InputGainState;

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

}  // namespace

std::string InputGains::refuse(const std::string& control) {
    std::string sentence =
        "Couldn't set input " + control + " — this device may not support it in software.";
    errorMessage_.tell(sentence);
    return sentence;
}

std::vector<int> InputGains::mainChannels() const {
    return gainChannels(settings_.selectedChannelIndex(),
                        settings_.mainInputIsStereo()
                            ? std::optional(settings_.mainInputRightChannelIndex())
                            : std::nullopt);
}

void InputGains::refreshInputVolume() {
    const auto device = devices_.id(settings_.selectedDeviceUID());
    if (!device) {
        mainObservation_.reset();
        currentInputVolumeScalar.set(std::nullopt);
        setCurrentInputGain(std::nullopt);
        return;
    }
    const auto channels = mainChannels();
    if (!mainObservation_ || mainObservation_->deviceID != *device ||
        mainObservation_->channels != channels) {
        auto observation = audio_.observeInputVolume(
            *device, channels, [this] { mainThread_.post([this] { refreshInputVolume(); }); });
        mainObservation_ = Observation{*device, channels, std::move(observation)};
    }
    currentInputVolumeScalar.set(
        audio_.inputVolumeScalar(*device, settings_.selectedChannelIndex()));
    setCurrentInputGain(audio_.inputGainDB(*device, settings_.selectedChannelIndex()));
}

void InputGains::setCurrentInputGain(const std::optional<InputGainState>& gain) {
    if (gain == currentInputGain()) {
        return;
    }
    currentInputGain.set(gain);
    settings_.calibration.set(settings_.calibration());  // takes the gain on its way
    if (!settings_.extraChannels().empty()) {
        refreshDeviceGains();  // another channel may share the control
    }
}

void InputGains::refreshDeviceGains() {
    std::map<std::string, InputGainState> gains;
    std::map<std::uint32_t, std::set<int>> observedChannels;
    for (const ChannelConfig& channel : settings_.extraChannels()) {
        const auto device = devices_.id(channel.deviceUID);
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
    }

    std::vector<Observation> observations;
    for (const auto& observed : observedChannels) {
        const auto device = observed.first;
        const std::vector<int> channels(observed.second.begin(), observed.second.end());
        const auto kept = std::ranges::find_if(deviceObservations_, [&](const auto& old) {
            return old.deviceID == device && old.channels == channels;
        });
        observations.push_back(
            kept != deviceObservations_.end()
                ? std::move(*kept)
                : Observation{device, channels, audio_.observeInputVolume(device, channels, [this] {
                                  mainThread_.post([this] { refreshDeviceGains(); });
                              })});
    }
    deviceObservations_ = std::move(observations);
}

std::optional<InputGainState> InputGains::inputGain(const ChannelConfig& channel) const {
    const auto found = deviceGains().find(gainKey(channel));
    return found != deviceGains().end() ? std::optional(found->second) : std::nullopt;
}

std::optional<std::string> InputGains::setInputGain(double gainDB, const ChannelConfig& channel) {
    const auto device = devices_.id(channel.deviceUID);
    if (!device) {
        return std::nullopt;
    }
    if (!audio_.setInputGainDB(gainDB, *device, gainChannels(channel))) {
        return refuse("gain");
    }
    refreshDeviceGains();
    if (channel.deviceUID == settings_.selectedDeviceUID()) {
        refreshInputVolume();
    }
    return std::nullopt;
}

std::optional<std::string> InputGains::setInputGain(double gainDB) {
    const auto device = devices_.id(settings_.selectedDeviceUID());
    if (!device) {
        return std::nullopt;
    }
    if (!audio_.setInputGainDB(gainDB, *device, mainChannels())) {
        return refuse("gain");
    }
    refreshInputVolume();
    return std::nullopt;
}

std::optional<std::string> InputGains::setInputVolume(float volume) {
    const auto device = devices_.id(settings_.selectedDeviceUID());
    if (!device) {
        return std::nullopt;
    }
    if (!audio_.setInputVolumeScalar(volume, *device, mainChannels())) {
        return refuse("volume");
    }
    refreshInputVolume();
    return std::nullopt;
}

}  // namespace TarvaneApp
