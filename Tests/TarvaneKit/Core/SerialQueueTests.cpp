#include "Core/SerialQueue.h"

#include <gtest/gtest.h>

#include <atomic>
#include <numeric>
#include <thread>
#include <vector>

namespace TarvaneKit {
namespace SerialQueueTests {

TEST(SerialQueue, runsWhatItIsGivenInOrderOnOneOtherThread) {
    std::vector<int> order;
    std::vector<std::thread::id> threads;
    std::atomic<bool> done = false;
    SerialQueue queue("org.brenlow.tarvane.test");
    for (int i = 0; i < 100; ++i) {
        queue.post([&, i] {
            order.push_back(i);
            threads.push_back(std::this_thread::get_id());
        });
    }
    queue.post([&] {
        done = true;
        done.notify_one();
    });
    done.wait(false);
    std::vector<int> expected(100);
    std::iota(expected.begin(), expected.end(), 0);
    EXPECT_EQ(order, expected);
    for (const auto& thread : threads) {
        EXPECT_EQ(thread, threads.front());
        EXPECT_NE(thread, std::this_thread::get_id());
    }
}

TEST(SerialQueue, endingItWaitsForTheWorkAtHand) {
    std::atomic<bool> began = false;
    std::atomic<bool> ended = false;
    {
        SerialQueue queue("org.brenlow.tarvane.test");
        queue.post([&] {
            began = true;
            began.notify_one();
            std::this_thread::yield();
            ended = true;
        });
        began.wait(false);
    }
    EXPECT_TRUE(ended);
}

}  // namespace SerialQueueTests
}  // namespace TarvaneKit
