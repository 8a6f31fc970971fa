// The hand-over of audio blocks from the platform's real-time thread to a capture thread.
//
// Who writes: one thread, the platform's audio callback, by `write`. It never waits: a block
// either fits and is copied, or the ring is full and the new block is dropped and counted.
// Who reads: one thread, the capture thread, by `front` and `pop`. It gets pointers straight into
// the ring; the samples stay there until `pop`. It may take as long as it likes: up to the ring's
// capacity nothing is lost by its being late.
// What may be lost: whole blocks, the newest ones, and only while the ring is full. A block is
// never cut, reordered or delivered in parts.
// Who may wait: nobody in here. Waking the reader is its owner's business.
//
// How: the ring holds records, each a header with the block's length and what is missing ahead of
// it, and the planar samples of the block, contiguous. A record that would cross the end starts at
// 0 again, and a header of no frames marks the skipped rest. Two counters of floats ever written
// and ever read say what is in the ring. The writer stores `written_` with release after the
// samples are in place, the reader loads it with acquire before it looks at them; `read_` goes the
// same way back, so that the writer reuses only what the reader has let go. Each side keeps the
// last value it saw of the other's counter, and loads it anew only when that isn't enough, so that
// the two rarely touch one cache line.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace TarvaneKit {

class SampleRing {
  public:
    /// A block inside the ring, valid until `pop`.
    struct Block {
        const float* const* channels = nullptr;  ///< `[channel][frame]`
        int channelCount = 0;
        int frameCount = 0;
        std::int64_t missingFrames = 0;  ///< ahead of this block
    };

    /// Room for `capacityFrames` frames of every channel in blocks of 16 to `largestBlockFrames`
    /// frames, however these are mixed. All memory is taken and touched here.
    SampleRing(int channelCount, int capacityFrames, int largestBlockFrames);

    int channelCount() const { return channelCount_; }

    /// Writer. Copies one block of `[channel][frame]`; a null channel counts as silence.
    /// `missingFrames` of audio are lost between the last block and this one; the record carries
    /// them. False when the block didn't fit and was dropped. Blocks of no frames are passed over.
    bool write(const float* const* channels, int frameCount,
               std::int64_t missingFrames = 0) noexcept;

    /// Reader. The oldest block, or empty when there is none.
    std::optional<Block> front() noexcept;
    /// Reader. What is missing ahead of the block that lies so many behind the oldest; empty when
    /// there is none yet.
    std::optional<std::int64_t> missingBehind(int blockCount) noexcept;
    /// Reader. Lets go of the block that `front` gave.
    void pop() noexcept;

    /// Any thread.
    std::int64_t droppedBlocks() const { return droppedBlocks_.load(std::memory_order_relaxed); }
    std::int64_t droppedFrames() const { return droppedFrames_.load(std::memory_order_relaxed); }

  private:
    std::size_t recordSize(int frameCount) const noexcept;
    std::size_t reserve(std::size_t size) noexcept;

    const int channelCount_;
    std::vector<float> storage_;

    static constexpr std::size_t cacheLine = 64;

    // The writer's side.
    alignas(cacheLine) std::atomic<std::uint64_t> written_ = 0;
    std::uint64_t readSeen_ = 0;
    std::atomic<std::int64_t> droppedBlocks_ = 0;
    std::atomic<std::int64_t> droppedFrames_ = 0;

    // The reader's side.
    alignas(cacheLine) std::atomic<std::uint64_t> read_ = 0;
    std::uint64_t writtenSeen_ = 0;
    std::vector<const float*> pointers_;
};

}  // namespace TarvaneKit
