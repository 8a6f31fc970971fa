#include "AudioIO/RingSuccession.h"

#include <gtest/gtest.h>

#include <vector>

namespace TarvaneKit {
namespace RingSuccessionTests {

std::unique_ptr<SampleRing> ring(int channelCount) {
    return std::make_unique<SampleRing>(channelCount, 100, 10);
}

void write(RingSuccession& rings, float sample) {
    const std::vector<const float*> channels(8, &sample);
    EXPECT_TRUE(rings.write(channels.data(), 1, 0));
}

struct Taken {
    int channelCount;
    float sample;

    bool operator==(const Taken&) const = default;
};

// What the capture thread would take now.
std::vector<Taken> take(RingSuccession& rings) {
    std::vector<Taken> result;
    do {
        while (const auto block = rings.front()) {
            result.push_back({block->channelCount, block->channels[0][0]});
            rings.pop();
        }
    } while (rings.advance());
    return result;
}

TEST(RingSuccession, blocksOfSeveralLayoutsStayInOrder) {
    RingSuccession rings(ring(1));
    write(rings, 1);
    rings.append(ring(8));
    write(rings, 2);
    write(rings, 3);
    rings.append(ring(2));
    rings.append(ring(4));
    write(rings, 4);
    EXPECT_EQ(take(rings), (std::vector<Taken>{{1, 1}, {8, 2}, {8, 3}, {4, 4}}));
    write(rings, 5);
    EXPECT_EQ(take(rings), (std::vector<Taken>{{4, 5}}));
}

// The capture thread has looked and found nothing; then a block comes, and then another layout.
TEST(RingSuccession, aBlockBetweenTheLastLookAndAnotherLayoutIsNotLost) {
    RingSuccession rings(ring(1));
    EXPECT_FALSE(rings.front());
    write(rings, 1);
    rings.append(ring(8));
    write(rings, 2);
    EXPECT_TRUE(rings.advance());
    EXPECT_EQ(take(rings), (std::vector<Taken>{{1, 1}, {8, 2}}));
}

TEST(RingSuccession, thereIsNothingAfterTheNewest) {
    RingSuccession rings(ring(1));
    EXPECT_FALSE(rings.advance());
    rings.append(ring(2));
    EXPECT_TRUE(rings.advance());
    EXPECT_FALSE(rings.advance());
}

}  // namespace RingSuccessionTests
}  // namespace TarvaneKit
