#include "Engine/ChannelList.h"

#include <fmt/format.h>

#include <algorithm>

#include "Engine/CalibrationProfiles.h"
#include "Records/ChannelColors.h"
#include "Records/ExtraChannels.h"

namespace TarvaneApp {

using CalibrationProfiles::uncalibrated;
using TarvaneKit::RGBAColor;
using TarvaneKit::systemOutputUID;
using TarvaneKit::UUID;

namespace {

// Counted as people do.
long long inputNumber(int index) {
    return 1LL + index;
}

}  // namespace

void ChannelList::addChannel() {
    if (settings_.extraChannels().size() >= mostExtraChannels) {
        errorMessage_.tell(fmt::format("Tarvane measures at most {} channels.", mostChannels));
        return;
    }
    const auto& uid = settings_.selectedDeviceUID();
    const int inputs = devices_.channelCount(uid);
    auto channels = settings_.extraChannels();
    ChannelConfig channel;
    channel.name = fmt::format("Channel {}", channels.size() + 2);  // the main input is the first
    channel.deviceUID = uid;
    channel.channelIndex = lowestFreeInput(uid, inputs);
    channel.rightChannelIndex = std::min(channel.channelIndex + 1, std::max(inputs - 1, 0));
    channel.color = channelColors[channels.size() % channelColors.size()];
    channel.isDigital = devices_.isLikelyDigitalSource(uid);
    channel.ringOutEnabled = !channel.isDigital;
    channel.display = settings_.mainDisplay();
    channels.push_back(std::move(channel));
    settings_.extraChannels.set(std::move(channels));
}

// 0 when every input is taken.
int ChannelList::lowestFreeInput(const std::optional<std::string>& deviceUID, int inputs) const {
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

void ChannelList::removeChannel(const UUID& id) {
    auto channels = settings_.extraChannels();
    std::erase_if(channels, [&](const ChannelConfig& channel) { return channel.id == id; });
    settings_.extraChannels.set(std::move(channels));
    auto layouts = settings_.channelWindowLayouts();
    layouts.erase(id);
    settings_.channelWindowLayouts.set(std::move(layouts));
}

void ChannelList::updateChannel(const UUID& id, const std::function<void(ChannelConfig&)>& edit) {
    auto channels = settings_.extraChannels();
    const auto channel = std::ranges::find(channels, id, &ChannelConfig::id);
    if (channel != channels.end()) {
        edit(*channel);
        settings_.extraChannels.set(std::move(channels));
    }
}

void ChannelList::setChannelDevice(const UUID& id, const std::optional<std::string>& uid) {
    const int inputs = devices_.channelCount(uid);
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
        channel.isDigital = devices_.isLikelyDigitalSource(uid);
        if (channel.rightChannelIndex >= inputs) {
            channel.isStereo = false;
            channel.rightChannelIndex = std::min(inputs - 1, channel.channelIndex + 1);
        }
    });
}

void ChannelList::setChannelColor(const RGBAColor& color, const UUID& id) {
    if (id == UUID::main()) {
        settings_.rtaColor.set(color);
    } else {
        updateChannel(id, [&](ChannelConfig& channel) { channel.color = color; });
    }
}

void ChannelList::setMeasuresLoudness(bool measures, const UUID& id) {
    if (id == UUID::main()) {
        settings_.mainInputMeasuresLoudness.set(measures);
    } else {
        updateChannel(id, [&](ChannelConfig& channel) { channel.measuresLoudness = measures; });
    }
}

void ChannelList::setRingOutEnabled(bool enabled, const UUID& id) {
    if (id == UUID::main()) {
        settings_.ringOutEnabled.set(enabled);
    } else {
        updateChannel(id, [&](ChannelConfig& channel) { channel.ringOutEnabled = enabled; });
    }
}

ChannelInfo ChannelList::mainChannelInfo() const {
    return {
        .id = UUID::main(),
        .name = "Main Input",
        .deviceUID = settings_.selectedDeviceUID(),
        .channelIndex = settings_.selectedChannelIndex(),
        .rightChannelIndex = settings_.mainInputIsStereo()
                                 ? std::optional(settings_.mainInputRightChannelIndex())
                                 : std::nullopt,
        .color = settings_.rtaColor(),
        .isEnabled = true,
        .ringOutEnabled = settings_.ringOutEnabled(),
        .calibration = settings_.mainInputIsDigital() ? uncalibrated() : settings_.calibration(),
        .measuresLoudness = settings_.mainInputMeasuresLoudness()};
}

ChannelInfo ChannelList::info(const ChannelConfig& config) const {
    auto profile = config.isDigital ? uncalibrated() : config.calibration.value_or(uncalibrated());
    profile.inputGain = gains_.inputGain(config);
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

std::vector<ChannelInfo> ChannelList::channelInfos() const {
    std::vector<ChannelInfo> infos{mainChannelInfo()};
    for (const ChannelConfig& config : settings_.extraChannels()) {
        infos.push_back(info(config));
    }
    return infos;
}

std::vector<ChannelInfo> ChannelList::activeChannelInfos() const {
    auto infos = channelInfos();
    std::erase_if(infos, [](const ChannelInfo& channel) { return !channel.isEnabled; });
    return infos;
}

const ChannelConfig* ChannelList::extraChannel(const UUID& id) const {
    const std::vector<ChannelConfig>& channels = settings_.extraChannels();
    // Whoever goes through the channels asks for one several times and then for the next.
    for (const std::size_t i : {lastFound_, lastFound_ + 1}) {
        if (i < channels.size() && channels[i].id == id) {
            lastFound_ = i;
            return &channels[i];
        }
    }
    const auto found = std::ranges::find(channels, id, &ChannelConfig::id);
    if (found == channels.end()) {
        return nullptr;
    }
    lastFound_ = static_cast<std::size_t>(found - channels.begin());
    return &*found;
}

std::optional<ChannelInfo> ChannelList::channelInfo(const UUID& id) const {
    if (id == UUID::main()) {
        return mainChannelInfo();
    }
    const ChannelConfig* channel = extraChannel(id);
    return channel != nullptr ? std::optional(info(*channel)) : std::nullopt;
}

UUID ChannelList::resolvedChannelID(const UUID& id) const {
    return extraChannel(id) != nullptr ? id : UUID::main();
}

bool ChannelList::measuresLoudness(const UUID& id) const {
    if (id == UUID::main()) {
        return settings_.mainInputMeasuresLoudness();
    }
    const ChannelConfig* channel = extraChannel(id);
    return channel != nullptr && channel->measuresLoudness;
}

std::string ChannelList::inputDescription(const ChannelInfo& channel) const {
    std::string device = devices_.displayName(channel.deviceUID);
    if (devices_.channelCount(channel.deviceUID) < 2) {
        return device;
    }
    const bool isSystemOutput = channel.deviceUID == systemOutputUID;
    if (channel.rightChannelIndex) {
        return isSystemOutput ? device + " (stereo)"
                              : fmt::format("{} (inputs {}+{}, stereo)", device,
                                            inputNumber(channel.channelIndex),
                                            inputNumber(*channel.rightChannelIndex));
    }
    if (isSystemOutput) {
        return device + (channel.channelIndex == 0 ? " (left)" : " (right)");
    }
    return fmt::format("{} (channel {})", device, inputNumber(channel.channelIndex));
}

}  // namespace TarvaneApp
