// What a programme's loudness is held against, and the colours of being above, on or below it.
// At the moment of use a target becomes an ordinary table of thresholds, so that one lookup
// colours every reading.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Core/Coding.h"
#include "Core/RGBAColor.h"
#include "Metrics/TrafficLightConfig.h"

namespace TarvaneApp {

struct LoudnessColors {
    TarvaneKit::RGBAColor aboveTarget = TarvaneKit::SignalColors::red;
    TarvaneKit::RGBAColor onTarget = TarvaneKit::SignalColors::green;
    TarvaneKit::RGBAColor belowTarget = TarvaneKit::SignalColors::yellow;
    TarvaneKit::RGBAColor truePeakOver = TarvaneKit::SignalColors::red;
    TarvaneKit::RGBAColor truePeakWithin = TarvaneKit::SignalColors::green;

    bool operator==(const LoudnessColors&) const = default;
};

struct LoudnessTarget {
    std::string name;
    double targetLUFS = 0.0;
    /// Half the width of the window that counts as on target.
    double toleranceLU = 0.0;
    double truePeakCeilingDBTP = 0.0;

    /// In the order of the menu; the first one is the default.
    static const std::vector<LoudnessTarget>& presets();

    /// Equal to no preset in every field.
    bool isCustom() const;
    /// "Custom" for a custom target, whatever its name.
    std::string_view menuName() const;
    /// With the name of the preset that has its numbers, or "Custom": for a target that was edited.
    LoudnessTarget namedByItsNumbers() const;

    /// On target from `targetLUFS` − `toleranceLU` up to, and without, `targetLUFS` +
    /// `toleranceLU`.
    TarvaneKit::TrafficLightConfig trafficLight(const LoudnessColors& colors) const;

    /// A reading exactly at the ceiling is within it, and so is one that doesn't exist.
    TarvaneKit::RGBAColor truePeakColor(double truePeakDBTP, const LoudnessColors& colors) const;

    bool operator==(const LoudnessTarget&) const = default;
};

}  // namespace TarvaneApp

template <>
struct TarvaneKit::Coding<TarvaneApp::LoudnessTarget> {
    using Record = TarvaneApp::LoudnessTarget;
    static constexpr auto keys = std::tuple{
        required("name", &Record::name),
        required("targetLUFS", &Record::targetLUFS),
        required("toleranceLU", &Record::toleranceLU),
        required("truePeakCeilingDBTP", &Record::truePeakCeilingDBTP),
    };
};

template <>
struct TarvaneKit::Coding<TarvaneApp::LoudnessColors> {
    using Record = TarvaneApp::LoudnessColors;
    static constexpr auto keys = std::tuple{
        defaulted("aboveTarget", &Record::aboveTarget),
        defaulted("onTarget", &Record::onTarget),
        defaulted("belowTarget", &Record::belowTarget),
        defaulted("truePeakOver", &Record::truePeakOver),
        defaulted("truePeakWithin", &Record::truePeakWithin),
    };
};
