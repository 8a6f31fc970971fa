// How a table of thresholds is edited, so that its bands stay in descending order: a band can't
// pass the one above it, and takes those below it along on its way down. Equal thresholds are
// allowed.
#pragma once

#include <cstddef>

#include "Metrics/TrafficLightConfig.h"

namespace TarvaneApp {

/// Which thresholds can be set, in dB.
struct ThresholdRange {
    double lowestDB;
    double highestDB;
};

inline constexpr ThresholdRange splThresholds{0.0, 140.0};
inline constexpr ThresholdRange dbfsThresholds{-120.0, 0.0};

/// The highest threshold that the band can have: that of the band above it, within the range.
double upperLimitDB(const TarvaneKit::TrafficLightConfig& config, std::size_t band,
                    const ThresholdRange& range);

/// The table with the band at a whole number of dB, at most its upper limit. A threshold that is
/// not finite changes nothing.
TarvaneKit::TrafficLightConfig withThreshold(TarvaneKit::TrafficLightConfig config,
                                             std::size_t band, double thresholdDB,
                                             const ThresholdRange& range);

}  // namespace TarvaneApp
