#include "AudioIO/CaptureThread.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <vector>

namespace TarvaneKit {
namespace CaptureThreadTests {

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

/// What a capture thread called, in order: each block's first sample, and what is missing as its
/// negative. The handler waits while `isHeld`.
struct Calls {
    std::atomic<bool> isHeld = false;
    std::atomic<int> blocks = 0;
    std::vector<std::int64_t> all;

    CaptureThread::Handler onBlock() {
        return [this](const float* const* channels, int, int) {
            while (isHeld) {
                std::this_thread::sleep_for(1ms);
            }
            all.push_back(static_cast<std::int64_t>(channels[0][0]));
            ++blocks;
        };
    }
    CaptureThread::LostHandler onLost() {
        return [this](std::int64_t frames) { all.push_back(-frames); };
    }
};

void push(CaptureThread& thread, int number, int frameCount, std::int64_t missing = 0) {
    const std::vector<float> block(static_cast<std::size_t>(frameCount),
                                   static_cast<float>(number));
    const float* channels[] = {block.data()};
    thread.push(channels, frameCount, missing);
}

TEST(CaptureThread, whatIsMissingIsToldAheadOfTheBlockThatItIsMissingAheadOf) {
    Calls calls;
    CaptureThread thread("test", {}, calls.onBlock(), calls.onLost());
    push(thread, 1, 10);
    push(thread, 2, 10, 256);
    push(thread, 3, 0, 40);  // no block, so it comes with the next
    push(thread, 4, 10, 2);
    push(thread, 5, 10);
    waitFor(calls.blocks, 4);
    thread.stop();
    EXPECT_EQ(calls.all, (std::vector<std::int64_t>{1, -256, 2, -42, 4, 5}));
}

// What is missing ahead of a block is pushed with a later one.
TEST(CaptureThread, aHoleThatIsKnownLaterIsToldInItsPlace) {
    Calls calls;
    CaptureThread thread("test", {.noticeBlocks = 2}, calls.onBlock(), calls.onLost());
    for (int block = 1; block <= 8; ++block) {
        push(thread, block, 10, block == 5 ? 256 : block == 6 ? 2 : 0);
    }
    waitFor(calls.blocks, 6);
    thread.stop();
    EXPECT_EQ(calls.all, (std::vector<std::int64_t>{1, 2, -256, 3, -2, 4, 5, 6}));
}

TEST(CaptureThread, longBlocksDontWaitForWhatIsKnownLater) {
    Calls calls;
    CaptureThread thread("test", {.noticeBlocks = 2}, calls.onBlock(), calls.onLost());
    push(thread, 1, 10);
    push(thread, 2, 10, 3);
    push(thread, 3, 4096, 7);
    push(thread, 4, 4096, 9);
    waitFor(calls.blocks, 4);
    thread.stop();
    // Two short blocks wait for the long ones, and what these told isn't told again.
    EXPECT_EQ(calls.all, (std::vector<std::int64_t>{-10, 1, -9, 2, 3, 4}));
}

TEST(CaptureThread, blocksThatWaitAreDeliveredAheadOfAnotherLayout) {
    Calls calls;
    CaptureThread thread("test", {.noticeBlocks = 2}, calls.onBlock(), calls.onLost());
    push(thread, 1, 10);
    push(thread, 2, 10);
    thread.reopen({.channelCount = 1, .noticeBlocks = 2});
    push(thread, 3, 10, 5);
    push(thread, 4, 10);
    push(thread, 5, 10);
    waitFor(calls.blocks, 3);
    thread.stop();
    EXPECT_EQ(calls.all, (std::vector<std::int64_t>{1, 2, -5, 3}));
}

TEST(CaptureThread, whatFoundNoRoomIsToldInItsPlaceBesideWhatIsKnownLater) {
    Calls calls;
    calls.isHeld = true;
    CaptureThread thread(
        "test",
        {.channelCount = 1, .sampleRate = 1000, .largestBlockFrames = 100, .noticeBlocks = 2},
        calls.onBlock(), calls.onLost());
    int pushed = 0;
    while (thread.droppedBlocks() == 0) {
        push(thread, ++pushed, 100);
    }
    calls.isHeld = false;
    waitFor(calls.blocks, pushed - 3);
    for (int i = 0; i < 4; ++i) {
        push(thread, ++pushed, 100);
    }
    waitFor(calls.blocks, pushed - 3);
    thread.stop();
    const auto hole = std::ranges::find(calls.all, -100);
    ASSERT_NE(hole, calls.all.end());
    ASSERT_NE(std::next(hole), calls.all.end());
    EXPECT_EQ(*std::next(hole), pushed - 3) << "the first that fitted again";
    EXPECT_EQ(std::ranges::count_if(calls.all, [](auto call) { return call < 0; }), 1);
}

TEST(CaptureThread, blocksThatFoundNoRoomAreToldAheadOfTheNextThatDoes) {
    Calls calls;
    calls.isHeld = true;
    CaptureThread thread("test", {.channelCount = 1, .sampleRate = 1000, .largestBlockFrames = 100},
                         calls.onBlock(), calls.onLost());
    int pushed = 0;
    while (thread.droppedBlocks() == 0) {
        push(thread, ++pushed, 100);
    }
    push(thread, ++pushed, 100, 7);
    push(thread, ++pushed, 100);
    calls.isHeld = false;
    waitFor(calls.blocks, pushed - 3);
    push(thread, ++pushed, 10, 1);
    waitFor(calls.blocks, pushed - 3);
    thread.stop();
    std::vector<std::int64_t> expected;
    for (int number = 1; number <= pushed - 4; ++number) {
        expected.push_back(number);
    }
    expected.insert(expected.end(), {-(100 + 7 + 100 + 100 + 1), pushed});
    EXPECT_EQ(calls.all, expected);
}

// A graph's turn has 8192 frames at most; a server with another limit changes nothing here.
TEST(CaptureThread, aBlockLongerThanTheLayoutExpectsIsTakenWholeOrToldAsMissing) {
    std::vector<std::int64_t> calls;
    std::atomic<int> blocks = 0;
    CaptureThread thread(
        "test", {},
        [&](const float* const* channels, int, int frames) {
            EXPECT_EQ(channels[0][frames - 1], channels[0][0]);
            calls.push_back(frames);
            ++blocks;
        },
        [&](std::int64_t frames) { calls.push_back(-frames); });
    std::vector<std::int64_t> expected;
    for (int number = 1; number <= 20; ++number) {
        push(thread, number, 8193 + 1000 * number);
        expected.push_back(8193 + 1000 * number);
        waitFor(blocks, number);
    }
    push(thread, 21, 1000000);
    push(thread, 22, 256);
    waitFor(blocks, 21);
    thread.stop();
    expected.insert(expected.end(), {-1000000, 256});
    EXPECT_EQ(calls, expected);
}

TEST(CaptureThread, whatIsMissingIsToldOverAnotherLayoutToo) {
    Calls calls;
    calls.isHeld = true;
    CaptureThread thread("test", {.channelCount = 1, .sampleRate = 1000, .largestBlockFrames = 100},
                         calls.onBlock(), calls.onLost());
    int pushed = 0;
    while (thread.droppedBlocks() == 0) {
        push(thread, ++pushed, 100);
    }
    thread.reopen({.channelCount = 1, .sampleRate = 2000, .largestBlockFrames = 100});
    push(thread, ++pushed, 10);
    calls.isHeld = false;
    waitFor(calls.blocks, pushed - 1);
    thread.stop();
    ASSERT_GE(calls.all.size(), 2u);
    EXPECT_EQ(calls.all.end()[-2], -100);
    EXPECT_EQ(calls.all.back(), pushed);
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

}  // namespace CaptureThreadTests
}  // namespace TarvaneKit
