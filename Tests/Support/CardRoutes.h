// Routes as the server reports them for a sound card, for machines that have none.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

struct spa_pod;

namespace TarvaneTests {

struct MadeUpRoute {
    std::int32_t index = 0;
    std::int32_t device = 0;
    std::vector<float> channelVolumes;
    bool isMuted = false;
    std::optional<float> volumeBase;
    std::optional<float> volumeStep;
    /// "route.hw-volume"; absent: not among the route's info.
    std::optional<std::string> hardwareVolume;
};

/// The route's object, in place in `buffer`.
const spa_pod& buildMadeUpRoute(const MadeUpRoute& route, std::vector<std::uint8_t>& buffer);

}  // namespace TarvaneTests
