#include "Metrics/GatingHistogram.h"

#include <algorithm>
#include <cmath>
#include <numeric>

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

std::int64_t total(std::span<const std::int64_t> counts) {
    return std::accumulate(counts.begin(), counts.end(), std::int64_t{0});
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
    usedBegin = std::min(usedBegin, static_cast<int>(index));
    usedEnd = std::max(usedEnd, static_cast<int>(index) + 1);
}

template <class T>
std::span<const T> GatingHistogram::used(const std::array<T, binCount>& bins, int fromBin) const {
    const int begin = std::max(fromBin, usedBegin);
    return begin < usedEnd ? std::span(bins).subspan(static_cast<std::size_t>(begin),
                                                     static_cast<std::size_t>(usedEnd - begin))
                           : std::span<const T>();
}

std::optional<double> GatingHistogram::meanEnergy(int fromBin) const {
    const std::int64_t count = total(used(counts, fromBin));
    if (count == 0) {
        return std::nullopt;
    }
    return sum(used(energies, fromBin)) / static_cast<double>(count);
}

std::optional<double> GatingHistogram::percentileLoudness(double percent, int fromBin) const {
    const std::int64_t count = total(used(counts, fromBin));
    if (count < 1) {
        return std::nullopt;
    }
    const double rank = std::round(percent * static_cast<double>(count - 1) / 100.0);
    const std::int64_t index = std::min(count - 1, static_cast<std::int64_t>(rank));
    int bin = std::max(fromBin, usedBegin);
    for (std::int64_t sum = counts[static_cast<std::size_t>(bin)]; sum <= index;) {
        sum += counts[static_cast<std::size_t>(++bin)];
    }
    return lowestLoudness + binWidth * (bin + 0.5);
}

}  // namespace TarvaneKit
