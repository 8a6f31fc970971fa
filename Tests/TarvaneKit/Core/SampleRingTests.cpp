#include "Core/SampleRing.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <atomic>
#include <deque>
#include <thread>
#include <vector>

namespace TarvaneKit {
namespace SampleRingTests {

/// A block whose sample says where it stands: block number, channel, frame.
class NumberedBlock {
  public:
    NumberedBlock(int number, int channelCount, int frameCount) {
        for (int channel = 0; channel < channelCount; ++channel) {
            auto& plane = planes_.emplace_back();
            for (int frame = 0; frame < frameCount; ++frame) {
                plane.push_back(value(number, channel, frame));
            }
        }
        for (const auto& plane : planes_) {
            pointers_.push_back(plane.data());
        }
    }
    const float* const* channels() const { return pointers_.data(); }

    static float value(int number, int channel, int frame) {
        return static_cast<float>((number % 100) * 10000 + channel * 1000 + frame % 1000 + 1);
    }

  private:
    std::vector<std::vector<float>> planes_;
    std::vector<const float*> pointers_;
};

bool isBlock(const SampleRing::Block& block, int number, int frameCount) {
    bool isRight = block.frameCount == frameCount;
    for (int channel = 0; channel < block.channelCount; ++channel) {
        for (int frame = 0; isRight && frame < frameCount; ++frame) {
            isRight =
                block.channels[channel][frame] == NumberedBlock::value(number, channel, frame);
        }
    }
    return isRight;
}

TEST(SampleRing, isEmptyAtFirst) {
    SampleRing ring(2, 100, 10);
    EXPECT_FALSE(ring.front());
}

TEST(SampleRing, givesABlockWholeAndKeepsItUntilPop) {
    SampleRing ring(3, 100, 10);
    EXPECT_TRUE(ring.write(NumberedBlock(7, 3, 10).channels(), 10));
    for (int look = 0; look < 2; ++look) {
        const auto block = ring.front();
        ASSERT_TRUE(block);
        EXPECT_EQ(block->channelCount, 3);
        EXPECT_TRUE(isBlock(*block, 7, 10));
    }
    ring.pop();
    EXPECT_FALSE(ring.front());
}

TEST(SampleRing, aBlockCarriesWhatIsMissingAheadOfIt) {
    SampleRing ring(1, 100, 10);
    for (int i = 0; i < 100; ++i) {  // round the end several times
        const std::int64_t missing = i % 3 == 0 ? 0 : (std::int64_t{1} << 40) + i;
        ASSERT_TRUE(ring.write(NumberedBlock(i, 1, 7).channels(), 7, missing));
        const auto block = ring.front();
        ASSERT_TRUE(block);
        EXPECT_TRUE(isBlock(*block, i, 7));
        EXPECT_EQ(block->missingFrames, missing);
        ring.pop();
    }
}

TEST(SampleRing, aNullChannelIsSilence) {
    SampleRing ring(2, 100, 10);
    const std::vector<float> ones(10, 1.0f);
    for (int i = 0; i < 30; ++i) {  // over what earlier blocks left
        const float* both[] = {ones.data(), ones.data()};
        const float* second[] = {nullptr, ones.data()};
        ring.write(both, 10);
        ASSERT_TRUE(ring.front());
        ring.pop();
        ring.write(second, 10);
        const auto block = ring.front();
        ASSERT_TRUE(block);
        for (int frame = 0; frame < 10; ++frame) {
            ASSERT_EQ(block->channels[0][frame], 0.0f);
            ASSERT_EQ(block->channels[1][frame], 1.0f);
        }
        ring.pop();
    }
}

TEST(SampleRing, emptyBlocksArePassedOver) {
    SampleRing ring(1, 100, 10);
    EXPECT_TRUE(ring.write(NumberedBlock(0, 1, 1).channels(), 0));
    EXPECT_FALSE(ring.front());
    EXPECT_EQ(ring.droppedBlocks(), 0);
}

// A queue of numbers beside the ring says what must come out.
TEST(SampleRing, behavesAsAQueueThatDropsTheNewest) {
    EXPECT_TRUE(rc::check([] {
        const int channelCount = *rc::gen::inRange(1, 9);
        const int capacity = *rc::gen::inRange(1, 500);
        const int largest = *rc::gen::inRange(1, 64);
        SampleRing ring(channelCount, capacity, largest);
        struct Entry {
            int number;
            int frameCount;
        };
        std::deque<Entry> expected;
        std::int64_t drops = 0;
        std::int64_t droppedFrames = 0;
        const auto steps = *rc::gen::container<std::vector<int>>(rc::gen::inRange(-64, 65));
        int number = 0;
        for (const int step : steps) {
            if (step > 0) {
                const int frameCount = 1 + (step - 1) % largest;
                const NumberedBlock block(number, channelCount, frameCount);
                if (ring.write(block.channels(), frameCount)) {
                    expected.push_back({number, frameCount});
                } else {
                    ++drops;
                    droppedFrames += frameCount;
                }
                ++number;
            } else if (const auto block = ring.front()) {
                RC_ASSERT(!expected.empty());
                RC_ASSERT(isBlock(*block, expected.front().number, expected.front().frameCount));
                ring.pop();
                expected.pop_front();
            } else {
                RC_ASSERT(expected.empty());
            }
        }
        RC_ASSERT(ring.droppedBlocks() == drops);
        RC_ASSERT(ring.droppedFrames() == droppedFrames);
        for (; !expected.empty(); expected.pop_front()) {
            const auto block = ring.front();
            RC_ASSERT(bool(block));
            RC_ASSERT(isBlock(*block, expected.front().number, expected.front().frameCount));
            ring.pop();
        }
        RC_ASSERT(!ring.front());
    }));
}

// The promise of the constructor: the capacity holds from any place in the ring, however the
// blocks of at least 16 frames are mixed.
TEST(SampleRing, takesItsCapacityWheneverItIsEmpty) {
    EXPECT_TRUE(rc::check([] {
        const int channelCount = *rc::gen::inRange(1, 9);
        const int capacity = *rc::gen::inRange(16, 2000);
        const int largest = *rc::gen::inRange(16, 300);
        SampleRing ring(channelCount, capacity, largest);
        const auto frames = rc::gen::inRange(16, largest + 1);
        const std::vector<float> samples(static_cast<std::size_t>(largest), 0.5f);
        const std::vector<const float*> channels(static_cast<std::size_t>(channelCount),
                                                 samples.data());
        for (int round = 0; round < 4; ++round) {
            int held = 0;
            while (held < capacity) {
                const int frameCount = *frames;
                RC_ASSERT(ring.write(channels.data(), frameCount));
                held += frameCount;
            }
            while (ring.front()) {
                ring.pop();
            }
        }
        RC_ASSERT(ring.droppedBlocks() == 0);
    }));
}

// One thread writes numbered blocks as fast as it can, another reads. What arrives is in order
// and whole, and what didn't was counted.
TEST(SampleRing, twoThreadsLoseOnlyWhatIsCounted) {
    constexpr int blockCount = 20000;
    SampleRing ring(3, 512, 64);
    std::atomic<bool> isDone = false;
    std::int64_t received = 0;
    std::thread reader([&] {
        int last = -1;
        for (;;) {
            const bool wasDone = isDone.load();
            if (const auto block = ring.front()) {
                const int number = static_cast<int>(block->channels[0][0]);
                ASSERT_GT(number, last);
                for (int channel = 0; channel < 3; ++channel) {
                    for (int frame = 0; frame < block->frameCount; ++frame) {
                        ASSERT_EQ(block->channels[channel][frame],
                                  static_cast<float>(number + channel));
                    }
                }
                last = number;
                ++received;
                ring.pop();
            } else if (wasDone) {
                return;
            }
        }
    });
    for (int number = 0; number < blockCount; ++number) {
        const int frameCount = 1 + number % 64;
        std::vector<float> planes[3];
        const float* channels[3];
        for (int channel = 0; channel < 3; ++channel) {
            planes[channel].assign(static_cast<std::size_t>(frameCount),
                                   static_cast<float>(number + channel));
            channels[channel] = planes[channel].data();
        }
        ring.write(channels, frameCount);
    }
    isDone = true;
    reader.join();
    EXPECT_EQ(received + ring.droppedBlocks(), blockCount);
    EXPECT_GT(received, 0);
}

}  // namespace SampleRingTests
}  // namespace TarvaneKit
