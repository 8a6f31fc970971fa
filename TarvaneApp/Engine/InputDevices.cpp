#include "Engine/InputDevices.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace TarvaneApp {

using TarvaneKit::AudioInputDevice;
using TarvaneKit::systemOutputUID;
using TarvaneKit::TransportType;

namespace {

// The system's output is captured in stereo.
constexpr int systemOutputChannels = 2;

// Words in the names of network and loopback devices.
constexpr std::array<std::string_view, 5> digitalNames{"dante", "blackhole", "loopback",
                                                       "soundflower", "virtual"};

std::string lowerCase(std::string text) {
    std::ranges::transform(text, text.begin(), [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    });
    return text;
}

}  // namespace

const AudioInputDevice* InputDevices::listed(const std::string& uid) const {
    const auto device = std::ranges::find(available(), uid, &AudioInputDevice::uid);
    return device != available().end() ? &*device : nullptr;
}

const AudioInputDevice* InputDevices::defaultInput() const {
    const auto id = audio_.defaultInputDeviceID();
    const auto device =
        id ? std::ranges::find(available(), *id, &AudioInputDevice::id) : available().end();
    return device != available().end() ? &*device : nullptr;
}

std::optional<std::uint32_t> InputDevices::id(const std::optional<std::string>& uid) const {
    if (!uid) {
        return audio_.defaultInputDeviceID();
    }
    const AudioInputDevice* device = listed(*uid);
    return *uid != systemOutputUID && device != nullptr ? std::optional(device->id) : std::nullopt;
}

std::string InputDevices::displayName(const std::optional<std::string>& uid) const {
    if (!uid) {
        return "Default Input";
    }
    if (*uid == systemOutputUID) {
        return "System Output";
    }
    const AudioInputDevice* device = listed(*uid);
    return device != nullptr ? device->name : "Unavailable Device";
}

bool InputDevices::isConnected(const std::optional<std::string>& uid) const {
    return uid ? *uid == systemOutputUID || listed(*uid) != nullptr : defaultInput() != nullptr;
}

std::optional<std::string> InputDevices::inWords(const std::optional<std::string>& uid) const {
    if (uid == systemOutputUID) {
        return defaultOutputInWords(displayName(uid));
    }
    if (uid && isConnected(uid)) {
        return displayName(uid);
    }
    const AudioInputDevice* byDefault = defaultInput();
    return byDefault != nullptr
               ? std::optional(defaultInputInWords(byDefault->name, uid.has_value()))
               : std::nullopt;
}

std::string InputDevices::defaultInputInWords(const std::string& name, bool standsIn) {
    return name + (standsIn ? " (default; the chosen device isn't connected)" : " (default)");
}

// Which is followed when it changes.
std::string InputDevices::defaultOutputInWords(const std::string& name) {
    return name + " (the default output)";
}

int InputDevices::channelCount(const std::optional<std::string>& uid) const {
    if (uid == systemOutputUID) {
        return systemOutputChannels;
    }
    if (uid) {
        if (const AudioInputDevice* device = listed(*uid)) {
            return device->channelCount;
        }
    }
    const auto defaultDevice = audio_.defaultInputDeviceID();
    return defaultDevice ? std::max(audio_.inputChannelCount(*defaultDevice), 1) : 1;
}

bool InputDevices::isLikelyDigitalSource(const std::optional<std::string>& uid) const {
    if (uid == systemOutputUID) {
        return true;
    }
    std::optional<std::uint32_t> device;
    std::string name;
    if (!uid) {
        device = audio_.defaultInputDeviceID();
    } else if (const AudioInputDevice* found = listed(*uid)) {
        device = found->id;
        name = lowerCase(found->name);
    } else {
        return false;
    }
    if (device && audio_.transportType(*device) == TransportType::virtualDevice) {
        return true;
    }
    return std::ranges::any_of(
        digitalNames, [&](std::string_view word) { return name.find(word) != std::string::npos; });
}

}  // namespace TarvaneApp
