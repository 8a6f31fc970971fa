// Which calibration profiles may be in force. Numbers beyond the limits come from a mistake or a
// damaged store.
#pragma once

#include "Calibration/CalibrationProfile.h"

namespace TarvaneApp::CalibrationProfiles {

constexpr double largestOffsetDB = 300.0;
constexpr double largestReferenceSPL = 200.0;
constexpr double usualReferenceSPL = 94.0;

/// Of every channel that carries no acoustic level or was never calibrated.
const TarvaneKit::CalibrationProfile& uncalibrated();

/// Drops what would break every reading; the rest of the profile stays.
TarvaneKit::CalibrationProfile sanitized(TarvaneKit::CalibrationProfile profile);

}  // namespace TarvaneApp::CalibrationProfiles
