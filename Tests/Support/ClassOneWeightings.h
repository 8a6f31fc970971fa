// IEC 61672-1:2013, table 3: the A and C weightings and the acceptance limits of class 1.
#pragma once

#include <cmath>
#include <limits>
#include <vector>

namespace TarvaneKit::Testing {

struct ClassOneWeighting {
    double nominalFrequencyHz;
    double a, c;                    // dB
    double upperLimit, lowerLimit;  // dB about the goal
    double exactFrequencyHz = 0.0;  // 1000 * 10^(n/10)
};

inline std::vector<ClassOneWeighting> classOneWeightings() {
    constexpr double none = -std::numeric_limits<double>::infinity();
    std::vector<ClassOneWeighting> rows = {
        {10.0, -70.4, -14.3, 3.0, none},   {12.5, -63.4, -11.2, 2.5, none},
        {16.0, -56.7, -8.5, 2.0, -4.0},    {20.0, -50.5, -6.2, 2.0, -2.0},
        {25.0, -44.7, -4.4, 2.0, -1.5},    {31.5, -39.4, -3.0, 1.5, -1.5},
        {40.0, -34.6, -2.0, 1.0, -1.0},    {50.0, -30.2, -1.3, 1.0, -1.0},
        {63.0, -26.2, -0.8, 1.0, -1.0},    {80.0, -22.5, -0.5, 1.0, -1.0},
        {100.0, -19.1, -0.3, 1.0, -1.0},   {125.0, -16.1, -0.2, 1.0, -1.0},
        {160.0, -13.4, -0.1, 1.0, -1.0},   {200.0, -10.9, 0.0, 1.0, -1.0},
        {250.0, -8.6, 0.0, 1.0, -1.0},     {315.0, -6.6, 0.0, 1.0, -1.0},
        {400.0, -4.8, 0.0, 1.0, -1.0},     {500.0, -3.2, 0.0, 1.0, -1.0},
        {630.0, -1.9, 0.0, 1.0, -1.0},     {800.0, -0.8, 0.0, 1.0, -1.0},
        {1000.0, 0.0, 0.0, 0.7, -0.7},     {1250.0, 0.6, 0.0, 1.0, -1.0},
        {1600.0, 1.0, -0.1, 1.0, -1.0},    {2000.0, 1.2, -0.2, 1.0, -1.0},
        {2500.0, 1.3, -0.3, 1.0, -1.0},    {3150.0, 1.2, -0.5, 1.0, -1.0},
        {4000.0, 1.0, -0.8, 1.0, -1.0},    {5000.0, 0.5, -1.3, 1.5, -1.5},
        {6300.0, -0.1, -2.0, 1.5, -2.0},   {8000.0, -1.1, -3.0, 1.5, -2.5},
        {10000.0, -2.5, -4.4, 2.0, -3.0},  {12500.0, -4.3, -6.2, 2.0, -5.0},
        {16000.0, -6.6, -8.5, 2.5, -16.0}, {20000.0, -9.3, -11.2, 3.0, none},
    };
    for (std::size_t i = 0; i < rows.size(); ++i) {
        rows[i].exactFrequencyHz = 1000.0 * std::pow(10.0, (static_cast<double>(i) - 20.0) / 10.0);
    }
    return rows;
}

}  // namespace TarvaneKit::Testing
