// From digital level to dB SPL: by a reference tone, by a microphone file, or not at all.
//
// The main input's profile is a setting of its own, another channel's is in its record. A new one
// reaches the running meters with their next block and the spectra with the next analysis. Main
// thread only.
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "Engine/ChannelDisplays.h"
#include "Engine/ChannelList.h"
#include "Engine/Clock.h"
#include "Engine/ErrorMessage.h"
#include "Engine/InputDevices.h"
#include "Engine/InputGains.h"
#include "Engine/MeterSettings.h"
#include "Engine/Run.h"

namespace TarvaneApp {

class ChannelCalibration {
  public:
    /// All of it outlives this.
    struct Environment {
        const Clock& clock;
        MeterSettings& settings;
        const InputDevices& devices;
        const InputGains& gains;
        ChannelList& channels;
        const ChannelDisplays& displays;
        const Run& run;
        ErrorMessage& errorMessage;
    };
    explicit ChannelCalibration(const Environment& environment)
        : clock_(environment.clock),
          settings_(environment.settings),
          devices_(environment.devices),
          gains_(environment.gains),
          channels_(environment.channels),
          displays_(environment.displays),
          run_(environment.run),
          errorMessage_(environment.errorMessage) {}

    // What stands in the way of the first two is told in the error message and given back, and
    // nothing changes.

    /// Takes the channel's level as that of a tone of known SPL.
    std::optional<std::string> calibrateReference(double knownSPL, const TarvaneKit::UUID& id);
    /// Takes a microphone file.
    std::optional<std::string> loadMicCalFile(const std::filesystem::path& path,
                                              const TarvaneKit::UUID& id);
    /// The level that `calibrateReference` would take, without the calibration in force; absent
    /// without a live signal.
    std::optional<double> uncalibratedLevelDBFS(const TarvaneKit::UUID& id) const;
    void clearMicCalFile(const TarvaneKit::UUID& id);
    void clearReferenceCalibration(const TarvaneKit::UUID& id);
    /// Whether the channel's source has no acoustic level. The system's output never has.
    bool isDigitalSource(const TarvaneKit::UUID& id) const;
    void setDigitalSource(bool isDigital, const TarvaneKit::UUID& id);

  private:
    /// Edits the channel's profile, and makes one first for an extra channel that has none.
    void editCalibration(const TarvaneKit::UUID& id,
                         const std::function<void(TarvaneKit::CalibrationProfile&)>& edit);
    bool hasProfile(const TarvaneKit::UUID& id) const;
    /// Absent where the channel isn't running.
    std::optional<double> runningLevelDBFS(const TarvaneKit::UUID& id) const;
    std::string refuse(std::string reason);

    const Clock& clock_;
    MeterSettings& settings_;
    const InputDevices& devices_;
    const InputGains& gains_;
    ChannelList& channels_;
    const ChannelDisplays& displays_;
    const Run& run_;
    ErrorMessage& errorMessage_;
};

}  // namespace TarvaneApp
