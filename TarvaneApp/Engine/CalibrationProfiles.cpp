#include "Engine/CalibrationProfiles.h"

#include <algorithm>
#include <cmath>
#include <vector>

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

// As a file that was parsed has them.
void keepPossible(std::vector<TarvaneKit::MicCalibrationPoint>& points) {
    std::erase_if(points, [](const auto& point) {
        return !std::isfinite(point.frequencyHz) || !isOffset(point.magnitudeDB);
    });
    std::ranges::stable_sort(points, {}, &TarvaneKit::MicCalibrationPoint::frequencyHz);
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
    if (profile.micCalFile) {
        keepPossible(profile.micCalFile->points);
    }
    if (!(profile.micCalFileReferenceSPL >= 0.0 &&
          profile.micCalFileReferenceSPL <= largestReferenceSPL)) {
        profile.micCalFileReferenceSPL = usualReferenceSPL;
    }
    return profile;
}

}  // namespace TarvaneApp
