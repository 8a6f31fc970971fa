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
    /// Whether there is what the uid stands for; an absent uid is the default input.
    bool isConnected(const std::optional<std::string>& uid) const;
    /// What a start opens for the main input of that uid, in words, as "UMIK-2 (default)". Absent
    /// where there is nothing to open.
    std::optional<std::string> inWords(const std::optional<std::string>& uid) const;
    /// A default in words: the input, and whether it stands in for a device that isn't connected;
    /// the output.
    static std::string defaultInputInWords(const std::string& name, bool standsIn);
    static std::string defaultOutputInWords(const std::string& name);
    /// Inputs of the device; for an absent or unknown uid those of the default input, at least 1.
    int channelCount(const std::optional<std::string>& uid) const;
    /// Whether the device is a network feed, a loopback or the like, that starts out as digital.
    bool isLikelyDigitalSource(const std::optional<std::string>& uid) const;

  private:
    TarvaneKit::AudioSystem& audio_;
};

}  // namespace TarvaneApp
