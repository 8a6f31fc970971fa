#include "Engine/CalibrationProfiles.h"

#include <cmath>

namespace TarvaneApp {

const TarvaneKit::CalibrationProfile& CalibrationProfiles::uncalibrated() {
    static const TarvaneKit::CalibrationProfile profile{.name = "Uncalibrated",
                                                        .micCalFile = {},
                                                        .reference = {},
                                                        .micCalFileReferenceSPL = usualReferenceSPL,
                                                        .inputGain = {}};
    return profile;
}

namespace {

// Written so that a value that is no number fails.
bool isOffset(double offsetDB) {
    return std::abs(offsetDB) <= CalibrationProfiles::largestOffsetDB;
}

}  // namespace

TarvaneKit::CalibrationProfile CalibrationProfiles::sanitized(
    TarvaneKit::CalibrationProfile profile) {
    if (profile.reference && !isOffset(profile.reference->offsetDB)) {
        profile.reference.reset();
    }
    if (profile.reference && profile.reference->inputGainDB &&
        !isOffset(*profile.reference->inputGainDB)) {
        profile.reference->inputGainDB.reset();
    }
    if (profile.micCalFile && profile.micCalFile->sensFactorDB &&
        !isOffset(*profile.micCalFile->sensFactorDB)) {
        profile.micCalFile->sensFactorDB.reset();
    }
    if (!(profile.micCalFileReferenceSPL >= 0.0 &&
          profile.micCalFileReferenceSPL <= largestReferenceSPL)) {
        profile.micCalFileReferenceSPL = usualReferenceSPL;
    }
    return profile;
}

}  // namespace TarvaneApp
