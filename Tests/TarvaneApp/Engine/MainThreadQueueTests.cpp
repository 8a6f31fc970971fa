#include <gtest/gtest.h>

#include <QCoreApplication>
#include <algorithm>
#include <atomic>
#include <numeric>
#include <thread>

#include "Engine/MainThreadQueue.h"

namespace TarvaneApp {
namespace MainThreadQueueTests {

TEST(MainThreadQueue, bringsWorkOfManyThreadsToOneInEachOnesOrder) {
    MainThreadQueue queue;
    std::vector<std::vector<int>> arrived(4);
    int count = 0;
    const auto mainThread = std::this_thread::get_id();
    std::vector<std::thread> posters;
    for (std::size_t k = 0; k < arrived.size(); ++k) {
        posters.emplace_back([&, k] {
            for (int i = 0; i < 500; ++i) {
                queue.post([&, k, i] {
                    EXPECT_EQ(std::this_thread::get_id(), mainThread);
                    arrived[k].push_back(i);
                    ++count;
                });
            }
        });
    }
    while (count < 2000) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
    }
    for (std::thread& poster : posters) {
        poster.join();
    }
    for (const auto& sequence : arrived) {
        EXPECT_TRUE(std::ranges::is_sorted(sequence));
    }
}

TEST(MainThreadQueue, dropsWhatHasNotRunWhenItEnds) {
    bool ran = false;
    {
        MainThreadQueue queue;
        queue.post([&] { ran = true; });
    }
    QCoreApplication::processEvents();
    EXPECT_FALSE(ran);
}

}  // namespace MainThreadQueueTests
}  // namespace TarvaneApp
