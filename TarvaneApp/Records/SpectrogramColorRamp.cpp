#include "Records/SpectrogramColorRamp.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

namespace TarvaneApp::SpectrogramColorRamp {

using TarvaneKit::RGBAColor;

namespace {

constexpr double smallestDistance = 1e-9;

struct Gap {
    double from;
    double to;

    double width() const { return to - from; }
};

Gap widestGap(const std::vector<SpectrogramColorStop>& sortedStops) {
    if (sortedStops.empty()) {
        return {0.0, 1.0};
    }
    if (sortedStops.size() == 1) {
        const double only = std::clamp(sortedStops.front().position, 0.0, 1.0);
        return only > 0.5 ? Gap{0.0, only} : Gap{only, 1.0};
    }
    Gap widest{sortedStops[0].position, sortedStops[1].position};
    for (std::size_t i = 2; i < sortedStops.size(); ++i) {
        const Gap gap{sortedStops[i - 1].position, sortedStops[i].position};
        // Gaps that differ by rounding alone are equally wide.
        if (gap.width() > widest.width() + smallestDistance) {
            widest = gap;
        }
    }
    return widest;
}

}  // namespace

std::vector<SpectrogramColorStop> sorted(std::vector<SpectrogramColorStop> stops) {
    std::ranges::stable_sort(stops, {}, &SpectrogramColorStop::position);
    return stops;
}

double levelDB(double position, const SpectrogramRange& range) {
    return std::lerp(range.floorDB, range.ceilingDB, position);
}

double position(double levelDB, const SpectrogramRange& range) {
    const double width = std::max(range.ceilingDB - range.floorDB, smallestDistance);
    return std::clamp((levelDB - range.floorDB) / width, 0.0, 1.0);
}

RGBAColor colorAt(double t, const std::vector<SpectrogramColorStop>& sortedStops) {
    if (sortedStops.empty()) {
        return {1.0, 1.0, 1.0, 1.0};
    }
    t = std::clamp(t, 0.0, 1.0);
    const auto opaque = [](RGBAColor color) {
        color.alpha = 1.0;
        return color;
    };
    if (t <= sortedStops.front().position) {
        return opaque(sortedStops.front().color);
    }
    if (t >= sortedStops.back().position) {
        return opaque(sortedStops.back().color);
    }
    const auto b = std::ranges::lower_bound(sortedStops, t, {}, &SpectrogramColorStop::position);
    const auto a = b - 1;
    const double u = (t - a->position) / std::max(b->position - a->position, smallestDistance);
    return {.red = std::lerp(a->color.red, b->color.red, u),
            .green = std::lerp(a->color.green, b->color.green, u),
            .blue = std::lerp(a->color.blue, b->color.blue, u),
            .alpha = 1.0};
}

std::vector<SpectrogramColorStop> withStopInWidestGap(std::vector<SpectrogramColorStop> stops) {
    const auto inOrder = sorted(stops);
    const Gap gap = widestGap(inOrder);
    SpectrogramColorStop added;
    added.position = (gap.from + gap.to) / 2.0;
    added.color = colorAt(added.position, inOrder);
    stops.push_back(added);
    return sorted(std::move(stops));
}

bool isSameRamp(const std::vector<SpectrogramColorStop>& a,
                const std::vector<SpectrogramColorStop>& b) {
    return std::ranges::equal(a, b, [](const auto& one, const auto& other) {
        return one.position == other.position && one.color == other.color;
    });
}

std::vector<SpectrogramColorPreset> withPreset(std::vector<SpectrogramColorPreset> presets,
                                               SpectrogramColorPreset preset) {
    const auto same = std::ranges::find(presets, preset.name, &SpectrogramColorPreset::name);
    if (same != presets.end()) {
        *same = std::move(preset);
    } else {
        presets.push_back(std::move(preset));
    }
    return presets;
}

}  // namespace TarvaneApp::SpectrogramColorRamp
