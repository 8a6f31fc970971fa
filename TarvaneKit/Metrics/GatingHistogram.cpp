#include "Metrics/GatingHistogram.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <span>

namespace TarvaneKit {

namespace {

// In eight partial sums, which a processor adds side by side.
double sum(std::span<const double> values) {
    std::array<double, 8> partial{};
    std::size_t i = 0;
    for (; i + partial.size() <= values.size(); i += partial.size()) {
        for (std::size_t k = 0; k < partial.size(); ++k) {
            partial[k] += values[i + k];
        }
    }
    return std::accumulate(values.begin() + static_cast<std::ptrdiff_t>(i), values.end(),
                           std::accumulate(partial.begin(), partial.end(), 0.0));
}

}  // namespace

int GatingHistogram::bin(double loudness) {
    if (!std::isfinite(loudness)) {
        return loudness > 0.0 ? binCount - 1 : 0;
    }
    const double position = std::floor((loudness - lowestLoudness) / binWidth);
    return static_cast<int>(std::clamp(position, 0.0, binCount - 1.0));
}

void GatingHistogram::add(double loudness, double energy) {
    const auto index = static_cast<std::size_t>(bin(loudness));
    counts[index] += 1;
    energies[index] += energy;
}

std::optional<double> GatingHistogram::meanEnergy(int fromBin) const {
    const std::int64_t count =
        std::accumulate(counts.begin() + fromBin, counts.end(), std::int64_t{0});
    if (count == 0) {
        return std::nullopt;
    }
    return sum(std::span(energies).subspan(static_cast<std::size_t>(fromBin))) /
           static_cast<double>(count);
}

std::optional<double> GatingHistogram::percentileLoudness(double percent, int fromBin) const {
    const std::int64_t total =
        std::accumulate(counts.begin() + fromBin, counts.end(), std::int64_t{0});
    if (total < 1) {
        return std::nullopt;
    }
    const double rank = std::round(percent * static_cast<double>(total - 1) / 100.0);
    const std::int64_t index = std::min(total - 1, static_cast<std::int64_t>(rank));
    int bin = fromBin;
    for (std::int64_t sum = counts[static_cast<std::size_t>(bin)]; sum <= index;) {
        sum += counts[static_cast<std::size_t>(++bin)];
    }
    return lowestLoudness + binWidth * (bin + 0.5);
}

}  // namespace TarvaneKit
