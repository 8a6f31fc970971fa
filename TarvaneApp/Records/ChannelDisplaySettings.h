// A channel's view of the display controls: what its readouts and graphs show, and in which unit.
#pragma once

#include <optional>
#include <string>

#include "Core/Coding.h"
#include "Core/RGBAColor.h"
#include "DSP/OctaveFraction.h"
#include "DSP/RingOutSensitivity.h"
#include "DSP/Weighting.h"
#include "Records/DisplayEnums.h"
#include "TargetCurves/BuiltInCurves.h"

namespace TarvaneApp {

struct ChannelDisplaySettings {
    bool showsDBFS = false;
    SpectrumViewMode viewMode = SpectrumViewMode::both;
    TarvaneKit::OctaveFraction octaveFraction = TarvaneKit::OctaveFraction::thirdOctave;
    bool octaveNormalized = true;
    bool showsPeakHold = true;
    TarvaneKit::RGBAColor peakHoldColor{1.0, 0.6, 0.2, 1.0};
    TarvaneKit::RingOutSensitivity ringOutSensitivity = TarvaneKit::RingOutSensitivity::normal;
    std::optional<std::string> targetCurveName = "X-Curve (SMPTE ST202 / ISO 2969)";
    double targetCurveReferenceDB = 85.0;
    double targetCurveReferenceDBFS = -20.0;
    MetricMode metricMode = MetricMode::spl;
    TarvaneKit::Weighting splWeighting = TarvaneKit::Weighting::a;
    TarvaneKit::TimeWeighting splTimeWeighting = TarvaneKit::TimeWeighting::fast;
    TarvaneKit::Weighting peakWeighting = TarvaneKit::Weighting::c;

    /// The built-in curve of that name; absent without a name, or with one that no curve has.
    std::optional<TarvaneKit::TargetCurve> targetCurve() const {
        return targetCurveName ? TarvaneKit::BuiltInCurves::named(*targetCurveName) : std::nullopt;
    }

    /// Whether the main readout shows another metric: the channel's min and max then mean
    /// something else and start over.
    bool metricDiffers(const ChannelDisplaySettings& from) const {
        return metricMode != from.metricMode || splWeighting != from.splWeighting ||
               splTimeWeighting != from.splTimeWeighting || peakWeighting != from.peakWeighting;
    }

    bool operator==(const ChannelDisplaySettings&) const = default;
};

}  // namespace TarvaneApp

/// A missing `targetCurveName` reads as no curve, whereas a new record has the X-Curve's.
template <>
struct TarvaneKit::Coding<TarvaneApp::ChannelDisplaySettings> {
    using Record = TarvaneApp::ChannelDisplaySettings;
    static constexpr auto keys = std::tuple{
        defaulted("showsDBFS", &Record::showsDBFS),
        defaulted("viewMode", &Record::viewMode),
        defaulted("octaveFraction", &Record::octaveFraction),
        defaulted("octaveNormalized", &Record::octaveNormalized),
        defaulted("showsPeakHold", &Record::showsPeakHold),
        defaulted("peakHoldColor", &Record::peakHoldColor),
        defaulted("ringOutSensitivity", &Record::ringOutSensitivity),
        optional("targetCurveName", &Record::targetCurveName),
        defaulted("targetCurveReferenceDB", &Record::targetCurveReferenceDB),
        defaulted("targetCurveReferenceDBFS", &Record::targetCurveReferenceDBFS),
        defaulted("metricMode", &Record::metricMode),
        defaulted("splWeighting", &Record::splWeighting),
        defaulted("splTimeWeighting", &Record::splTimeWeighting),
        defaulted("peakWeighting", &Record::peakWeighting),
    };
};
