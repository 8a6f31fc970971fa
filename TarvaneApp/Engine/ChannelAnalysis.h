// What crosses the border between the main thread and a tick's analysis.
#pragma once

#include <memory>

namespace TarvaneApp {

class ChannelProcessor;

/// One per tick. The main thread never touches analysis state: it raises a counter, and the
/// analysis that sees a new value resets itself.
struct AnalysisSettings {
    int smoothingGeneration = 0;
    int peakHoldGeneration = 0;
    int timingGeneration = 0;
    int calibrationGeneration = 0;
};

/// One per channel and tick.
struct ChannelAnalysisRequest {
    std::shared_ptr<ChannelProcessor> processor;
};

/// What comes back.
struct ChannelFrame {
    /// Largest absolute sample of either side since the last frame.
    float peak = 0.0F;
};

}  // namespace TarvaneApp
