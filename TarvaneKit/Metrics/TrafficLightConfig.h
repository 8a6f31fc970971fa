// From a level to its colour: a table of thresholds.
#pragma once

#include <string>
#include <vector>

#include "Core/Coding.h"
#include "Core/RGBAColor.h"

namespace TarvaneKit {

struct TrafficLightBand {
    double thresholdDB = 0.0;
    RGBAColor color;

    bool operator==(const TrafficLightBand&) const = default;
};

struct TrafficLightConfig {
    std::string name;
    /// Descending by threshold. A decoded record is trusted as it stands.
    std::vector<TrafficLightBand> bands;
    RGBAColor belowAllColor;

    /// Sorts the bands, equal thresholds keeping their given order.
    static TrafficLightConfig create(std::string name, std::vector<TrafficLightBand> bands,
                                     RGBAColor belowAllColor);

    /// For readings in dB SPL: red from 100, yellow from 85.
    static const TrafficLightConfig& defaultSPL();
    /// For readings in dBFS: red from −3, yellow from −12.
    static const TrafficLightConfig& defaultDBFS();

    /// The colour of the first band whose threshold the level reaches. NaN, and a level that
    /// reaches none, give `belowAllColor`.
    RGBAColor color(double forLevelDB) const;

    bool operator==(const TrafficLightConfig&) const = default;
};

template <>
struct Coding<TrafficLightBand> {
    static constexpr auto keys = std::tuple{
        required("thresholdDB", &TrafficLightBand::thresholdDB),
        required("color", &TrafficLightBand::color),
    };
};

template <>
struct Coding<TrafficLightConfig> {
    static constexpr auto keys = std::tuple{
        required("name", &TrafficLightConfig::name),
        required("bands", &TrafficLightConfig::bands),
        required("belowAllColor", &TrafficLightConfig::belowAllColor),
    };
};

}  // namespace TarvaneKit
