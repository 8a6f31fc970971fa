#include "Plot.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace TarvaneConformance {

namespace {

constexpr double width = 720.0;
constexpr double right = 28.0;
constexpr double bottom = 24.0;
constexpr double rowHeight = 18.0;

// From a figure to a place on the page.
struct Scale {
    double from, to;    // figures
    double begin, end;  // pixels

    double at(double value) const { return begin + (value - from) / (to - from) * (end - begin); }
    double clamped(double value) const {
        return at(std::clamp(value, std::min(from, to), std::max(from, to)));
    }
};

double departure(const Row& row, double figure) {
    return figure - row.goal.value_or(0.0);
}

// What the axis of departures covers: all figures, and the limits unless they are far beyond.
Scale departures(const Table& table, double begin, double end) {
    double lowest = 0.0;
    double highest = 0.0;
    for (const Row& row : table.rows) {
        for (const double figure : row.measured) {
            lowest = std::min(lowest, departure(row, figure));
            highest = std::max(highest, departure(row, figure));
        }
    }
    const double reach = std::max(6.0, 2.0 * std::max(-lowest, highest));
    for (const Row& row : table.rows) {
        const Limits limits = row.limits.value_or(Limits{0.0, 0.0});
        for (const double limit : {limits.lower, limits.upper}) {
            if (std::abs(limit) <= reach) {
                lowest = std::min(lowest, limit);
                highest = std::max(highest, limit);
            }
        }
    }
    const double margin = std::max(0.05 * (highest - lowest), 0.05);
    return {lowest - margin, highest + margin, begin, end};
}

// About five lines, at a round distance.
std::vector<double> gridOf(const Scale& scale) {
    const double raw = (scale.to - scale.from) / 5.0;
    const double decade = std::pow(10.0, std::floor(std::log10(raw)));
    double step = 10.0 * decade;
    for (const double factor : {5.0, 2.0, 1.0}) {
        step = factor * decade >= raw ? factor * decade : step;
    }
    std::vector<double> lines;
    for (double k = std::ceil(scale.from / step); k * step <= scale.to; ++k) {
        lines.push_back(k * step + 0.0);  // no -0
    }
    return lines;
}

std::string line(const char* kind, double x1, double y1, double x2, double y2) {
    return fmt::format(R"(<line class="{}" x1="{:.1f}" y1="{:.1f}" x2="{:.1f}" y2="{:.1f}"/>)",
                       kind, x1, y1, x2, y2);
}

std::string label(double x, double y, const char* anchor, const std::string& text) {
    return fmt::format(R"(<text x="{:.1f}" y="{:.1f}" text-anchor="{}">{}</text>)", x, y, anchor,
                       escaped(text));
}

std::string dot(std::size_t series, double x, double y) {
    return fmt::format(R"(<circle class="series{}" cx="{:.1f}" cy="{:.1f}" r="3"/>)",
                       series % seriesCount, x, y);
}

std::string begin(const Table& table, double height) {
    return fmt::format(R"(<svg viewBox="0 0 {:.0f} {:.0f}" role="img" aria-label="{}">)", width,
                       height, escaped(table.title));
}

std::string points(const std::vector<std::pair<double, double>>& places) {
    std::string text;
    for (const auto& [x, y] : places) {
        text += fmt::format("{:.1f},{:.1f} ", x, y);
    }
    return text;
}

// Curves along the places of the rows.
std::string curves(const Table& table) {
    constexpr double height = 240.0;
    constexpr double left = 48.0;
    const auto along = [&](const Row& row) {
        return table.axis == Table::Axis::logarithmic ? std::log10(row.place) : row.place;
    };
    const auto [first, last] = std::ranges::minmax(table.rows, {}, along);
    const Scale x{along(first), along(last), left + 8.0, width - right};
    const Scale y = departures(table, height - bottom, 8.0);

    std::string svg = begin(table, height);
    for (const double value : gridOf(y)) {
        svg += line("grid", left, y.at(value), width - right, y.at(value));
        svg += label(left - 6.0, y.at(value) + 4.0, "end", fmt::format("{:g}", value));
    }
    // As many labels as have room.
    double used = 0.0;
    for (const Row& row : table.rows) {
        const double at = x.at(along(row));
        if (used == 0.0 ||
            std::abs(at - used) >= 8.0 * static_cast<double>(row.label.size()) + 8.0) {
            svg += label(at, height - 6.0, "middle", row.label);
            used = at;
        }
    }
    for (const bool isUpper : {true, false}) {
        std::vector<std::pair<double, double>> places;
        for (const Row& row : table.rows) {
            if (row.limits) {
                const double limit = isUpper ? row.limits->upper : row.limits->lower;
                places.emplace_back(x.at(along(row)), y.clamped(limit));
            }
        }
        svg += fmt::format(R"(<polyline class="limits" points="{}"/>)", points(places));
    }
    for (std::size_t column = 0; column < table.columns.size(); ++column) {
        std::vector<std::pair<double, double>> places;
        for (const Row& row : table.rows) {
            if (column < row.measured.size()) {
                places.emplace_back(x.at(along(row)), y.at(departure(row, row.measured[column])));
            }
        }
        svg += fmt::format(R"(<polyline class="series{}" points="{}"/>)", column % seriesCount,
                           points(places));
    }
    return svg + "</svg>";
}

// A line for each row, with its limits as a bar and its figures as dots.
std::string dots(const Table& table) {
    constexpr double left = 220.0;
    const double height = rowHeight * static_cast<double>(table.rows.size()) + 8.0 + bottom;
    const Scale x = departures(table, left, width - right);
    std::string svg = begin(table, height);
    for (const double value : gridOf(x)) {
        svg += line("grid", x.at(value), 4.0, x.at(value), height - bottom);
        svg += label(x.at(value), height - 6.0, "middle", fmt::format("{:g}", value));
    }
    double y = 8.0;
    for (const Row& row : table.rows) {
        svg += label(left - 10.0, y + 12.0, "end", row.label);
        if (row.limits) {
            const double from = x.clamped(row.limits->lower);
            svg += fmt::format(
                R"(<rect class="limits" x="{:.1f}" y="{:.1f}" width="{:.1f}" height="{:.1f}"/>)",
                from, y + 2.0, x.clamped(row.limits->upper) - from, rowHeight - 4.0);
        }
        for (std::size_t column = 0; column < row.measured.size(); ++column) {
            svg += dot(column, x.at(departure(row, row.measured[column])), y + rowHeight / 2.0);
        }
        y += rowHeight;
    }
    return svg + "</svg>";
}

}  // namespace

std::string plotOf(const Table& table) {
    switch (table.axis) {
        case Table::Axis::none:
            return {};
        case Table::Axis::linear:
        case Table::Axis::logarithmic:
            return curves(table);
        case Table::Axis::rows:
            return dots(table);
    }
    return {};
}

std::string escaped(const std::string& text) {
    std::string out;
    for (const char c : text) {
        switch (c) {
            case '&':
                out += "&amp;";
                break;
            case '<':
                out += "&lt;";
                break;
            case '>':
                out += "&gt;";
                break;
            case '"':
                out += "&quot;";
                break;
            default:
                out += c;
        }
    }
    return out;
}

}  // namespace TarvaneConformance
