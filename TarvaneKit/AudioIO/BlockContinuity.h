// Whether blocks of audio follow each other without a gap, by the clock of what they come from.
//
// Each block comes with the clock's reading at its beginning. The next one begins where it ends,
// or later when a turn of the audio graph was passed over: then audio is missing. Two things look
// like a gap and are none. A resampled block is some frames longer or shorter than its share of
// the time, and its resampler fills up first. And a turn that is late reads the clock when that has
// gone on to the next turn already; the turn after it then seems to begin too early by as much. So
// what is less than half a block counts only when it adds up, and a gap is told two blocks after it
// was seen, less what these take back.
#pragma once

#include <array>
#include <cstdint>
#include <optional>

namespace TarvaneKit {

class BlockContinuity {
  public:
    static constexpr int blocksToWait = 2;

    /// A block that stands for `blockTicks` of the clock begins at `ticks`. Returns the ticks that
    /// are missing ahead of it, or of the two blocks before, and weren't told yet.
    double missingTicks(std::uint64_t ticks, double blockTicks);
    /// What comes next doesn't follow on what came. Returns what is left to tell of the time
    /// before, but for a block's length, which may be a late turn's.
    double restart();

  private:
    double gapAhead(std::uint64_t ticks, double jitter);
    void takeBack(double ticks);

    std::optional<std::uint64_t> lastTicks_;
    double lastBlockTicks_ = 0;
    double drift_ = 0;                         // gaps that were too small to count
    std::array<double, blocksToWait> seen_{};  // the newest first
};

}  // namespace TarvaneKit
