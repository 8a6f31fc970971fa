#include "Displays/Contrast.h"

#include <algorithm>
#include <cmath>

#include "Displays/Theme.h"

namespace TarvaneApp::Contrast {

namespace {

// WCAG 2.1: relative luminance of an sRGB colour.
double luminance(const QColor& color) {
    const auto linear = [](float component) {
        const double c = component;
        return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

QColor lightened(const QColor& color, float share) {
    const auto mixed = [share](float component) { return component + (1.0F - component) * share; };
    return QColor::fromRgbF(mixed(color.redF()), mixed(color.greenF()), mixed(color.blueF()));
}

}  // namespace

double ratio(const QColor& a, const QColor& b) {
    const auto [darker, lighter] = std::minmax({luminance(a), luminance(b)});
    return (lighter + 0.05) / (darker + 0.05);
}

QColor textOn(const QColor& ground) {
    return ratio(Theme::primaryText, ground) >= ratio(Theme::background, ground)
               ? Theme::primaryText
               : Theme::background;
}

QColor legible(const QColor& color, const QColor& ground) {
    constexpr float step = 0.02F;
    constexpr double rounding = 0.05;  // of what is drawn, to eight bits
    QColor result = color;
    for (float share = step; share < 1.0F && ratio(result, ground) < text + rounding;
         share += step) {
        result = lightened(color, share);
    }
    return result;
}

}  // namespace TarvaneApp::Contrast
