#include "Engine/ChannelCalibration.h"

#include <cmath>

#include "Calibration/MicCalFile.h"
#include "Engine/CalibrationProfiles.h"

namespace TarvaneApp {

using CalibrationProfiles::largestOffsetDB;
using CalibrationProfiles::largestReferenceSPL;
using TarvaneKit::CalibrationProfile;
using TarvaneKit::MicCalFile;
using TarvaneKit::ReferenceCalibration;
using TarvaneKit::systemOutputUID;
using TarvaneKit::UUID;

namespace {

// At or below this there is no signal to calibrate on.
constexpr double lowestCalibratorLevelDB = -200.0;

bool isSignal(double levelDBFS) {
    return std::isfinite(levelDBFS) && levelDBFS > lowestCalibratorLevelDB;
}

CalibrationProfile& ownProfile(ChannelConfig& channel) {
    if (!channel.calibration) {
        channel.calibration.emplace().name = channel.name;
    }
    return *channel.calibration;
}

}  // namespace

void ChannelCalibration::editCalibration(const UUID& id,
                                         const std::function<void(CalibrationProfile&)>& edit) {
    if (id == UUID::main()) {
        auto profile = settings_.calibration();
        edit(profile);
        settings_.calibration.set(std::move(profile));
    } else {
        channels_.updateChannel(id, [&](ChannelConfig& channel) { edit(ownProfile(channel)); });
    }
}

bool ChannelCalibration::hasProfile(const UUID& id) const {
    const ChannelConfig* channel = channels_.extraChannel(id);
    return id == UUID::main() || (channel != nullptr && channel->calibration);
}

std::string ChannelCalibration::refuse(std::string reason) {
    errorMessage_.tell(reason);
    return reason;
}

// Without the calibration in force, so that an old one never feeds into a new one.
std::optional<double> ChannelCalibration::runningLevelDBFS(const UUID& id) const {
    const auto channel = channels_.channelInfo(id);
    const auto levelDB = channel ? run_.level(displays_.meterMetric(id), id) : std::nullopt;
    return levelDB ? std::optional(*levelDB - channel->calibration.broadbandOffsetDB())
                   : std::nullopt;
}

std::optional<double> ChannelCalibration::uncalibratedLevelDBFS(const UUID& id) const {
    const auto levelDBFS = runningLevelDBFS(id);
    return levelDBFS && isSignal(*levelDBFS) ? levelDBFS : std::nullopt;
}

std::optional<std::string> ChannelCalibration::calibrateReference(double knownSPL, const UUID& id) {
    if (!(knownSPL >= 0.0 && knownSPL <= largestReferenceSPL)) {
        return refuse("Enter a reference SPL between 0 and 200 dB.");
    }
    const auto levelDBFS = runningLevelDBFS(id);
    if (!levelDBFS) {
        return refuse("Start audio input and play the reference tone before calibrating.");
    }
    if (!isSignal(*levelDBFS)) {
        return refuse("No signal detected — make sure the reference tone/calibrator is running.");
    }
    if (std::abs(knownSPL - *levelDBFS) > largestOffsetDB) {
        return refuse("That reference level doesn't match the measured signal.");
    }

    const auto channel = channels_.channelInfo(id);
    ReferenceCalibration::Measurement measurement{.measuredDBFS = *levelDBFS,
                                                  .knownSPL = knownSPL,
                                                  .deviceUID = channel->deviceUID,
                                                  .deviceName = {},
                                                  .inputGainDB = {},
                                                  .now = clock_.now()};
    const auto& gain =
        id == UUID::main() ? gains_.currentInputGain() : channel->calibration.inputGain;
    if (gain) {
        measurement.inputGainDB = gain->currentDB;
    }
    if (id != UUID::main()) {
        measurement.deviceName = devices_.displayName(channel->deviceUID);
    } else if (channel->deviceUID) {
        if (const auto* device = devices_.listed(*channel->deviceUID)) {
            measurement.deviceName = device->name;
        }
    }
    const auto reference = ReferenceCalibration::fromReference(measurement);
    if (id == UUID::main()) {
        editCalibration(id, [&](CalibrationProfile& profile) { profile.reference = reference; });
        return std::nullopt;
    }
    channels_.updateChannel(id, [&](ChannelConfig& config) {
        ownProfile(config).reference = reference;
        config.isDigital = false;  // what has been calibrated measures sound
    });
    return std::nullopt;
}

std::optional<std::string> ChannelCalibration::loadMicCalFile(const std::filesystem::path& path,
                                                              const UUID& id) {
    try {
        const MicCalFile file = MicCalFile::read(path);
        editCalibration(id, [&](CalibrationProfile& profile) { profile.micCalFile = file; });
        return std::nullopt;
    } catch (const std::runtime_error& error) {
        return refuse(error.what());
    }
}

void ChannelCalibration::clearMicCalFile(const UUID& id) {
    if (hasProfile(id)) {
        editCalibration(id, [](CalibrationProfile& profile) { profile.micCalFile.reset(); });
    }
}

void ChannelCalibration::clearReferenceCalibration(const UUID& id) {
    if (hasProfile(id)) {
        editCalibration(id, [](CalibrationProfile& profile) { profile.reference.reset(); });
    }
}

bool ChannelCalibration::isDigitalSource(const UUID& id) const {
    if (id == UUID::main()) {
        return settings_.mainInputIsDigital();
    }
    const ChannelConfig* channel = channels_.extraChannel(id);
    return channel != nullptr && (channel->isDigital || channel->deviceUID == systemOutputUID);
}

void ChannelCalibration::setDigitalSource(bool isDigital, const UUID& id) {
    if (id == UUID::main()) {
        settings_.mainInputIsDigital.set(isDigital);
    } else {
        channels_.updateChannel(id, [&](ChannelConfig& config) { config.isDigital = isDigital; });
    }
}

}  // namespace TarvaneApp
