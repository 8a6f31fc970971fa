// What several chapters' columns are: rates, or the lowest and the highest of what was read.
#pragma once

#include <fmt/format.h>

#include <algorithm>
#include <limits>
#include <span>
#include <string>
#include <vector>

namespace TarvaneConformance {

/// "44.1 kHz", …
inline std::vector<std::string> rateColumns(std::span<const double> sampleRates) {
    std::vector<std::string> columns;
    for (const double rate : sampleRates) {
        columns.push_back(fmt::format("{:g} kHz", rate / 1000.0));
    }
    return columns;
}

/// Of all values that it was given.
struct Range {
    double lowest = std::numeric_limits<double>::infinity();
    double highest = -std::numeric_limits<double>::infinity();

    void take(double value) {
        lowest = std::min(lowest, value);
        highest = std::max(highest, value);
    }
    std::vector<double> figures() const { return {lowest, highest}; }
};

}  // namespace TarvaneConformance
