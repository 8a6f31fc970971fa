// A channel as its configuration stands at one moment: a start takes one per channel, a tick
// takes fresh ones.
#pragma once

#include <optional>
#include <string>

#include "Calibration/CalibrationProfile.h"
#include "Core/RGBAColor.h"
#include "Core/UUID.h"

namespace TarvaneApp {

struct ChannelInfo {
    TarvaneKit::UUID id;
    std::string name;
    std::optional<std::string> deviceUID;
    int channelIndex = 0;
    /// Present when stereo.
    std::optional<int> rightChannelIndex;
    TarvaneKit::RGBAColor color;
    bool isEnabled = true;
    bool ringOutEnabled = false;
    /// The profile in force.
    TarvaneKit::CalibrationProfile calibration;
    bool measuresLoudness = false;
};

}  // namespace TarvaneApp
