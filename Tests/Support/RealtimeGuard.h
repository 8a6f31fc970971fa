// Counts what breaks the real-time rule: allocations, releases and waits for locks on a thread
// that is inside a RealtimeScope.
//
// Linked into a test program, it stands in front of malloc and its family and of the pthread
// calls that may wait, for the program and every library in it. Where a sanitizer owns malloc the
// guard asks it for its hooks instead, and locks, which the sanitizer intercepts itself, are not
// counted: `countsLocks` says so.
#pragma once

#include <cstdint>

namespace TarvaneTests {

class RealtimeGuard {
  public:
    struct Counts {
        std::int64_t allocations = 0;
        std::int64_t releases = 0;
        std::int64_t locks = 0;

        bool operator==(const Counts&) const = default;
    };

    /// Inside scopes, on all threads together, since the program's start.
    static Counts counts();
    static bool countsLocks();
};

}  // namespace TarvaneTests
