// The formulas of spectra read as they are written, one value at a time in 64 bits: what the fast
// ones are held against in tests, and measured against in benchmarks.
#pragma once

#include <functional>
#include <span>
#include <vector>

#include "DSP/FFTAnalyzer.h"
#include "DSP/OctaveBands.h"
#include "DSP/Weighting.h"

namespace TarvaneKit::Testing {

/// 0.5 (1 - cos(2 pi n / N)).
std::vector<double> plainHannWindow(int count);

/// 2 |X[k]| / (sum of the window) for k below N/2, X by its definition as a sum over all samples.
std::vector<double> plainMagnitudes(std::span<const float> samples, std::span<const double> window);

/// Band levels by a walk over the bins with a cursor over ascending bands.
std::vector<double> plainBandLevels(const std::vector<OctaveBand>& bands, int fftSize,
                                    double sampleRate, std::span<const float> magnitudes);

struct PlainAverage {
    std::vector<double> state;
    double totalWeight = 0.0;
};
std::vector<double> plainSmoothedLevels(std::span<const double> newLevelsDB, PlainAverage& average,
                                        TimeWeighting timeWeighting, double elapsedSeconds);

std::vector<double> plainOctaveNormalized(std::span<const double> levelsDB, int fftSize,
                                          double sampleRate);

std::vector<double> plainLogSpacedFrequencies(int count, double minHz, double maxHz);

std::vector<float> plainSpectrogramRow(std::span<const double> lineLevelsDB,
                                       std::span<const double> frequencies, double sampleRate,
                                       int fftSize);

/// One channel's analysis of its newest samples, tick after tick. Its transforms are the
/// library's, which are tested by themselves.
class ScalarChannelAnalysis {
  public:
    struct Request {
        TimeWeighting timeWeighting = TimeWeighting::fast;
        bool wantsRTA = true;
        bool wantsSpectrogram = true;
        bool octaveNormalized = false;
        double elapsedSeconds = 1.0 / 60.0;
    };
    struct Frame {
        std::vector<double> bandLevelsDB;
        std::vector<double> bandPeakHoldDB;
        std::vector<double> lineSpectrumDB;
        std::vector<double> linePeakHoldDB;
        std::vector<float> spectrogramRow;
    };

    /// `correctionDB` is the channel's offset and microphone correction over frequency.
    ScalarChannelAnalysis(double sampleRate, OctaveFraction fraction,
                          const std::function<double(double)>& correctionDB);

    /// 8192 samples a side; `right` empty for a mono channel.
    Frame analyze(const Request& request, std::span<const float> left,
                  std::span<const float> right);

  private:
    std::vector<float> corrected(const FFTAnalyzer& analyzer, const std::vector<float>& gains,
                                 std::span<const float> left, std::span<const float> right) const;

    double sampleRate_;
    FFTAnalyzer analyzer_;
    FFTAnalyzer spectrogramAnalyzer_;
    std::vector<OctaveBand> bands_;
    std::vector<float> gains_;
    std::vector<float> spectrogramGains_;
    std::vector<double> frequencies_;
    PlainAverage bandAverage_;
    PlainAverage lineAverage_;
    std::vector<double> bandHoldDB_;
    std::vector<double> lineHoldDB_;
    std::vector<double> spectrogramDB_;
};

}  // namespace TarvaneKit::Testing
