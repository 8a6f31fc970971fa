#include "Records/LoudnessTarget.h"

#include <algorithm>

namespace TarvaneApp {

namespace {

constexpr std::string_view customName = "Custom";

}  // namespace

const std::vector<LoudnessTarget>& LoudnessTarget::presets() {
    static const std::vector<LoudnessTarget> presets{
        {.name = "EBU R128 (−23 LUFS)",
         .targetLUFS = -23.0,
         .toleranceLU = 1.0,
         .truePeakCeilingDBTP = -1.0},
        {.name = "ATSC A/85 (−24 LKFS)",
         .targetLUFS = -24.0,
         .toleranceLU = 2.0,
         .truePeakCeilingDBTP = -2.0},
        {.name = "Streaming (−14 LUFS)",
         .targetLUFS = -14.0,
         .toleranceLU = 1.0,
         .truePeakCeilingDBTP = -1.0},
        {.name = "Podcast (−16 LUFS)",
         .targetLUFS = -16.0,
         .toleranceLU = 1.0,
         .truePeakCeilingDBTP = -1.0},
    };
    return presets;
}

bool LoudnessTarget::isCustom() const {
    return std::ranges::find(presets(), *this) == presets().end();
}

std::string_view LoudnessTarget::menuName() const {
    return isCustom() ? customName : std::string_view(name);
}

LoudnessTarget LoudnessTarget::namedByItsNumbers() const {
    for (const LoudnessTarget& preset : presets()) {
        LoudnessTarget renamed = *this;
        renamed.name = preset.name;
        if (renamed == preset) {
            return preset;
        }
    }
    LoudnessTarget custom = *this;
    custom.name = customName;
    return custom;
}

TarvaneKit::TrafficLightConfig LoudnessTarget::trafficLight(const LoudnessColors& colors) const {
    return TarvaneKit::TrafficLightConfig::create(name,
                                                  {{targetLUFS + toleranceLU, colors.aboveTarget},
                                                   {targetLUFS - toleranceLU, colors.onTarget}},
                                                  colors.belowTarget);
}

TarvaneKit::RGBAColor LoudnessTarget::truePeakColor(double truePeakDBTP,
                                                    const LoudnessColors& colors) const {
    return truePeakCeilingDBTP < truePeakDBTP ? colors.truePeakOver : colors.truePeakWithin;
}

}  // namespace TarvaneApp
