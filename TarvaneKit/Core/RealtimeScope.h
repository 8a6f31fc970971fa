// Marks code that runs on the platform's real-time audio thread, where nothing may wait: no
// lock, no allocation, no system call but a wake-up. The mark is a counter of this thread alone;
// what it costs is one increment and one decrement. Tests watch it and count what breaks the rule.
#pragma once

namespace TarvaneKit {

class RealtimeScope {
  public:
    RealtimeScope() noexcept { ++depth_; }
    ~RealtimeScope() { --depth_; }
    RealtimeScope(const RealtimeScope&) = delete;
    RealtimeScope& operator=(const RealtimeScope&) = delete;

    /// How many scopes the calling thread is in.
    static int depth() noexcept { return depth_; }

  private:
    static constinit inline thread_local int depth_ = 0;
};

}  // namespace TarvaneKit
