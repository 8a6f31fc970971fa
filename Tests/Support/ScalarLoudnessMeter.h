// Programme loudness as its formulas are written, one sample at a time: what the meter is held
// against in tests, and measured against in benchmarks. It shares nothing with the library but
// the record of its readings.
#pragma once

#include <optional>
#include <span>
#include <vector>

#include "Metrics/LoudnessReadings.h"

namespace TarvaneKit::Testing {

/// K-weighting in transposed direct form II.
class ScalarKWeighting {
  public:
    struct Biquad {
        double b0, b1, b2, a1, a2;
        double z1 = 0.0, z2 = 0.0;
        double process(double sample);
    };

    explicit ScalarKWeighting(double sampleRate);
    double process(double sample) { return highPass.process(shelf.process(sample)); }

    Biquad shelf;
    Biquad highPass;
};

/// Every sample and every interpolated neighbour, in 64 bits.
class ScalarTruePeak {
  public:
    ScalarTruePeak(double sampleRate, int tapsPerPhase);
    /// The largest magnitude of the block.
    double processBlock(std::span<const float> samples);

    int factor;
    int taps;
    std::vector<double> coefficients;  // [phase][tap]

  private:
    std::vector<double> history_;  // a ring of `taps`, twice
    int write_ = 0;
};

class ScalarLoudnessMeter {
  public:
    ScalarLoudnessMeter(double sampleRate, std::vector<double> weights);
    void process(std::span<const std::span<const float>> channels);
    void reset();
    LoudnessReadings readings() const;

  private:
    struct Histogram {
        std::vector<long> counts = std::vector<long>(800);
        std::vector<double> energies = std::vector<double>(800);
        static int bin(double loudness);
        void add(double loudness, double energy);
        std::optional<double> meanEnergy(int from) const;
        std::optional<double> percentile(double percent, int from) const;
    };

    void completeStep(double energy);

    std::vector<double> weights_;
    int stepLength_;
    std::vector<ScalarKWeighting> filters_;
    std::vector<ScalarTruePeak> truePeaks_;
    double stepEnergy_ = 0.0;
    int stepFrames_ = 0;
    std::vector<double> steps_;  // newest last, at most 30
    int stepsSinceReset_ = 0;
    std::optional<double> momentary_;
    std::optional<double> shortTerm_;
    double truePeak_ = 0.0;
    double maxMomentary_ = LoudnessReadings::noValue;
    double maxShortTerm_ = LoudnessReadings::noValue;
    Histogram integrated_;
    Histogram range_;
};

}  // namespace TarvaneKit::Testing
