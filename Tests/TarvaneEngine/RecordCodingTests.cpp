// The laws of coding, for every record of the engine.
#include "ChannelConfig.h"
#include "ChannelDisplaySettings.h"
#include "LoudnessTarget.h"
#include "SpectrogramRanges.h"
#include "Support/CodingLaws.h"

namespace TarvaneKit::Testing {

using namespace TarvaneApp;

using EngineRecords = testing::Types<ChannelConfig, ChannelDisplaySettings, LoudnessTarget,
                                     LoudnessColors, SpectrogramRange, SpectrogramRanges>;
INSTANTIATE_TYPED_TEST_SUITE_P(Engine, CodingLaws, EngineRecords, RecordName);

}  // namespace TarvaneKit::Testing
