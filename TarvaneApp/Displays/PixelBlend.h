// Blending of premultiplied 32-bit pixels, for drawings that write them themselves: two channels
// at once in each half of a word.
#pragma once

#include <QColor>
#include <QRgb>
#include <cstdint>

namespace TarvaneApp::PixelBlend {

inline QRgb premultiplied(const QColor& color) {
    return qPremultiply(color.rgba());
}

/// Weights are from 0 to this.
inline constexpr std::uint32_t fullWeight = 256;

/// The weight of a share from 0 to 1.
inline std::uint32_t weight(double share) {
    constexpr double roundsUp = 0.5;  // shares aren't negative
    return static_cast<std::uint32_t>(share * fullWeight + roundsUp);
}

/// Every colour channel times the weight.
inline QRgb scaled(QRgb pixel, std::uint32_t weight) {
    constexpr std::uint32_t low = 0x00FF00FF;
    constexpr std::uint32_t half = 0x00800080;
    const std::uint32_t even = (((pixel & low) * weight + half) >> 8U) & low;
    const std::uint32_t odd = (((pixel >> 8U) & low) * weight + half) & ~low;
    return even | odd;
}

/// Between two pixels: the first for weight 0, the second for the full one.
inline QRgb mixed(QRgb first, QRgb second, std::uint32_t weight) {
    constexpr std::uint32_t low = 0x00FF00FF;
    constexpr std::uint32_t half = 0x00800080;
    const std::uint32_t rest = fullWeight - weight;
    const std::uint32_t even =
        (((first & low) * rest + (second & low) * weight + half) >> 8U) & low;
    const std::uint32_t odd =
        (((first >> 8U) & low) * rest + ((second >> 8U) & low) * weight + half) & ~low;
    return even | odd;
}

/// `source` over `below`, with the share of the pixel that the source covers.
inline QRgb over(QRgb below, QRgb source, std::uint32_t coverage) {
    const QRgb covered = scaled(source, coverage);
    const std::uint32_t alpha = covered >> 24U;
    return covered + scaled(below, fullWeight - alpha - (alpha >> 7U));
}

}  // namespace TarvaneApp::PixelBlend
