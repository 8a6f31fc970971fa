// The colours that channels are given by themselves, and that their menus offer: far enough apart
// to tell traces over each other.
#pragma once

#include <array>

#include "Core/RGBAColor.h"

namespace TarvaneApp {

/// The main input's, until the user picks another.
inline constexpr TarvaneKit::RGBAColor mainChannelColor{0.55, 1.0, 0.35, 0.95};

/// Of new channels, one after the other.
inline constexpr std::array<TarvaneKit::RGBAColor, 6> channelColors{{{0.3, 0.7, 1.0, 1.0},
                                                                     {1.0, 0.45, 0.75, 1.0},
                                                                     {1.0, 0.85, 0.25, 1.0},
                                                                     {0.7, 0.55, 1.0, 1.0},
                                                                     {0.3, 0.95, 0.95, 1.0},
                                                                     {1.0, 0.55, 0.3, 1.0}}};

}  // namespace TarvaneApp
