// The laws of coding, for every record of the engine.
#include "Records/ChannelConfig.h"
#include "Records/ChannelDisplaySettings.h"
#include "Records/ChannelWindowLayout.h"
#include "Records/LoudnessTarget.h"
#include "Records/SettingsSnapshot.h"
#include "Records/SpectrogramColorStop.h"
#include "Records/SpectrogramRanges.h"
#include "Support/CodingLaws.h"

namespace TarvaneKit::Testing {

using namespace TarvaneApp;

using EngineRecords =
    testing::Types<ChannelConfig, ChannelDisplaySettings, ChannelWindowLayout, LoudnessTarget,
                   LoudnessColors, SpectrogramColorStop, SpectrogramColorPreset, SpectrogramRange,
                   SpectrogramRanges, SettingsSnapshot, SettingsSnapshot::AudioInput,
                   SettingsSnapshot::TargetCurveChoice, SettingsSnapshot::ChannelChoice>;
INSTANTIATE_TYPED_TEST_SUITE_P(Engine, CodingLaws, EngineRecords, RecordName);

}  // namespace TarvaneKit::Testing
