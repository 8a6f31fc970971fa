#include "Shell/Preferences/ChannelFolds.h"

#include "Core/Coding.h"
#include "Settings/KeyValueStore.h"

namespace TarvaneApp {

using TarvaneKit::UUID;

namespace {

constexpr auto key = "Preferences.expandedChannels";

}  // namespace

ChannelFolds::ChannelFolds(KeyValueStore& store) : store_(store) {
    const auto bytes = store.data(key);
    expanded_ = (bytes ? TarvaneKit::decode<std::map<UUID, bool>>(*bytes) : std::nullopt)
                    .value_or(std::map<UUID, bool>{});
}

bool ChannelFolds::isExpanded(const UUID& channelID) const {
    const auto found = expanded_.find(channelID);
    return found != expanded_.end() ? found->second : channelID == UUID::main();
}

void ChannelFolds::setExpanded(const UUID& channelID, bool isExpanded) {
    expanded_.insert_or_assign(channelID, isExpanded);
    save();
}

void ChannelFolds::forget(const UUID& channelID) {
    if (expanded_.erase(channelID) > 0) {
        save();
    }
}

void ChannelFolds::save() {
    if (const auto bytes = TarvaneKit::encode(expanded_)) {
        store_.setData(key, *bytes);
        store_.synchronize();
    }
}

}  // namespace TarvaneApp
