// The numbers that a slider or stepper of a form offers, and how they read.
#pragma once

#include <QString>
#include <functional>

namespace TarvaneApp {

struct NumberScale {
    double lowest;
    double highest;
    double step;
    /// The value with its unit, as "94.0 dB".
    std::function<QString(double)> text;
};

}  // namespace TarvaneApp
