// The devices that there are: their list, names, inputs and kinds. Main thread only.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "AudioIO/AudioInputDevice.h"
#include "AudioIO/AudioSystem.h"
#include "Settings/Published.h"

namespace TarvaneApp {

class InputDevices {
  public:
    /// The audio system outlives this.
    explicit InputDevices(TarvaneKit::AudioSystem& audio) : audio_(audio) {}

    Published<std::vector<TarvaneKit::AudioInputDevice>> available;

    /// Reads the list anew. Throws an `AudioIOError`, and then the last good list stays.
    void refresh() { available.set(audio_.availableInputDevices()); }

    /// The listed device of that uid, or null.
    const TarvaneKit::AudioInputDevice* listed(const std::string& uid) const;
    /// The default input, or null.
    const TarvaneKit::AudioInputDevice* defaultInput() const;
    /// Of the device whose gain and kind can be asked for: absent for one that isn't there and for
    /// the system's output. An absent uid is the default input.
    std::optional<std::uint32_t> id(const std::optional<std::string>& uid) const;
    std::string displayName(const std::optional<std::string>& uid) const;
    /// Inputs of the device; for an absent or unknown uid those of the default input, at least 1.
    int channelCount(const std::optional<std::string>& uid) const;
    /// Whether the device is a network feed, a loopback or the like, that starts out as digital.
    bool isLikelyDigitalSource(const std::optional<std::string>& uid) const;

  private:
    TarvaneKit::AudioSystem& audio_;
};

}  // namespace TarvaneApp
