#include "Metrics/TrafficLightConfig.h"

#include <algorithm>
#include <functional>

namespace TarvaneKit {

TrafficLightConfig TrafficLightConfig::create(std::string name, std::vector<TrafficLightBand> bands,
                                              RGBAColor belowAllColor) {
    std::ranges::stable_sort(bands, std::greater{}, &TrafficLightBand::thresholdDB);
    return {std::move(name), std::move(bands), belowAllColor};
}

const TrafficLightConfig& TrafficLightConfig::defaultSPL() {
    static const TrafficLightConfig config = create(
        "Default", {{100.0, SignalColors::red}, {85.0, SignalColors::yellow}}, SignalColors::green);
    return config;
}

const TrafficLightConfig& TrafficLightConfig::defaultDBFS() {
    static const TrafficLightConfig config =
        create("Default dBFS", {{-3.0, SignalColors::red}, {-12.0, SignalColors::yellow}},
               SignalColors::green);
    return config;
}

RGBAColor TrafficLightConfig::color(double forLevelDB) const {
    for (const TrafficLightBand& band : bands) {
        if (band.thresholdDB <= forLevelDB) {
            return band.color;
        }
    }
    return belowAllColor;
}

}  // namespace TarvaneKit
