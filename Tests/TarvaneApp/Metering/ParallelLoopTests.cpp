#include "Metering/ParallelLoop.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <mutex>
#include <set>
#include <thread>
#include <vector>

namespace TarvaneApp {
namespace ParallelLoopTests {

// Runs a loop whose every iteration waits until all have begun, so that each needs a thread of
// its own; returns these threads.
std::set<std::thread::id> threadsOfLoopThatNeeds(int threads, ParallelLoop& loop) {
    std::mutex lock;
    std::set<std::thread::id> seen;
    std::atomic<int> begun{0};
    loop.run(threads, [&](int) {
        {
            const std::lock_guard hold(lock);
            seen.insert(std::this_thread::get_id());
        }
        ++begun;
        begun.notify_all();
        for (int count = begun; count < threads; count = begun) {
            begun.wait(count);
        }
    });
    return seen;
}

TEST(ParallelLoop, callsEachIterationOnceAndReturnsAfterTheLast) {
    for (const int helpers : {0, 1, 3}) {
        ParallelLoop loop(helpers);
        for (int round = 0; round < 300; ++round) {
            const int count = round % 17;
            std::vector<int> calls(static_cast<std::size_t>(count));
            loop.run(count, [&](int i) { ++calls[static_cast<std::size_t>(i)]; });
            EXPECT_EQ(std::ranges::count(calls, 1), count);
        }
    }
}

TEST(ParallelLoop, ofTwoIterationsInvolvesTheCallerAndOneHelperOfFour) {
    ParallelLoop loop(4);
    std::set<std::thread::id> seen;
    for (int round = 0; round < 500; ++round) {
        seen.merge(threadsOfLoopThatNeeds(2, loop));
    }
    EXPECT_EQ(seen.size(), 2U);
    EXPECT_TRUE(seen.contains(std::this_thread::get_id()));
}

// A helper that a short loop before called in vain must hear the next loop's call: these loops
// only end when all that they call have come.
TEST(ParallelLoop, getsAllTheHelpersItNeedsWhateverLoopsTheyMissed) {
    ParallelLoop loop(3);
    for (int round = 0; round < 1000; ++round) {
        for (int missed = 0; missed < round % 4; ++missed) {
            loop.run(2 + missed, [](int) {});
        }
        const int threads = 2 + round % 3;
        EXPECT_EQ(std::ssize(threadsOfLoopThatNeeds(threads, loop)), threads);
    }
}

TEST(ParallelLoop, endsWithItsHelpersAsleepOrJustCalled) {
    for (int round = 0; round < 100; ++round) {
        ParallelLoop loop(3);
        if (round % 2 == 0) {
            loop.run(4, [](int) {});
        }
    }
}

TEST(ParallelLoop, withoutHelpersRunsOnTheCaller) {
    ParallelLoop loop(0);
    std::set<std::thread::id> seen;
    loop.run(5, [&](int) { seen.insert(std::this_thread::get_id()); });
    EXPECT_EQ(seen, std::set{std::this_thread::get_id()});
}

}  // namespace ParallelLoopTests
}  // namespace TarvaneApp
