// The ring that the audio callback writes into, and those before it that aren't read to their end
// yet: what is pushed stays in order when the layout changes.
//
// `write` belongs to the audio callback and is wait-free. `append` belongs to the owner, and no
// `write` may be running meanwhile. The rest belongs to the capture thread.
#pragma once

#include <atomic>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>

#include "Core/SampleRing.h"

namespace TarvaneKit {

class RingSuccession {
  public:
    explicit RingSuccession(std::unique_ptr<SampleRing> first);

    /// False when the newest ring was full and the block is lost.
    bool write(const float* const* channels, int frameCount, std::int64_t missingFrames) noexcept;
    /// What is written from now on goes into this ring.
    void append(std::unique_ptr<SampleRing> ring);

    /// The oldest block of the ring that is read.
    std::optional<SampleRing::Block> front() noexcept { return current_->front(); }
    void pop() noexcept { current_->pop(); }
    std::optional<std::int64_t> missingBehind(int blockCount) noexcept {
        return current_->missingBehind(blockCount);
    }
    /// No more blocks come into the ring that is read.
    bool isSucceeded();
    /// After a `front` that gave nothing: goes on to the next ring, unless a block has come into
    /// this one since. True when there may be a block now; false when there is no other ring.
    bool advance();

  private:
    // Written by the owner while no write runs, read by the audio callback.
    std::atomic<SampleRing*> newest_ = nullptr;
    std::unique_ptr<SampleRing> current_;  // the capture thread's
    // Guards the rings that follow the current one; held for a pointer's exchange.
    std::mutex mutex_;
    std::deque<std::unique_ptr<SampleRing>> waiting_;
};

}  // namespace TarvaneKit
