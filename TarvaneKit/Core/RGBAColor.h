// A colour as it is stored with settings and profiles: sRGB, straight alpha.
#pragma once

#include "Core/Coding.h"

namespace TarvaneKit {

struct RGBAColor {
    double red = 0.0;    ///< 0 to 1
    double green = 0.0;  ///< 0 to 1
    double blue = 0.0;   ///< 0 to 1
    double alpha = 1.0;  ///< 0 to 1

    bool operator==(const RGBAColor&) const = default;
};

/// The three colours behind every default that says green, yellow or red.
namespace SignalColors {
inline constexpr RGBAColor green{0.2, 0.8, 0.3, 1.0};
inline constexpr RGBAColor yellow{0.95, 0.8, 0.15, 1.0};
inline constexpr RGBAColor red{0.9, 0.2, 0.2, 1.0};
}  // namespace SignalColors

template <>
struct Coding<RGBAColor> {
    static constexpr auto keys = std::tuple{
        required("red", &RGBAColor::red),
        required("green", &RGBAColor::green),
        required("blue", &RGBAColor::blue),
        required("alpha", &RGBAColor::alpha),
    };
};

}  // namespace TarvaneKit
