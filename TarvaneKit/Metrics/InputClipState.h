// What the clip badge of a channel shows.
#pragma once

namespace TarvaneKit {

enum class InputClipState {
    none,     ///< no clip since the last reset
    active,   ///< a clip in the last 1.5 seconds
    latched,  ///< a clip earlier, not reset yet
};

}  // namespace TarvaneKit
