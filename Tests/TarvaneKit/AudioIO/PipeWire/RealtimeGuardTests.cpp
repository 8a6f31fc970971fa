#include "Support/RealtimeGuard.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <mutex>

#include "Core/RealtimeScope.h"

namespace TarvaneTests {
namespace RealtimeGuardTests {

// Written where the compiler can't see that nobody reads it, so that the allocation stays.
void* volatile sink = nullptr;

TEST(RealtimeGuard, countsAllocationsInsideAScopeOnly) {
    const auto before = RealtimeGuard::counts();
    sink = std::malloc(100);
    std::free(sink);
    EXPECT_EQ(RealtimeGuard::counts(), before);
    {
        const TarvaneKit::RealtimeScope scope;
        sink = std::malloc(100);
        std::free(sink);
        sink = new int(1);
        delete static_cast<int*>(sink);
    }
    const auto after = RealtimeGuard::counts();
    EXPECT_EQ(after.allocations - before.allocations, 2);
    EXPECT_EQ(after.releases - before.releases, 2);
}

TEST(RealtimeGuard, countsLocksInsideAScopeWhereItCan) {
    std::mutex mutex;
    const auto before = RealtimeGuard::counts();
    {
        const TarvaneKit::RealtimeScope outer;
        const TarvaneKit::RealtimeScope inner;
        const std::scoped_lock lock(mutex);
    }
    EXPECT_EQ(RealtimeGuard::counts().locks - before.locks, RealtimeGuard::countsLocks() ? 1 : 0);
    EXPECT_EQ(TarvaneKit::RealtimeScope::depth(), 0);
}

}  // namespace RealtimeGuardTests
}  // namespace TarvaneTests
