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

std::vector<UUID> channelIDsThatMayStand(const std::vector<UUID>& ids) {
    std::vector<UUID> result;
    std::set<UUID> taken;
    for (const UUID& id : ids) {
        if (result.size() < mostChannels && taken.insert(id).second) {
            result.push_back(id);
        }
    }
    return result;
}

}  // namespace TarvaneApp
