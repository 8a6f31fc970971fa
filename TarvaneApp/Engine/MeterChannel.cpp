#include "Engine/MeterChannel.h"

#include "Metering/ChannelProcessor.h"

namespace TarvaneApp {

using TarvaneKit::SPLHistoryRecorder;

namespace {

// Four hours in tenths of a second; a longer session halves its resolution.
constexpr double firstBucketSeconds = 0.1;
constexpr int mostBuckets = 144000;
// Until the Slow detectors stand.
constexpr double settleSeconds = 3.0;

}  // namespace

SPLHistoryRecorder& MeterChannel::recorder() const {
    if (!levelHistory_) {
        levelHistory_ = std::make_unique<SPLHistoryRecorder>(
            ChannelProcessor::recordedMetrics(), firstBucketSeconds, mostBuckets, settleSeconds);
    }
    return *levelHistory_;
}

}  // namespace TarvaneApp
