// What a source has captured since its start, and what it has lost, where.
#pragma once

#include <cstdint>

namespace TarvaneKit {

struct CaptureStatistics {
    std::int64_t blocks = 0;  ///< that came from the server, those dropped here included
    std::int64_t frames = 0;
    std::int64_t droppedBlocks = 0;  ///< because the capture thread was more than a second late
    std::int64_t droppedFrames = 0;
    std::int64_t missedTicks = 0;  ///< ticks of the graph's clock for which no block came

    bool operator==(const CaptureStatistics&) const = default;
};

}  // namespace TarvaneKit
