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

void ChannelCalibration::calibrateReference(double knownSPL, const UUID& id) {
    if (!(knownSPL >= 0.0 && knownSPL <= largestReferenceSPL)) {
        errorMessage_.tell("Enter a reference SPL between 0 and 200 dB.");
        return;
    }
    const auto channel = channels_.channelInfo(id);
    const auto levelDB = channel ? run_.level(displays_.meterMetric(id), id) : std::nullopt;
    if (!levelDB) {
        errorMessage_.tell("Start audio input and play the reference tone before calibrating.");
        return;
    }
    // Without the calibration in force, so that an old one never feeds into the new one.
    const double rawLevelDB = *levelDB - channel->calibration.broadbandOffsetDB();
    if (!(std::isfinite(rawLevelDB) && rawLevelDB > lowestCalibratorLevelDB)) {
        errorMessage_.tell(
            "No signal detected — make sure the reference tone/calibrator is running.");
        return;
    }
    if (std::abs(knownSPL - rawLevelDB) > largestOffsetDB) {
        errorMessage_.tell("That reference level doesn't match the measured signal.");
        return;
    }

    ReferenceCalibration::Measurement measurement{.measuredDBFS = rawLevelDB,
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
        return;
    }
    channels_.updateChannel(id, [&](ChannelConfig& config) {
        ownProfile(config).reference = reference;
        config.isDigital = false;  // what has been calibrated measures sound
    });
}

void ChannelCalibration::loadMicCalFile(const std::filesystem::path& path, const UUID& id) {
    try {
        const MicCalFile file = MicCalFile::read(path);
        editCalibration(id, [&](CalibrationProfile& profile) { profile.micCalFile = file; });
    } catch (const std::runtime_error& error) {
        errorMessage_.tell(error.what());
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
