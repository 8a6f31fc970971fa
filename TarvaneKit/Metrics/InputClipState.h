// What the clip badge of a channel shows, and from which sample on.
#pragma once

namespace TarvaneKit {

/// From this sample on a block counts as clipped: full scale less 0.009 dB, since converters clip a
/// little below their last code.
inline constexpr float inputClipThreshold = 0.999F;

enum class InputClipState {
    none,     ///< no clip since the last reset
    active,   ///< a clip in the last 1.5 seconds
    latched,  ///< a clip earlier, not reset yet
};

}  // namespace TarvaneKit
