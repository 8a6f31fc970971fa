// The table that colours a channel's level, and how to get from the level to the table's scale.
#pragma once

#include "Metrics/TrafficLightConfig.h"

namespace TarvaneApp {

struct ActiveTrafficLight {
    TarvaneKit::TrafficLightConfig config;
    double offsetDB = 0.0;  ///< taken off a calibrated level to reach the table's scale
};

}  // namespace TarvaneApp
