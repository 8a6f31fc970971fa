// What a channel keeps between ticks and across runs, so that a display bound to it stays
// bound. Owned by the engine; main thread only, but for the processor's own threads.
#pragma once

#include <memory>
#include <optional>

#include "ChannelProcessor.h"
#include "Core/Date.h"
#include "Core/UUID.h"
#include "LiveMeterData.h"

namespace TarvaneApp {

struct MeterChannel {
    explicit MeterChannel(const TarvaneKit::UUID& channelID) : id(channelID) {}

    const TarvaneKit::UUID id;
    LiveMeterData live;
    /// Present from a successful start on; stays after a stop, unfed.
    std::shared_ptr<ChannelProcessor> processor;
    double sampleRate = 48000.0;
    std::optional<TarvaneKit::Date> lastClipDate;
    bool clippedSinceReset = false;
    std::optional<TarvaneKit::Date> lastInputMeterUpdate;
    std::optional<TarvaneKit::Date> inputPeakHoldDate;
};

}  // namespace TarvaneApp
