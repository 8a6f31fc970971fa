// The frequency axis that spectrum and spectrogram share: logarithmic, from left to right, with
// its grid lines and their labels. Coordinates are logical pixels.
#pragma once

#include <QString>
#include <algorithm>
#include <array>
#include <cmath>

namespace TarvaneApp {

class FrequencyAxis {
  public:
    /// `minHz` is above 0 and below `maxHz`.
    FrequencyAxis(double minHz, double maxHz)
        : minHz_(minHz), logMin_(std::log10(minHz)), decades_(std::log10(maxHz) - logMin_) {}

    /// Where the grid lines are.
    static constexpr std::array<double, 10> gridLines{20.0,   50.0,   100.0,  200.0,   500.0,
                                                      1000.0, 2000.0, 5000.0, 10000.0, 20000.0};

    /// The same by importance: where room is short, labels at decades and ends win over others.
    static constexpr std::array<double, 10> byImportance{100.0, 1000.0, 10000.0, 20.0,   20000.0,
                                                         50.0,  200.0,  500.0,   2000.0, 5000.0};

    /// "20", "500", "1k", "20k".
    static QString label(double frequencyHz) {
        return frequencyHz < 1000.0
                   ? QString::number(static_cast<int>(frequencyHz))
                   : QString::number(static_cast<int>(frequencyHz / 1000.0)) + u'k';
    }

    /// Frequencies below the axis map to its left end, those above it lie beyond its right end.
    double x(double frequencyHz, double width) const {
        return width * ((std::log10(std::max(frequencyHz, minHz_)) - logMin_) / decades_);
    }

    /// The left end's frequency where there is no width.
    double frequencyHz(double x, double width) const {
        return width > 0.0 ? std::pow(10.0, logMin_ + x / width * decades_) : minHz_;
    }

    bool operator==(const FrequencyAxis&) const = default;

  private:
    double minHz_;
    double logMin_;
    double decades_;
};

}  // namespace TarvaneApp
