// The devices' own gains. They are read when a channel's device or input changes and followed
// while the device is there, so that a gain turned at the device doesn't move a calibrated
// channel's reading.
//
// A gain that is set is only asked for: what it becomes is told by the audio system, as it is when
// another program sets it. Main thread only.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "AudioIO/AudioSystem.h"
#include "Engine/ErrorMessage.h"
#include "Engine/InputDevices.h"
#include "Engine/MainThreadQueue.h"
#include "Engine/MeterSettings.h"
#include "Settings/Published.h"

namespace TarvaneApp {

class InputGains {
  public:
    /// All of it outlives this.
    struct Environment {
        TarvaneKit::AudioSystem& audio;
        MeterSettings& settings;
        const InputDevices& devices;
        MainThreadQueue& mainThread;
        ErrorMessage& errorMessage;
    };
    explicit InputGains(const Environment& environment)
        : audio_(environment.audio),
          settings_(environment.settings),
          devices_(environment.devices),
          mainThread_(environment.mainThread),
          errorMessage_(environment.errorMessage) {}

    /// The main input's volume, 0 to 1.
    Published<std::optional<float>> currentInputVolumeScalar;
    Published<std::optional<TarvaneKit::InputGainState>> currentInputGain;
    /// The extra channels' gains, by the device's uid (empty for the default input), "#" and the
    /// input's number.
    Published<std::map<std::string, TarvaneKit::InputGainState>> deviceGains;

    void refreshInputVolume();
    void refreshDeviceGains();

    /// Absent where the channel's device reports none.
    std::optional<TarvaneKit::InputGainState> inputGain(const ChannelConfig& channel) const;
    /// On both inputs of a pair. A device that doesn't take it is told in the error message, and
    /// what that says is given back.
    std::optional<std::string> setInputGain(double gainDB, const ChannelConfig& channel);
    /// The same for the main input.
    std::optional<std::string> setInputGain(double gainDB);
    std::optional<std::string> setInputVolume(float volume);

  private:
    struct Observation {
        std::uint32_t deviceID = 0;
        std::vector<int> channels;
        std::unique_ptr<TarvaneKit::InputVolumeObservation> observation;
    };

    std::vector<int> mainChannels() const;
    std::string refuse(const std::string& control);
    void setCurrentInputGain(const std::optional<TarvaneKit::InputGainState>& gain);

    TarvaneKit::AudioSystem& audio_;
    MeterSettings& settings_;
    const InputDevices& devices_;
    MainThreadQueue& mainThread_;
    ErrorMessage& errorMessage_;
    std::optional<Observation> mainObservation_;
    std::vector<Observation> deviceObservations_;  // the extra channels', one per device
};

}  // namespace TarvaneApp
