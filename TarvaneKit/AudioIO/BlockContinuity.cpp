#include "AudioIO/BlockContinuity.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace TarvaneKit {

namespace {

// A resampler that fills up is forgotten after so many blocks, and so is one that runs off the
// clock by some millionths; one whose blocks are cut short isn't.
constexpr double driftMemoryBlocks = 64;

}  // namespace

double BlockContinuity::missingTicks(std::uint64_t ticks, double blockTicks) {
    // The graph passes over whole turns, of the length of either block.
    const double gap = gapAhead(ticks, std::min(blockTicks, lastBlockTicks_) / 2);
    lastTicks_ = ticks;
    lastBlockTicks_ = blockTicks;
    takeBack(std::max(-gap, 0.0));
    const double told = seen_.back();
    std::shift_right(seen_.begin(), seen_.end(), 1);
    seen_.front() = std::max(gap, 0.0);
    return told;
}

double BlockContinuity::restart() {
    const double seen = std::accumulate(seen_.begin(), seen_.end(), 0.0);
    seen_ = {};
    drift_ = 0;
    lastTicks_.reset();
    return std::max(seen - std::exchange(lastBlockTicks_, 0), 0.0);
}

// Below 0 where the clock seems to have gone back.
double BlockContinuity::gapAhead(std::uint64_t ticks, double jitter) {
    if (!lastTicks_) {
        return 0;
    }
    const auto step = static_cast<double>(static_cast<std::int64_t>(ticks - *lastTicks_));
    drift_ += step - lastBlockTicks_;
    if (drift_ > jitter || drift_ < -jitter) {
        return std::exchange(drift_, 0);
    }
    drift_ -= drift_ / driftMemoryBlocks;
    return 0;
}

void BlockContinuity::takeBack(double ticks) {
    for (double& gap : seen_) {
        const double taken = std::min(gap, ticks);
        gap -= taken;
        ticks -= taken;
    }
}

}  // namespace TarvaneKit
