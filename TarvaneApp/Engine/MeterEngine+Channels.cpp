// Which channels there are, what feeds them, and what they are called.

#include <fmt/format.h>

#include <algorithm>

#include "Engine/MeterEngine.h"
#include "Records/ChannelColors.h"

namespace TarvaneApp {

using TarvaneKit::AudioInputDevice;
using TarvaneKit::RGBAColor;
using TarvaneKit::systemOutputUID;
using TarvaneKit::UUID;

namespace {

// The system's output is captured in stereo.
constexpr int systemOutputChannels = 2;

}  // namespace

void MeterEngine::refreshDevices() {
    try {
        availableDevices.set(audio_.availableInputDevices());
    } catch (const TarvaneKit::AudioIOError& error) {
        errorMessage.set(error.what());
    }
    refreshInputVolume();
    refreshDeviceGains();
}

// Devices came or went by themselves. A list that can't be had now is no news to the user: what
// it means for a running source, that source tells.
void MeterEngine::followDevices() {
    try {
        availableDevices.set(audio_.availableInputDevices());
    } catch (const TarvaneKit::AudioIOError&) {
    }
    refreshInputVolume();
    refreshDeviceGains();
}

void MeterEngine::addChannel() {
    const auto& uid = selectedDeviceUID();
    const int inputs = channelCount(uid);
    auto channels = extraChannels();
    ChannelConfig channel;
    channel.name = fmt::format("Channel {}", channels.size() + 2);  // the main input is the first
    channel.deviceUID = uid;
    channel.channelIndex = lowestFreeInput(uid, inputs);
    channel.rightChannelIndex = std::min(channel.channelIndex + 1, std::max(inputs - 1, 0));
    channel.color = channelColors[channels.size() % channelColors.size()];
    channel.isDigital = isLikelyDigitalSource(uid);
    channel.ringOutEnabled = !channel.isDigital;
    channel.display = display(UUID::main());
    channels.push_back(std::move(channel));
    extraChannels.set(std::move(channels));
}

// 0 when every input is taken.
int MeterEngine::lowestFreeInput(const std::optional<std::string>& deviceUID, int inputs) const {
    const auto active = activeChannelInfos();
    for (int input = 0; input < inputs; ++input) {
        const bool isTaken = std::ranges::any_of(active, [&](const ChannelInfo& channel) {
            return channel.deviceUID == deviceUID &&
                   (channel.channelIndex == input || channel.rightChannelIndex == input);
        });
        if (!isTaken) {
            return input;
        }
    }
    return 0;
}

void MeterEngine::removeChannel(const UUID& id) {
    auto channels = extraChannels();
    std::erase_if(channels, [&](const ChannelConfig& channel) { return channel.id == id; });
    extraChannels.set(std::move(channels));
    auto layouts = channelWindowLayouts();
    layouts.erase(id);
    channelWindowLayouts.set(std::move(layouts));
}

void MeterEngine::updateChannel(const UUID& id, const std::function<void(ChannelConfig&)>& edit) {
    auto channels = extraChannels();
    const auto channel = std::ranges::find(channels, id, &ChannelConfig::id);
    if (channel != channels.end()) {
        edit(*channel);
        extraChannels.set(std::move(channels));
    }
}

void MeterEngine::setChannelDevice(const UUID& id, const std::optional<std::string>& uid) {
    const int inputs = channelCount(uid);
    updateChannel(id, [&](ChannelConfig& channel) {
        channel.deviceUID = uid;
        if (channel.channelIndex >= inputs) {
            channel.channelIndex = 0;
        }
        if (uid == systemOutputUID) {
            channel.isDigital = true;
            channel.channelIndex = 0;
            channel.rightChannelIndex = 1;
            channel.isStereo = true;
            return;
        }
        channel.isDigital = isLikelyDigitalSource(uid);
        if (channel.rightChannelIndex >= inputs) {
            channel.isStereo = false;
            channel.rightChannelIndex = std::min(inputs - 1, channel.channelIndex + 1);
        }
    });
}

void MeterEngine::setChannelColor(const RGBAColor& color, const UUID& id) {
    if (id == UUID::main()) {
        rtaColor.set(color);
    } else {
        updateChannel(id, [&](ChannelConfig& channel) { channel.color = color; });
    }
}

void MeterEngine::setMeasuresLoudness(bool measures, const UUID& id) {
    if (id == UUID::main()) {
        mainInputMeasuresLoudness.set(measures);
    } else {
        updateChannel(id, [&](ChannelConfig& channel) { channel.measuresLoudness = measures; });
    }
}

void MeterEngine::setRingOutEnabled(bool enabled, const UUID& id) {
    if (id == UUID::main()) {
        ringOutEnabled.set(enabled);
        return;
    }
    updateChannel(id, [&](ChannelConfig& channel) { channel.ringOutEnabled = enabled; });
    if (!enabled) {
        clearRingAlerts(id);
    }
}

ChannelInfo MeterEngine::mainChannelInfo() const {
    return {.id = UUID::main(),
            .name = "Main Input",
            .deviceUID = selectedDeviceUID(),
            .channelIndex = selectedChannelIndex(),
            .rightChannelIndex =
                mainInputIsStereo() ? std::optional(mainInputRightChannelIndex()) : std::nullopt,
            .color = rtaColor(),
            .isEnabled = true,
            .ringOutEnabled = ringOutEnabled(),
            .calibration = mainInputIsDigital() ? uncalibrated() : calibration(),
            .measuresLoudness = mainInputMeasuresLoudness()};
}

ChannelInfo MeterEngine::info(const ChannelConfig& config) const {
    auto profile = config.isDigital ? uncalibrated() : config.calibration.value_or(uncalibrated());
    profile.inputGain = inputGain(config);
    return {.id = config.id,
            .name = config.name,
            .deviceUID = config.deviceUID,
            .channelIndex = config.channelIndex,
            .rightChannelIndex =
                config.isStereo ? std::optional(config.rightChannelIndex) : std::nullopt,
            .color = config.color,
            .isEnabled = config.isEnabled,
            .ringOutEnabled = config.ringOutEnabled,
            .calibration = std::move(profile),
            .measuresLoudness = config.measuresLoudness};
}

std::vector<ChannelInfo> MeterEngine::channelInfos() const {
    std::vector<ChannelInfo> infos{mainChannelInfo()};
    for (const ChannelConfig& config : extraChannels()) {
        infos.push_back(info(config));
    }
    return infos;
}

std::vector<ChannelInfo> MeterEngine::activeChannelInfos() const {
    auto infos = channelInfos();
    std::erase_if(infos, [](const ChannelInfo& channel) { return !channel.isEnabled; });
    return infos;
}

const ChannelConfig* MeterEngine::extraChannel(const UUID& id) const {
    const auto found = std::ranges::find(extraChannels(), id, &ChannelConfig::id);
    return found != extraChannels().end() ? &*found : nullptr;
}

std::optional<ChannelInfo> MeterEngine::channelInfo(const UUID& id) const {
    if (id == UUID::main()) {
        return mainChannelInfo();
    }
    const ChannelConfig* channel = extraChannel(id);
    return channel != nullptr ? std::optional(info(*channel)) : std::nullopt;
}

MeterChannel& MeterEngine::meterChannel(const UUID& id) {
    auto& channel = meterChannels_[id];
    if (!channel) {
        channel = std::make_unique<MeterChannel>(id);
    }
    return *channel;
}

UUID MeterEngine::resolvedChannelID(const UUID& id) const {
    return extraChannel(id) != nullptr ? id : UUID::main();
}

std::string MeterEngine::deviceDisplayName(const std::optional<std::string>& uid) const {
    if (!uid) {
        return "Default Input";
    }
    if (*uid == systemOutputUID) {
        return "System Output";
    }
    const auto device = std::ranges::find(availableDevices(), *uid, &AudioInputDevice::uid);
    return device != availableDevices().end() ? device->name : "Unavailable Device";
}

int MeterEngine::channelCount(const std::optional<std::string>& forDeviceUID) const {
    if (forDeviceUID == systemOutputUID) {
        return systemOutputChannels;
    }
    if (forDeviceUID) {
        const auto device =
            std::ranges::find(availableDevices(), *forDeviceUID, &AudioInputDevice::uid);
        if (device != availableDevices().end()) {
            return device->channelCount;
        }
    }
    const auto defaultDevice = audio_.defaultInputDeviceID();
    return defaultDevice ? std::max(audio_.inputChannelCount(*defaultDevice), 1) : 1;
}

std::string MeterEngine::inputDescription(const ChannelInfo& channel) const {
    std::string device = deviceDisplayName(channel.deviceUID);
    if (channelCount(channel.deviceUID) < 2) {
        return device;
    }
    const bool isSystemOutput = channel.deviceUID == systemOutputUID;
    if (channel.rightChannelIndex) {
        return isSystemOutput
                   ? device + " (stereo)"
                   : fmt::format("{} (inputs {}+{}, stereo)", device, channel.channelIndex + 1,
                                 *channel.rightChannelIndex + 1);
    }
    if (isSystemOutput) {
        return device + (channel.channelIndex == 0 ? " (left)" : " (right)");
    }
    return fmt::format("{} (channel {})", device, channel.channelIndex + 1);
}

}  // namespace TarvaneApp
