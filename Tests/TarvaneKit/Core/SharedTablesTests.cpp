#include "Core/SharedTables.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

namespace TarvaneKit {
namespace SharedTablesTests {

TEST(SharedTables, areMadeOnceForEachKeyAndAnewWhenNobodyHasThem) {
    SharedTables<int, int> tables;
    int made = 0;
    const auto get = [&](int key) {
        return tables.get(key, [&] {
            ++made;
            return std::make_shared<const int>(10 * key);
        });
    };
    auto first = get(1);
    EXPECT_EQ(get(1), first);
    EXPECT_EQ(*get(2), 20);
    EXPECT_EQ(made, 2);
    first.reset();
    EXPECT_EQ(*get(1), 10);
    EXPECT_EQ(made, 3);
}

TEST(SharedTables, areOneForAllThreads) {
    SharedTables<int, int> tables;
    std::atomic<int> made{0};
    const auto keeper = tables.get(7, [&] { return std::make_shared<const int>(++made); });
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            for (int round = 0; round < 100; ++round) {
                const auto got = tables.get(7, [&] { return std::make_shared<const int>(++made); });
                EXPECT_EQ(got, keeper);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(made, 1);
}

}  // namespace SharedTablesTests
}  // namespace TarvaneKit
