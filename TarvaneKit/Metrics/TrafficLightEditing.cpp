#include "Metrics/TrafficLightEditing.h"

#include <algorithm>
#include <cmath>

#include "Core/Contract.h"

namespace TarvaneKit {

namespace {

// A slider of no length can't be drawn or moved.
constexpr double minimumSliderSpanDB = 1.0;

}  // namespace

double thresholdLimitDB(const TrafficLightConfig& config, int index, ThresholdRange range) {
    TARVANE_PRECONDITION(index >= 0 && std::cmp_less(index, config.bands.size()));
    if (index == 0) {
        return range.topDB;
    }
    return std::min(range.topDB, config.bands[static_cast<std::size_t>(index) - 1].thresholdDB);
}

ThresholdSlider thresholdSlider(const TrafficLightConfig& config, int index, ThresholdRange range) {
    const double limitDB = thresholdLimitDB(config, index, range);
    const double thresholdDB = config.bands[static_cast<std::size_t>(index)].thresholdDB;
    return {.valueDB = std::max(std::min(thresholdDB, limitDB), range.bottomDB),
            .bottomDB = range.bottomDB,
            .topDB = std::max(limitDB, range.bottomDB + minimumSliderSpanDB)};
}

void setThreshold(TrafficLightConfig& config, int index, double thresholdDB, ThresholdRange range) {
    const double limitDB = thresholdLimitDB(config, index, range);
    if (!std::isfinite(thresholdDB)) {
        return;
    }
    const double newDB = std::min(std::round(thresholdDB), limitDB);
    config.bands[static_cast<std::size_t>(index)].thresholdDB = newDB;
    for (std::size_t later = static_cast<std::size_t>(index) + 1; later < config.bands.size();
         ++later) {
        double& laterDB = config.bands[later].thresholdDB;
        laterDB = std::min(laterDB, newDB);
    }
}

}  // namespace TarvaneKit
