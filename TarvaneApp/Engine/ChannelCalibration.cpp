// From digital level to dB SPL. The main input's profile is a setting of its own, another
// channel's is in its record. A new one reaches the running meters with their next block and
// the spectra with the next analysis.

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>

#include "Engine/MeterEngine.h"

namespace TarvaneApp {

using TarvaneKit::AudioInputDevice;
using TarvaneKit::CalibrationProfile;
using TarvaneKit::MicCalFile;
using TarvaneKit::ReferenceCalibration;
using TarvaneKit::systemOutputUID;
using TarvaneKit::TransportType;
using TarvaneKit::UUID;

namespace {

constexpr double largestOffsetDB = 300.0;
constexpr double largestReferenceSPL = 200.0;
constexpr double usualReferenceSPL = 94.0;

// At or below this there is no signal to calibrate on.
constexpr double lowestCalibratorLevelDB = -200.0;

// Words in the names of network and loopback devices.
constexpr std::array<std::string_view, 5> digitalNames{"dante", "blackhole", "loopback",
                                                       "soundflower", "virtual"};

std::string lowerCase(std::string text) {
    std::ranges::transform(text, text.begin(), [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    });
    return text;
}

CalibrationProfile& ownProfile(ChannelConfig& channel) {
    if (!channel.calibration) {
        channel.calibration.emplace().name = channel.name;
    }
    return *channel.calibration;
}

}  // namespace

const CalibrationProfile& MeterEngine::uncalibrated() {
    static const CalibrationProfile profile{.name = "Uncalibrated",
                                            .micCalFile = {},
                                            .reference = {},
                                            .micCalFileReferenceSPL = usualReferenceSPL,
                                            .inputGain = {}};
    return profile;
}

// A stored value that would break every reading is dropped; the rest of the profile stays.
CalibrationProfile MeterEngine::sanitizedCalibration(CalibrationProfile profile) {
    if (profile.reference && !(std::abs(profile.reference->offsetDB) <= largestOffsetDB)) {
        profile.reference.reset();
    }
    if (!(profile.micCalFileReferenceSPL >= 0.0 &&
          profile.micCalFileReferenceSPL <= largestReferenceSPL)) {
        profile.micCalFileReferenceSPL = usualReferenceSPL;
    }
    return profile;
}

void MeterEngine::calibrationChanged() {
    ++calibrationGeneration_;
    for (const ChannelInfo& info : channelInfos()) {
        const auto found = meterChannels_.find(info.id);
        if (found != meterChannels_.end() && found->second->processor) {
            found->second->calibration =
                std::make_shared<const CalibrationProfile>(info.calibration);
            found->second->processor->setCalibration(info.calibration);
        }
    }
}

void MeterEngine::editCalibration(const UUID& id,
                                  const std::function<void(CalibrationProfile&)>& edit) {
    if (id == UUID::main()) {
        auto profile = calibration();
        edit(profile);
        calibration.set(std::move(profile));
    } else {
        updateChannel(id, [&](ChannelConfig& channel) { edit(ownProfile(channel)); });
    }
}

bool MeterEngine::hasProfile(const UUID& id) const {
    const ChannelConfig* channel = extraChannel(id);
    return id == UUID::main() || (channel != nullptr && channel->calibration);
}

void MeterEngine::calibrateReference(double knownSPL, const UUID& id) {
    if (!(knownSPL >= 0.0 && knownSPL <= largestReferenceSPL)) {
        errorMessage.set("Enter a reference SPL between 0 and 200 dB.");
        return;
    }
    const auto channel = channelInfo(id);
    const auto& processor = meterChannel(id).processor;
    // A processor that is no longer fed has a level, but not of a tone that plays now.
    if (!channel || !processor || !processor->isConfigured() || !isRunning() || isPaused()) {
        errorMessage.set("Start audio input and play the reference tone before calibrating.");
        return;
    }
    // Without the calibration in force, so that an old one never feeds into the new one.
    const double rawLevelDB =
        processor->value(meterMetric(id)) - channel->calibration.broadbandOffsetDB();
    if (!(std::isfinite(rawLevelDB) && rawLevelDB > lowestCalibratorLevelDB)) {
        errorMessage.set(
            "No signal detected — make sure the reference tone/calibrator is running.");
        return;
    }
    if (std::abs(knownSPL - rawLevelDB) > largestOffsetDB) {
        errorMessage.set("That reference level doesn't match the measured signal.");
        return;
    }

    ReferenceCalibration::Measurement measurement{.measuredDBFS = rawLevelDB,
                                                  .knownSPL = knownSPL,
                                                  .deviceUID = channel->deviceUID,
                                                  .deviceName = {},
                                                  .inputGainDB = {},
                                                  .now = clock_.now()};
    const auto& gain = id == UUID::main() ? currentInputGain() : channel->calibration.inputGain;
    if (gain) {
        measurement.inputGainDB = gain->currentDB;
    }
    if (id != UUID::main()) {
        measurement.deviceName = deviceDisplayName(channel->deviceUID);
    } else if (channel->deviceUID) {
        const auto device =
            std::ranges::find(availableDevices(), *channel->deviceUID, &AudioInputDevice::uid);
        if (device != availableDevices().end()) {
            measurement.deviceName = device->name;
        }
    }
    const auto reference = ReferenceCalibration::fromReference(measurement);
    if (id == UUID::main()) {
        editCalibration(id, [&](CalibrationProfile& profile) { profile.reference = reference; });
        return;
    }
    updateChannel(id, [&](ChannelConfig& config) {
        ownProfile(config).reference = reference;
        config.isDigital = false;  // what has been calibrated measures sound
    });
}

void MeterEngine::loadMicCalFile(const std::filesystem::path& path, const UUID& id) {
    try {
        const MicCalFile file = MicCalFile::read(path);
        editCalibration(id, [&](CalibrationProfile& profile) { profile.micCalFile = file; });
    } catch (const std::runtime_error& error) {
        errorMessage.set(error.what());
    }
}

void MeterEngine::clearMicCalFile(const UUID& id) {
    if (hasProfile(id)) {
        editCalibration(id, [](CalibrationProfile& profile) { profile.micCalFile.reset(); });
    }
}

void MeterEngine::clearReferenceCalibration(const UUID& id) {
    if (hasProfile(id)) {
        editCalibration(id, [](CalibrationProfile& profile) { profile.reference.reset(); });
    }
}

bool MeterEngine::isDigitalSource(const UUID& id) const {
    if (id == UUID::main()) {
        return mainInputIsDigital();
    }
    const ChannelConfig* channel = extraChannel(id);
    return channel != nullptr && (channel->isDigital || channel->deviceUID == systemOutputUID);
}

void MeterEngine::setDigitalSource(bool isDigital, const UUID& id) {
    if (id == UUID::main()) {
        mainInputIsDigital.set(isDigital);
    } else {
        updateChannel(id, [&](ChannelConfig& config) { config.isDigital = isDigital; });
    }
}

bool MeterEngine::isLikelyDigitalSource(const std::optional<std::string>& uid) const {
    if (uid == systemOutputUID) {
        return true;
    }
    std::optional<std::uint32_t> device;
    std::string name;
    if (!uid) {
        device = audio_.defaultInputDeviceID();
    } else {
        const auto listed = std::ranges::find(availableDevices(), *uid, &AudioInputDevice::uid);
        if (listed == availableDevices().end()) {
            return false;
        }
        device = listed->id;
        name = lowerCase(listed->name);
    }
    if (device && audio_.transportType(*device) == TransportType::virtualDevice) {
        return true;
    }
    return std::ranges::any_of(
        digitalNames, [&](std::string_view word) { return name.find(word) != std::string::npos; });
}

}  // namespace TarvaneApp
