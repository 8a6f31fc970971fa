// The newest samples of one signal, oldest first, for an analysis that may come late.
//
// When nobody takes samples for so long that more than 65536 would be kept, only the newest
// 16384 stay. A ring, so that appending copies the block and nothing else. Guarded by its owner.
#pragma once

#include <algorithm>
#include <cstddef>
#include <span>
#include <vector>

namespace TarvaneApp {

class RollingBuffer {
  public:
    static constexpr int limit = 65536;
    static constexpr int remainder = 16384;

    /// Samples held, at most `limit`.
    int count() const { return count_; }

    /// Gets the storage; holds nothing afterwards. The only operation that allocates.
    void allocate();
    /// Forgets the samples and keeps the storage.
    void clear() { count_ = 0; }
    void append(std::span<const float> block);
    /// Copies the newest `into.size()` samples, oldest first; at most `count()`.
    void copyNewest(std::span<float> into) const;
    /// Forgets all but the newest `count`.
    void keepNewest(int count) { count_ = std::min(count_, count); }

  private:
    std::vector<float> ring_;
    int end_ = 0;  // where the next sample goes
    int count_ = 0;
};

}  // namespace TarvaneApp
