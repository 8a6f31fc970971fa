// An input device as the user's lists show it.
#pragma once

#include <cstdint>
#include <string>

namespace TarvaneKit {

struct AudioInputDevice {
    std::uint32_t id = 0;  ///< the platform's number for it, valid for this run of the program
    std::string uid;       ///< persistent; what settings store
    std::string name;
    int channelCount = 1;  ///< input channels, at least 1 in a listing

    bool operator==(const AudioInputDevice&) const = default;
};

/// The uid under which the machine's own output is offered as an input of two channels.
inline constexpr const char* systemOutputUID = "org.brenlow.tarvane.system-output";

}  // namespace TarvaneKit
