// What holds of every list of extra channels, wherever it comes from: an assignment, the store, a
// file. A channel is known by its id alone, so two under one id, or one under the main input's,
// would be two meters in one place.
#pragma once

#include <cstddef>
#include <vector>

#include "Core/UUID.h"
#include "Records/ChannelConfig.h"

namespace TarvaneApp {

/// With the main input 1024 channels, all inputs of two of the largest network cards. Some
/// thousands more would take the machine's memory and the windows their pace.
inline constexpr std::size_t mostExtraChannels = 1023;
inline constexpr std::size_t mostChannels = mostExtraChannels + 1;

/// The first channel of an id keeps it; any other one of that id, and one of the main input's,
/// gets a new one.
std::vector<ChannelConfig> withUniqueIDs(std::vector<ChannelConfig> channels);

/// The same without the channels beyond the limit.
std::vector<ChannelConfig> channelsThatMayStand(std::vector<ChannelConfig> channels);

/// A list that names channels, with each of them once and no more than there may be.
std::vector<TarvaneKit::UUID> channelIDsThatMayStand(const std::vector<TarvaneKit::UUID>& ids);

}  // namespace TarvaneApp
