// The sound level meter as its formulas are written, one sample at a time: what the engine is
// held against in tests, and measured against in benchmarks. It shares nothing with the library
// but the names of the weightings.
#pragma once

#include <array>
#include <span>
#include <vector>

#include "DSP/Weighting.h"

namespace TarvaneKit::Testing {

class ScalarSPLMeter {
  public:
    explicit ScalarSPLMeter(double sampleRate);

    /// In force from the next block on.
    void setOffsetDB(double offsetDB) { offsetDB_ = offsetDB; }
    void addLeq(Weighting weighting);
    void resetDetectors();
    void processBlock(std::span<const float> samples);

    double levelDB(Weighting weighting, TimeWeighting timeWeighting) const;
    double peakDB(Weighting weighting) const;
    /// In the order of `addLeq`.
    double leqDB(int index) const;

  private:
    struct Section {
        double b0, b1, a1;
        double x1 = 0.0, y1 = 0.0;
    };
    struct Filter {
        std::vector<Section> sections;
        double gain = 1.0;
    };
    struct Level {
        double meanSquare = 0.0;
        double count = 0.0;
    };
    struct Peak {
        std::array<double, 10> maxima{};
        int current = 0;
        int samples = 0;
    };
    struct Leq {
        Weighting weighting;
        double sumOfSquares = 0.0;
        double elapsedSeconds = 0.0;
    };

    static Filter design(Weighting weighting, double sampleRate);
    void updateLevel(Level& level, TimeWeighting timeWeighting) const;
    void updatePeak(Peak& peak) const;

    double sampleRate_;
    double offsetDB_ = 0.0;
    int segmentLength_;
    std::array<Filter, 3> filters_;
    std::array<std::array<Level, 4>, 3> levels_{};
    std::array<Peak, 3> peaks_{};
    std::vector<Leq> leqs_;
    std::vector<double> scaled_;
    std::vector<double> weighted_;
};

}  // namespace TarvaneKit::Testing
