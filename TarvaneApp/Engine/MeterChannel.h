// What a channel keeps between ticks and across runs, so that a display bound to it stays bound.
//
// Displays read it; the run owns it and alone reaches what feeds it. Main thread only, but for the
// processor's own threads.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "Calibration/CalibrationProfile.h"
#include "Core/Date.h"
#include "Core/UUID.h"
#include "Engine/LiveMeterData.h"
#include "Metering/ChannelFrame.h"
#include "Metrics/SPLHistoryRecorder.h"

namespace TarvaneTests {
struct EngineInsides;  // what tests reach and no control may
}

namespace TarvaneApp {

class ChannelProcessor;

class MeterChannel {
  public:
    explicit MeterChannel(const TarvaneKit::UUID& channelID) : id(channelID) {}

    const TarvaneKit::UUID id;
    LiveMeterData live;
    double sampleRate = 48000.0;
    /// What the channel was fed from, in the words of a report.
    std::optional<std::string> levelHistoryInputDescription;

    /// The levels of the session; made at first use.
    const TarvaneKit::SPLHistoryRecorder& levelHistory() const { return recorder(); }
    /// Whether there is a session to report, without making a history for the answer.
    bool hasLevelHistory() const { return levelHistory_ != nullptr && !levelHistory_->isEmpty(); }
    /// Whether a source fed it in this run, or in the last one.
    bool hasProcessor() const { return processor != nullptr; }

  private:
    friend class Run;
    friend struct TarvaneTests::EngineInsides;

    TarvaneKit::SPLHistoryRecorder& recorder() const;

    /// Present from a successful start on; stays after a stop, unfed.
    std::shared_ptr<ChannelProcessor> processor;
    /// The profile in force, for the analysis: shared, since a microphone file is long.
    std::shared_ptr<const TarvaneKit::CalibrationProfile> calibration;
    /// The session's begin on the clock that doesn't step.
    TarvaneKit::Date levelHistoryBegan;
    /// Seconds since then that the history has had: it never goes back.
    double recordedUpTo = 0.0;

    /// The tick that asked for its analysis last.
    std::uint64_t lastTick = 0;

    std::optional<TarvaneKit::Date> lastClipDate;
    bool clippedSinceReset = false;
    std::optional<TarvaneKit::Date> lastInputMeterUpdate;
    std::optional<TarvaneKit::Date> inputPeakHoldDate;
    std::optional<TarvaneKit::Date> heldRingAlertDate;

    /// Arrays that the displays no longer need, for the next analysis to fill.
    ChannelFrame spareFrame;

    mutable std::unique_ptr<TarvaneKit::SPLHistoryRecorder> levelHistory_;
};

}  // namespace TarvaneApp
