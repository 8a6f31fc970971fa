// The names of the sound level meter's readings, and calibrations of a known offset.
#pragma once

#include <vector>

#include "Calibration/CalibrationProfile.h"
#include "Metrics/SPLMetric.h"

namespace TarvaneKit::Testing {

inline CalibrationProfile calibrationWithOffsetDB(double offsetDB) {
    CalibrationProfile profile;
    profile.reference.emplace().offsetDB = offsetDB;
    return profile;
}

inline std::vector<SPLMetric> allLevelMetrics() {
    std::vector<SPLMetric> metrics;
    for (const Weighting weighting : allCases<Weighting>()) {
        for (const TimeWeighting timeWeighting : allCases<TimeWeighting>()) {
            metrics.push_back(SPLMetric::spl(weighting, timeWeighting));
        }
    }
    return metrics;
}

inline std::vector<SPLMetric> allPeakMetrics() {
    std::vector<SPLMetric> metrics;
    for (const Weighting weighting : allCases<Weighting>()) {
        metrics.push_back(SPLMetric::peak(weighting));
    }
    return metrics;
}

}  // namespace TarvaneKit::Testing
