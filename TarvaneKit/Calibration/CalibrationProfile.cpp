#include "Calibration/CalibrationProfile.h"

#include <algorithm>

namespace TarvaneKit {

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

double CalibrationProfile::broadbandOffsetDB() const {
    switch (calibrationSource()) {
        case CalibrationSource::referenceTone:
            return reference->offsetDB + inputGainCompensationDB();
        case CalibrationSource::micCalFileSensFactor:
            return micCalFileReferenceSPL - *micCalFile->sensFactorDB +
                   aes17SineReferenceCorrectionDB + inputGainCompensationDB();
        case CalibrationSource::none:
            break;
    }
    return 0.0;
}

double CalibrationProfile::inputGainCompensationDB() const {
    const auto calibratedAtDB = calibratedInputGainDB();
    return calibratedAtDB && inputGain ? *calibratedAtDB - inputGain->currentDB : 0.0;
}

std::optional<double> CalibrationProfile::calibratedInputGainDB() const {
    switch (calibrationSource()) {
        case CalibrationSource::referenceTone:
            return reference->inputGainDB;
        case CalibrationSource::micCalFileSensFactor:
            return inputGain ? std::optional(inputGain->maxDB) : std::nullopt;
        case CalibrationSource::none:
            break;
    }
    return std::nullopt;
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
