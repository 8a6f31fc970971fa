// One frame of samples to a one-sided amplitude spectrum: window, real transform, magnitude. A
// full-scale sine on a bin reads 1.0 there.
//
// An analyzer is tables and a plan, which all analyzers of one size and window share; working
// memory belongs to the thread that calls. So it is const and may be used from any threads at
// once, and two hundred channels analysed one after the other stay in one core's cache.
#pragma once

#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace TarvaneKit {

class FFTAnalyzer {
  public:
    enum class WindowType {
        hann,            ///< periodic: its period is the size
        blackmanHarris,  ///< four terms, symmetric
    };

    /// Empty unless `fftSize` is a power of two, from 1 on. The first analyzer of a size measures
    /// for a tenth of a second which transform suits this machine; any thread may ask.
    static std::optional<FFTAnalyzer> create(int fftSize, WindowType windowType);

    int fftSize() const;
    /// Entries of a spectrum: half the size, without the bin at half the sample rate.
    int binCount() const;
    std::span<const float> window() const;
    /// What restores a sine's amplitude: 2 / (sum of the window).
    float windowNormalization() const;

    /// `samples` are `fftSize()`, at least 2; `magnitudes` are `binCount()`, bin k at k
    /// sampleRate / fftSize. Bin 0 has the factor 2 of the one-sided spectrum too: a constant c
    /// reads 2 |c|. Doesn't allocate after a thread's first call for its largest size.
    void magnitudeSpectrum(std::span<const float> samples, std::span<float> magnitudes) const;
    std::vector<float> magnitudeSpectrum(std::span<const float> samples) const;

    double binFrequency(int bin, double sampleRate) const;

  private:
    struct Registry;
    struct Tables;
    struct Transform;

    explicit FFTAnalyzer(std::shared_ptr<const Tables> tables) : tables_(std::move(tables)) {}

    std::shared_ptr<const Tables> tables_;
};

}  // namespace TarvaneKit
