// An extra channel as it is stored. The main input has none: its settings are fields of the
// engine.
#pragma once

#include <optional>
#include <string>

#include "Calibration/CalibrationProfile.h"
#include "Core/Coding.h"
#include "Core/RGBAColor.h"
#include "Core/UUID.h"
#include "Records/ChannelDisplaySettings.h"
#include "Records/SpectrogramRanges.h"

namespace TarvaneApp {

struct ChannelConfig {
    TarvaneKit::UUID id = TarvaneKit::UUID::random();
    std::string name = "Channel";
    /// Absent: the default input device.
    std::optional<std::string> deviceUID;
    /// Zero-based input of the device; the left one of a pair.
    int channelIndex = 0;
    TarvaneKit::RGBAColor color{0.3, 0.7, 1.0, 1.0};
    /// Only enabled channels run.
    bool isEnabled = true;
    /// The source has no acoustic meaning, so the channel has no SPL calibration.
    bool isDigital = true;
    std::optional<TarvaneKit::CalibrationProfile> calibration;
    SpectrogramRanges spectrogramRanges;
    bool ringOutEnabled = false;
    /// The channel is the pair of `channelIndex` and `rightChannelIndex`.
    bool isStereo = false;
    int rightChannelIndex = 1;
    bool measuresLoudness = false;
    /// Absent: the channel follows the main input's display settings.
    std::optional<ChannelDisplaySettings> display;

    bool operator==(const ChannelConfig&) const = default;
};

}  // namespace TarvaneApp

template <>
struct TarvaneKit::Coding<TarvaneApp::ChannelConfig> {
    using Record = TarvaneApp::ChannelConfig;
    static constexpr auto keys = std::tuple{
        required("id", &Record::id),
        defaulted("name", &Record::name),
        optional("deviceUID", &Record::deviceUID),
        defaulted("channelIndex", &Record::channelIndex),
        defaulted("color", &Record::color),
        defaulted("isEnabled", &Record::isEnabled),
        defaulted("isDigital", &Record::isDigital),
        optional("calibration", &Record::calibration),
        defaulted("spectrogramRanges", &Record::spectrogramRanges),
        defaulted("ringOutEnabled", &Record::ringOutEnabled),
        defaulted("isStereo", &Record::isStereo),
        defaulted("rightChannelIndex", &Record::rightChannelIndex),
        defaulted("measuresLoudness", &Record::measuresLoudness),
        optional("display", &Record::display),
    };
    /// The defaults that follow from other members: ring-out by the kind of source, the right
    /// input beside the left one, the colour ranges from the single range of old records.
    static void complete(Record& record, const JSONValue& object);
};
