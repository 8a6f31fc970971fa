#include "AudioIO/CaptureThread.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <vector>

namespace TarvaneKit {
namespace {

using namespace std::chrono_literals;

void waitFor(const std::atomic<int>& value, int expected) {
    while (value.load() < expected) {
        std::this_thread::sleep_for(1ms);
    }
}

TEST(CaptureThread, handsOverBlocksWholeAndInOrder) {
    std::vector<float> received;
    std::atomic<int> blocks = 0;
    CaptureThread thread("test", {.channelCount = 2},
                         [&](const float* const* channels, int count, int frames) {
                             ASSERT_EQ(count, 2);
                             for (int i = 0; i < frames; ++i) {
                                 ASSERT_EQ(channels[1][i], -channels[0][i]);
                                 received.push_back(channels[0][i]);
                             }
                             ++blocks;
                         });
    int next = 1;
    for (int block = 0; block < 500; ++block) {
        std::vector<float> left;
        std::vector<float> right;
        for (int i = 0; i < 1 + block % 60; ++i, ++next) {
            left.push_back(static_cast<float>(next));
            right.push_back(-static_cast<float>(next));
        }
        const float* channels[] = {left.data(), right.data()};
        ASSERT_TRUE(thread.push(channels, static_cast<int>(left.size())));
    }
    waitFor(blocks, 500);
    thread.stop();
    ASSERT_EQ(received.size(), static_cast<std::size_t>(next - 1));
    for (std::size_t i = 0; i < received.size(); ++i) {
        ASSERT_EQ(received[i], static_cast<float>(i + 1));
    }
    EXPECT_EQ(thread.droppedBlocks(), 0);
}

TEST(CaptureThread, stopWaitsForTheHandlerAndDropsTheRest) {
    std::atomic<int> entered = 0;
    std::atomic<int> left = 0;
    CaptureThread thread("test", {}, [&](const float* const*, int, int) {
        ++entered;
        std::this_thread::sleep_for(50ms);
        ++left;
    });
    const float sample = 1;
    const float* channels[] = {&sample};
    for (int i = 0; i < 100; ++i) {
        thread.push(channels, 1);
    }
    waitFor(entered, 1);
    thread.stop();
    const int calls = entered;
    EXPECT_EQ(left, calls);
    EXPECT_LT(calls, 100);
    thread.push(channels, 1);
    thread.stop();
    EXPECT_EQ(entered, calls);
}

TEST(CaptureThread, aSecondOfAudioWaitsForASlowHandlerAndMoreIsCounted) {
    std::atomic<bool> isHeld = true;
    std::atomic<int> frames = 0;
    CaptureThread thread("test",
                         {.channelCount = 1, .sampleRate = 48000, .largestBlockFrames = 256},
                         [&](const float* const*, int, int count) {
                             while (isHeld) {
                                 std::this_thread::sleep_for(1ms);
                             }
                             frames += count;
                         });
    const std::vector<float> block(256, 1.0f);
    const float* channels[] = {block.data()};
    int pushed = 0;
    while (thread.push(channels, 256)) {
        pushed += 256;
    }
    EXPECT_GE(pushed, 48000);
    EXPECT_EQ(thread.droppedBlocks(), 1);
    EXPECT_EQ(thread.droppedFrames(), 256);
    isHeld = false;
    waitFor(frames, pushed);
    EXPECT_TRUE(thread.push(channels, 256));
}

TEST(CaptureThread, anotherLayoutComesAfterAllBlocksOfTheOld) {
    std::vector<int> counts;
    std::atomic<int> blocks = 0;
    CaptureThread thread("test", {.channelCount = 1}, [&](const float* const*, int count, int) {
        std::this_thread::sleep_for(1ms);
        counts.push_back(count);
        ++blocks;
    });
    const float sample = 0;
    const std::vector<const float*> channels(8, &sample);
    std::vector<int> expected;
    for (const int count : {1, 8, 2, 8}) {
        if (count != 1) {
            thread.reopen({.channelCount = count});
        }
        for (int i = 0; i < 20; ++i) {
            thread.push(channels.data(), 1);
            expected.push_back(count);
        }
    }
    waitFor(blocks, 80);
    thread.stop();
    EXPECT_EQ(counts, expected);
}

TEST(CaptureThread, stopsAtAnyMomentOfItsLife) {
    for (int i = 0; i < 300; ++i) {
        CaptureThread thread("test", {.sampleRate = 1000, .largestBlockFrames = 64},
                             [](const float* const*, int, int) {});
        const float sample = 0;
        const float* channels[] = {&sample};
        for (int push = 0; push < i % 5; ++push) {
            thread.push(channels, 1);
        }
    }
}

}  // namespace
}  // namespace TarvaneKit
