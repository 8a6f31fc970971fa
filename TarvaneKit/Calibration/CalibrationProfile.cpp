#include "Calibration/CalibrationProfile.h"

#include <algorithm>

namespace TarvaneKit {

namespace {

std::optional<double> calibratedGainDB(const CalibrationProfile& profile,
                                       const std::optional<InputGainState>& gain) {
    switch (profile.calibrationSource()) {
        case CalibrationSource::referenceTone:
            return profile.reference->inputGainDB;
        case CalibrationSource::micCalFileSensFactor:
            return gain ? std::optional(gain->maxDB) : std::nullopt;
        case CalibrationSource::none:
            break;
    }
    return std::nullopt;
}

double compensationDB(const CalibrationProfile& profile,
                      const std::optional<InputGainState>& gain) {
    const auto calibratedDB = calibratedGainDB(profile, gain);
    return calibratedDB && gain ? *calibratedDB - gain->currentDB : 0.0;
}

}  // namespace

InputGainState InputGainState::create(double currentDB, double maxDB, std::optional<double> minDB,
                                      bool isShared) {
    return {.currentDB = currentDB,
            .maxDB = maxDB,
            .minDB = minDB.value_or(std::min(maxDB, currentDB)),
            .isShared = isShared};
}

ReferenceCalibration ReferenceCalibration::fromReference(const Measurement& measurement) {
    return {.offsetDB = measurement.knownSPL - measurement.measuredDBFS,
            .referenceDeviceUID = measurement.deviceUID,
            .referenceDeviceName = measurement.deviceName,
            .calibratedAt = measurement.now,
            .inputGainDB = measurement.inputGainDB};
}

CalibrationSource CalibrationProfile::calibrationSource() const {
    if (reference) {
        return CalibrationSource::referenceTone;
    }
    if (micCalFile && micCalFile->sensFactorDB) {
        return CalibrationSource::micCalFileSensFactor;
    }
    return CalibrationSource::none;
}

double CalibrationProfile::broadbandOffsetDB(const std::optional<InputGainState>& atGain) const {
    switch (calibrationSource()) {
        case CalibrationSource::referenceTone:
            return reference->offsetDB + compensationDB(*this, atGain);
        case CalibrationSource::micCalFileSensFactor:
            return micCalFileReferenceSPL - *micCalFile->sensFactorDB +
                   aes17SineReferenceCorrectionDB + compensationDB(*this, atGain);
        case CalibrationSource::none:
            break;
    }
    return 0.0;
}

double CalibrationProfile::inputGainCompensationDB() const {
    return compensationDB(*this, inputGain);
}

std::optional<double> CalibrationProfile::calibratedInputGainDB() const {
    return calibratedGainDB(*this, inputGain);
}

bool CalibrationProfile::isStale(const std::optional<std::string>& activeDeviceUID) const {
    return reference && reference->referenceDeviceUID && activeDeviceUID &&
           *reference->referenceDeviceUID != *activeDeviceUID;
}

double CalibrationProfile::micCorrectionDB(double frequencyHz) const {
    return micCalFile ? micCalFile->magnitudeCorrectionDB(frequencyHz) : 0.0;
}

void CalibrationProfile::loadMicCalFile(const std::filesystem::path& path) {
    micCalFile = MicCalFile::read(path);
}

}  // namespace TarvaneKit
