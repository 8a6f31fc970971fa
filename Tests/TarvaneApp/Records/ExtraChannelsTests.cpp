#include "Records/ExtraChannels.h"

#include <gtest/gtest.h>

#include <set>

namespace TarvaneApp {
namespace ExtraChannelsTests {

using TarvaneKit::UUID;

ChannelConfig channelOf(const UUID& id, const std::string& name) {
    ChannelConfig channel;
    channel.id = id;
    channel.name = name;
    return channel;
}

TEST(ExtraChannelsTests, theFirstOfAnIDKeepsItAndTheOthersGetNewOnes) {
    const UUID a = UUID::random();
    const UUID b = UUID::random();
    const auto channels =
        withUniqueIDs({channelOf(a, "first"), channelOf(b, "other"), channelOf(a, "second"),
                       channelOf(UUID::main(), "the main input's"), channelOf(a, "third")});
    ASSERT_EQ(channels.size(), 5U);
    EXPECT_EQ(channels[0].id, a);
    EXPECT_EQ(channels[1].id, b);
    std::set<UUID> ids{UUID::main()};
    for (const ChannelConfig& channel : channels) {
        EXPECT_TRUE(ids.insert(channel.id).second) << channel.name;
    }
    EXPECT_EQ(channels[2].name, "second");
    EXPECT_EQ(channels[3].name, "the main input's");
    EXPECT_EQ(channels[4].name, "third");
}

TEST(ExtraChannelsTests, aListWithoutDoublesStaysAsItIs) {
    std::vector<ChannelConfig> channels(mostExtraChannels);
    EXPECT_EQ(withUniqueIDs(channels), channels);
    EXPECT_EQ(channelsThatMayStand(channels), channels);
}

TEST(ExtraChannelsTests, beyondTheLimitTheFirstOnesStay) {
    std::vector<ChannelConfig> channels(mostExtraChannels + 10);
    const auto kept = channelsThatMayStand(channels);
    channels.resize(mostExtraChannels);
    EXPECT_EQ(kept, channels);
}

}  // namespace ExtraChannelsTests
}  // namespace TarvaneApp
