#include "Records/ExtraChannels.h"

#include <set>

namespace TarvaneApp {

using TarvaneKit::UUID;

std::vector<ChannelConfig> withUniqueIDs(std::vector<ChannelConfig> channels) {
    std::set<UUID> taken{UUID::main()};
    for (ChannelConfig& channel : channels) {
        while (!taken.insert(channel.id).second) {
            channel.id = UUID::random();
        }
    }
    return channels;
}

std::vector<ChannelConfig> channelsThatMayStand(std::vector<ChannelConfig> channels) {
    if (channels.size() > mostExtraChannels) {
        channels.resize(mostExtraChannels);
    }
    return withUniqueIDs(std::move(channels));
}

}  // namespace TarvaneApp
