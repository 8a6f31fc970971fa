#include "Records/ThresholdEditing.h"

#include <algorithm>
#include <cmath>

#include "Core/Contract.h"

namespace TarvaneApp {

using TarvaneKit::TrafficLightConfig;

double upperLimitDB(const TrafficLightConfig& config, std::size_t band,
                    const ThresholdRange& range) {
    TARVANE_PRECONDITION(band < config.bands.size());
    return band == 0 ? range.highestDB
                     : std::min(range.highestDB, config.bands[band - 1].thresholdDB);
}

TrafficLightConfig withThreshold(TrafficLightConfig config, std::size_t band, double thresholdDB,
                                 const ThresholdRange& range) {
    if (!std::isfinite(thresholdDB)) {
        return config;
    }
    const double set = std::min(std::round(thresholdDB), upperLimitDB(config, band, range));
    config.bands[band].thresholdDB = set;
    for (std::size_t below = band + 1; below < config.bands.size(); ++below) {
        config.bands[below].thresholdDB = std::min(config.bands[below].thresholdDB, set);
    }
    return config;
}

}  // namespace TarvaneApp
