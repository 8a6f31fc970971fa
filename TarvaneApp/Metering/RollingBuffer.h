// The newest samples of one signal, oldest first, for an analysis that may come late.
//
// When nobody takes samples for so long that more than 65536 would be kept, only the newest
// 16384 stay. The samples lie in one piece, which creeps through the storage and is moved back to
// its front now and then. While the analysis keeps up it stays inside the front third, so that the
// buffers of many channels fit a cache. Guarded by its owner.
#pragma once

#include <algorithm>
#include <memory>
#include <span>

namespace TarvaneApp {

class RollingBuffer {
  public:
    static constexpr int limit = 65536;
    static constexpr int remainder = 16384;

    /// Samples held, at most `limit`.
    int count() const { return end_ - begin_; }

    /// Gets the storage; holds nothing afterwards. The only operation that allocates.
    void allocate();
    /// Forgets the samples and keeps the storage.
    void clear() { begin_ = end_ = 0; }
    void append(std::span<const float> block);
    /// Copies the newest `into.size()` samples, oldest first; at most `count()`.
    void copyNewest(std::span<float> into) const;
    /// Forgets all but the newest `kept`.
    void keepNewest(int kept) { begin_ = std::max(begin_, end_ - kept); }

  private:
    std::unique_ptr<float[]> storage_;  // of `limit`; only what was written is backed by memory
    int begin_ = 0;
    int end_ = 0;
};

}  // namespace TarvaneApp
