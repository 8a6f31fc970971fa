#include "DSP/KWeightingFilter.h"

#include <cmath>
#include <numbers>

#include "Core/Contract.h"
#include "Core/SharedTables.h"

namespace TarvaneKit {

namespace {

// The analog stages behind BS.1770's tables, by their corner, Q and the numerator's gains.
constexpr double shelfCornerHz = 1681.974450955533;
constexpr double shelfQ = 0.7071752369554196;
constexpr double shelfVh = 1.5848647011308556;  // at the top: +4 dB
constexpr double shelfVb = 1.2587209302325617;  // at the corner
constexpr double highPassCornerHz = 38.13547087602444;
constexpr double highPassQ = 0.5003270373238773;

Biquad designShelf(double sampleRate) {
    const double k = std::tan(std::numbers::pi * shelfCornerHz / sampleRate);
    const double a0 = 1.0 + k / shelfQ + k * k;
    return {.b0 = (shelfVh + shelfVb * k / shelfQ + k * k) / a0,
            .b1 = 2.0 * (k * k - shelfVh) / a0,
            .b2 = (shelfVh - shelfVb * k / shelfQ + k * k) / a0,
            .a1 = 2.0 * (k * k - 1.0) / a0,
            .a2 = (1.0 - k / shelfQ + k * k) / a0};
}

Biquad designHighPass(double sampleRate) {
    const double k = std::tan(std::numbers::pi * highPassCornerHz / sampleRate);
    const double a0 = 1.0 + k / highPassQ + k * k;
    return {.b0 = 1.0,
            .b1 = -2.0,
            .b2 = 1.0,
            .a1 = 2.0 * (k * k - 1.0) / a0,
            .a2 = (1.0 - k / highPassQ + k * k) / a0};
}

// The tables hold 20 KB and depend on the rate alone, so all channels of a rate share them.
std::shared_ptr<const KWeightingTables> sharedTables(const Biquad& shelf, const Biquad& highPass,
                                                     double sampleRate) {
    static SharedTables<double, KWeightingTables> tables;
    return tables.get(sampleRate,
                      [&] { return std::make_shared<const KWeightingTables>(shelf, highPass); });
}

}  // namespace

KWeightingFilter::KWeightingFilter(double sampleRate)
    : shelf_(designShelf(sampleRate)), highPass_(designHighPass(sampleRate)) {
    TARVANE_PRECONDITION(sampleRate > 0.0);
    tables_ = sharedTables(shelf_, highPass_, sampleRate);
}

void KWeightingFilter::reset() {
    states_ = {};
}

double KWeightingFilter::process(double sample) {
    return shelf_.b0 * kWeightSample(*tables_, sample, states_);
}

double KWeightingFilter::sumOfSquares(std::span<const float> samples) {
    const double sum = kWeightedSumOfSquares(*tables_, samples, states_);
    return sum * shelf_.b0 * shelf_.b0;
}

}  // namespace TarvaneKit
