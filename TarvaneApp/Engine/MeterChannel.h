// What a channel keeps between ticks and across runs, so that a display bound to it stays
// bound. Owned by the engine; main thread only, but for the processor's own threads.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "Calibration/CalibrationProfile.h"
#include "Core/Date.h"
#include "Core/UUID.h"
#include "Engine/LiveMeterData.h"
#include "Metering/ChannelFrame.h"
#include "Metering/ChannelProcessor.h"
#include "Metrics/SPLHistoryRecorder.h"

namespace TarvaneApp {

struct MeterChannel {
    explicit MeterChannel(const TarvaneKit::UUID& channelID) : id(channelID) {}

    const TarvaneKit::UUID id;
    LiveMeterData live;
    /// Present from a successful start on; stays after a stop, unfed.
    std::shared_ptr<ChannelProcessor> processor;
    double sampleRate = 48000.0;
    /// The profile in force, for the analysis: shared, since a microphone file is long.
    std::shared_ptr<const TarvaneKit::CalibrationProfile> calibration;

    /// The levels of the session; made at first use.
    TarvaneKit::SPLHistoryRecorder& levelHistory();
    /// The session's begin on the clock that doesn't step.
    TarvaneKit::Date levelHistoryBegan;
    /// What the channel was fed from, in the words of a report.
    std::optional<std::string> levelHistoryInputDescription;

    std::optional<TarvaneKit::Date> lastClipDate;
    bool clippedSinceReset = false;
    std::optional<TarvaneKit::Date> lastInputMeterUpdate;
    std::optional<TarvaneKit::Date> inputPeakHoldDate;
    std::optional<TarvaneKit::Date> heldRingAlertDate;

    /// Arrays that the displays no longer need, for the next analysis to fill.
    ChannelFrame spareFrame;

  private:
    std::unique_ptr<TarvaneKit::SPLHistoryRecorder> levelHistory_;
};

}  // namespace TarvaneApp
