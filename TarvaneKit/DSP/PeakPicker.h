// Tonal peaks of one line spectrum: narrow lines that stand clear of the local noise floor.
// The floor is a box average in power with a hole about its middle, computed twice, the second
// time with the peaks taken out, so that a strong line doesn't raise the floor that it is
// measured against. The ring-out detector's front end; runs on the analysis queue.
// Pure functions: safe on any thread, as long as no two share a workspace.
#pragma once

#include <optional>
#include <span>
#include <vector>

namespace TarvaneKit {

struct TonalPeak {
    /// Of the parabola through the peak's bin and its neighbours, in dB.
    double frequencyHz = 0.0;
    double levelDB = 0.0;
    /// At the peak's bin; at least -120.
    double noiseFloorDB = 0.0;
    /// The local maximum, not interpolated.
    int binIndex = 0;

    double prominenceDB() const { return levelDB - noiseFloorDB; }
    bool operator==(const TonalPeak&) const = default;
};

/// A one-sided spectrum, index i at frequency i times sample rate / FFT size.
struct LineSpectrum {
    std::span<const double> levelsDB;
    /// Empty, or the amplitudes that the levels were made of (20 log10, raised to 1e-9 before):
    /// a spectrum that brings them is searched faster.
    std::span<const float> magnitudes = {};
};

namespace PeakPicker {

struct Configuration {
    double minFrequencyHz;
    double maxFrequencyHz;
    /// How far a peak must rise above the floor; its two neighbours half as far.
    double prominenceThresholdDB;
    /// Nothing below it counts; full scale or SPL, as the spectrum is.
    double minPeakLevelDB;
    /// Half widths of the floor's box and of the hole in it.
    double noiseFloorWindowHz;
    double noiseFloorGuardHz;
    /// Not negative.
    int maxPeaks;

    bool operator==(const Configuration&) const = default;
};

/// Memory of a search, kept from one to the next so that only a longer spectrum allocates.
struct Workspace {
    std::vector<double> power;
    std::vector<double> sums;
    std::vector<double> floorSums;
    std::vector<int> candidates;
};

/// The most prominent peaks, at most `maxPeaks`, ascending by frequency. Fewer than 5 bins, a
/// sample rate or size not above 0, or a range without bins give none.
std::vector<TonalPeak> findPeaks(std::span<const double> spectrumDB, double sampleRate, int fftSize,
                                 const Configuration& configuration);

/// The same into `peaks`, whose contents are replaced and whose memory is reused.
void findPeaks(const LineSpectrum& spectrum, double sampleRate, int fftSize,
               const Configuration& configuration, Workspace& workspace,
               std::vector<TonalPeak>& peaks);

/// Width in Hz between the points 3 dB below `peakLevelDB`, interpolated in dB. Empty when a
/// skirt doesn't fall that far within `maxSearchBins` bins of the peak, or inside the spectrum.
std::optional<double> measureBandwidth(std::span<const double> spectrumDB, int peakBin,
                                       double peakLevelDB, double binWidthHz, int maxSearchBins);

}  // namespace PeakPicker

}  // namespace TarvaneKit
