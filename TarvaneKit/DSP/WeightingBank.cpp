#include "DSP/WeightingBank.h"

#include <cmath>

#include "Core/SharedTables.h"
#include "DSP/WeightingFilter.h"

namespace TarvaneKit {

namespace {

WeightingPoles polesAt(double sampleRate) {
    const auto pole = [sampleRate](double cornerHz) {
        return WeightingFilter::pole(cornerHz, sampleRate);
    };
    return {.p1 = pole(WeightingFilter::f1),
            .p2 = pole(WeightingFilter::f2),
            .p3 = pole(WeightingFilter::f3),
            .p4 = pole(WeightingFilter::f4)};
}

// What the kernel leaves out: every section's b0, and the filter's gain.
double scaleOf(const WeightingFilter& filter) {
    double scale = filter.gain();
    for (const FirstOrderSection& section : filter.sections()) {
        scale *= section.b0;
    }
    return scale;
}

// The tables hold 60 KB and depend on the rate alone, so all channels of a rate share them.
std::shared_ptr<const WeightingTables> sharedTables(double sampleRate) {
    static SharedTables<double, WeightingTables> tables;
    return tables.get(sampleRate,
                      [&] { return std::make_shared<const WeightingTables>(polesAt(sampleRate)); });
}

}  // namespace

WeightingBank::WeightingBank(double sampleRate) {
    const WeightingFilter a(Weighting::a, sampleRate);
    const WeightingFilter c(Weighting::c, sampleRate);
    tables_ = sharedTables(sampleRate);
    scaleA_ = scaleOf(a);
    scaleC_ = scaleOf(c);
}

std::array<WeightedRun, 3> WeightingBank::process(std::span<const float> samples, double gain) {
    const WeightingSums sums = weightBlock(*tables_, gain, samples, carry_);
    return {
        WeightedRun{sums.sumOfSquaresA * scaleA_ * scaleA_, std::sqrt(sums.squaredPeakA) * scaleA_},
        WeightedRun{sums.sumOfSquaresC * scaleC_ * scaleC_, std::sqrt(sums.squaredPeakC) * scaleC_},
        WeightedRun{sums.sumOfSquaresZ, sums.peakZ}};
}

}  // namespace TarvaneKit
