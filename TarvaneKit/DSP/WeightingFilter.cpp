#include "DSP/WeightingFilter.h"

#include <cmath>
#include <numbers>

#include "Core/Contract.h"
#include "DSP/AmplitudeLevel.h"

namespace TarvaneKit {

namespace {

using std::numbers::pi;

constexpr double referenceHz = 1000.0;  // IEC 61672-1: A and C are 0 dB there

// The bilinear transform of an analog pole, prewarped at the pole's own frequency.
struct BilinearPole {
    BilinearPole(double cornerHz, double sampleRate)
        : twoFs(2.0 * sampleRate), k(twoFs * std::tan(pi * cornerHz / sampleRate)) {}

    double a1() const { return (k - twoFs) / (k + twoFs); }

    double twoFs;
    double k;
};

// s / (s + K).
FirstOrderSection highPass(double cornerHz, double sampleRate) {
    const BilinearPole pole(cornerHz, sampleRate);
    const double b0 = pole.twoFs / (pole.k + pole.twoFs);
    return {.b0 = b0, .b1 = -b0, .a1 = pole.a1()};
}

// 1 / (s + K): a gain of 1/K at DC, which the filter's gain makes up for.
FirstOrderSection lowPass(double cornerHz, double sampleRate) {
    const BilinearPole pole(cornerHz, sampleRate);
    const double b0 = 1.0 / (pole.k + pole.twoFs);
    return {.b0 = b0, .b1 = b0, .a1 = pole.a1()};
}

// A is s^4 / ((s+w1)^2 (s+w4)^2 (s+w2)(s+w3)), C is s^2 / ((s+w1)^2 (s+w4)^2). Each factor s of
// a numerator rides on a pole, hence f4 of high-pass kind in A and of low-pass kind in C.
std::vector<FirstOrderSection> designSections(Weighting weighting, double sampleRate) {
    constexpr double f1 = WeightingFilter::f1;
    constexpr double f2 = WeightingFilter::f2;
    constexpr double f3 = WeightingFilter::f3;
    constexpr double f4 = WeightingFilter::f4;
    switch (weighting) {
        case Weighting::a:
            return {highPass(f1, sampleRate), highPass(f1, sampleRate), highPass(f4, sampleRate),
                    highPass(f4, sampleRate), lowPass(f2, sampleRate),  lowPass(f3, sampleRate)};
        case Weighting::c:
            return {highPass(f1, sampleRate), highPass(f1, sampleRate), lowPass(f4, sampleRate),
                    lowPass(f4, sampleRate)};
        case Weighting::z:
            break;
    }
    return {};
}

}  // namespace

double FirstOrderSection::process(double sample) {
    const double y = b0 * sample + b1 * x1 - a1 * y1;
    x1 = sample;
    y1 = y;
    return y;
}

double FirstOrderSection::magnitude(double radiansPerSample) const {
    const double cosW = std::cos(radiansPerSample);
    const double sinW = std::sin(radiansPerSample);
    const double numerator = std::sqrt((b0 + b1 * cosW) * (b0 + b1 * cosW) + b1 * sinW * b1 * sinW);
    const double squaredDenominator = (1.0 + a1 * cosW) * (1.0 + a1 * cosW) + a1 * sinW * a1 * sinW;
    return squaredDenominator > 0.0 ? numerator / std::sqrt(squaredDenominator) : 0.0;
}

double WeightingFilter::pole(double cornerHz, double sampleRate) {
    return -BilinearPole(cornerHz, sampleRate).a1();
}

WeightingFilter::WeightingFilter(Weighting weighting, double sampleRate) : weighting_(weighting) {
    TARVANE_PRECONDITION(sampleRate > 0.0);
    sections_ = designSections(weighting, sampleRate);
    const double magnitude = sectionsMagnitude(2.0 * pi * referenceHz / sampleRate);
    gain_ = magnitude > 0.0 ? 1.0 / magnitude : 1.0;
}

void WeightingFilter::reset() {
    for (FirstOrderSection& section : sections_) {
        section.x1 = 0.0;
        section.y1 = 0.0;
    }
}

double WeightingFilter::process(double sample) {
    for (FirstOrderSection& section : sections_) {
        sample = section.process(sample);
    }
    return sample * gain_;
}

double WeightingFilter::responseDB(double frequencyHz, double sampleRate) const {
    TARVANE_PRECONDITION(sampleRate > 0.0);
    if (sections_.empty()) {
        return 0.0;
    }
    const double magnitude = sectionsMagnitude(frequencyHz * (2.0 * pi) / sampleRate) * gain_;
    return amplitudeLevelDB(magnitude);
}

double WeightingFilter::sectionsMagnitude(double radiansPerSample) const {
    double product = 1.0;
    for (const FirstOrderSection& section : sections_) {
        product *= section.magnitude(radiansPerSample);
    }
    return product;
}

}  // namespace TarvaneKit
