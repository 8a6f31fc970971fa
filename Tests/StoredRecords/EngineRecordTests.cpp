// The laws of coding, for every record of the engine.
#include "ChannelConfig.h"
#include "ChannelDisplaySettings.h"
#include "ChannelWindowLayout.h"
#include "LoudnessTarget.h"
#include "SpectrogramColorStop.h"
#include "SpectrogramRanges.h"
#include "Support/CodingLaws.h"

namespace TarvaneKit::Testing {

using namespace TarvaneApp;

using EngineRecords = testing::Types<ChannelConfig, ChannelDisplaySettings, ChannelWindowLayout,
                                     LoudnessTarget, LoudnessColors, SpectrogramColorStop,
                                     SpectrogramColorPreset, SpectrogramRange, SpectrogramRanges>;
INSTANTIATE_TYPED_TEST_SUITE_P(Engine, CodingLaws, EngineRecords, RecordName);

}  // namespace TarvaneKit::Testing
