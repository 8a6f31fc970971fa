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

// The comparisons are written so that a value that is no number fails them.
TarvaneKit::CalibrationProfile CalibrationProfiles::sanitized(
    TarvaneKit::CalibrationProfile profile) {
    if (profile.reference && !(std::abs(profile.reference->offsetDB) <= largestOffsetDB)) {
        profile.reference.reset();
    }
    if (!(profile.micCalFileReferenceSPL >= 0.0 &&
          profile.micCalFileReferenceSPL <= largestReferenceSPL)) {
        profile.micCalFileReferenceSPL = usualReferenceSPL;
    }
    return profile;
}

}  // namespace TarvaneApp
