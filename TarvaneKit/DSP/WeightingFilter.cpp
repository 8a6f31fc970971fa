#include "DSP/WeightingFilter.h"

#include <algorithm>
#include <cmath>

#include "Core/Contract.h"

namespace TarvaneKit {

namespace {

constexpr double twoPi = 6.283185307179586;
constexpr double referenceRadiansPerSecond = 6283.185307179586;  // 2 pi 1000 Hz
constexpr double amplitudeFloor = 1e-12;

// pi f of the corner frequencies.
constexpr double piF1 = 64.71365764651819;
constexpr double piF2 = 338.2007743794732;
constexpr double piF3 = 2318.062561129382;
constexpr double piF4 = 38309.26254347977;

// The bilinear transform of an analog pole, prewarped at the pole's own frequency.
struct BilinearPole {
    BilinearPole(double piF, double sampleRate)
        : twoFs(2.0 * sampleRate), k(twoFs * std::tan(piF / sampleRate)) {}

    double a1() const { return (k - twoFs) / (k + twoFs); }

    double twoFs;
    double k;
};

// s / (s + K).
FirstOrderSection highPass(double piF, double sampleRate) {
    const BilinearPole pole(piF, sampleRate);
    const double b0 = pole.twoFs / (pole.k + pole.twoFs);
    return {.b0 = b0, .b1 = -b0, .a1 = pole.a1()};
}

// 1 / (s + K): a gain of 1/K at DC, which the filter's gain makes up for.
FirstOrderSection lowPass(double piF, double sampleRate) {
    const BilinearPole pole(piF, sampleRate);
    const double b0 = 1.0 / (pole.k + pole.twoFs);
    return {.b0 = b0, .b1 = b0, .a1 = pole.a1()};
}

// A is s^4 / ((s+w1)^2 (s+w4)^2 (s+w2)(s+w3)), C is s^2 / ((s+w1)^2 (s+w4)^2). Each factor s of
// a numerator rides on a pole, hence f4 of high-pass kind in A and of low-pass kind in C.
std::vector<FirstOrderSection> designSections(Weighting weighting, double sampleRate) {
    switch (weighting) {
        case Weighting::a:
            return {highPass(piF1, sampleRate), highPass(piF1, sampleRate),
                    highPass(piF4, sampleRate), highPass(piF4, sampleRate),
                    lowPass(piF2, sampleRate),  lowPass(piF3, sampleRate)};
        case Weighting::c:
            return {highPass(piF1, sampleRate), highPass(piF1, sampleRate),
                    lowPass(piF4, sampleRate), lowPass(piF4, sampleRate)};
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

WeightingFilter::WeightingFilter(Weighting weighting, double sampleRate) : weighting_(weighting) {
    TARVANE_PRECONDITION(sampleRate > 0.0);
    sections_ = designSections(weighting, sampleRate);
    const double magnitude = sectionsMagnitude(referenceRadiansPerSecond / sampleRate);
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
    const double magnitude = sectionsMagnitude(frequencyHz * twoPi / sampleRate) * gain_;
    return 20.0 * std::log10(std::max(magnitude, amplitudeFloor));
}

double WeightingFilter::sectionsMagnitude(double radiansPerSample) const {
    double product = 1.0;
    for (const FirstOrderSection& section : sections_) {
        product *= section.magnitude(radiansPerSample);
    }
    return product;
}

}  // namespace TarvaneKit
