// The peak search and the ring-out detector as their rules are written, one step after another:
// what the library is held against in tests, and measured against in benchmarks. It shares
// nothing with the library but the records that go in and come out.
#pragma once

#include <optional>
#include <span>
#include <vector>

#include "DSP/PeakPicker.h"
#include "DSP/RingOutDetector.h"

namespace TarvaneKit::Testing {

std::vector<double> plainBoxAveragePower(std::span<const double> values, int windowBins,
                                         int guardBins);

std::vector<TonalPeak> plainFindPeaks(std::span<const double> spectrumDB, double sampleRate,
                                      int fftSize, const PeakPicker::Configuration& configuration);

/// What an alert is judged by; identifiers and dates left out.
struct PlainAlert {
    double frequencyHz;
    double suggestedCutDB;
    double suggestedQ;
    double bandwidthHz;
};

class PlainRingOutDetector {
  public:
    PlainRingOutDetector(double sampleRate, int fftSize,
                         const RingOutDetector::Configuration& initialConfiguration)
        : configuration(initialConfiguration), sampleRate_(sampleRate), fftSize_(fftSize) {}

    RingOutDetector::Configuration configuration;
    std::optional<PlainAlert> live;

    /// Seconds from any origin.
    std::vector<PlainAlert> update(std::span<const double> spectrumDB, double time);
    int trackCount() const { return static_cast<int>(tracks_.size()); }

  private:
    struct Sample {
        double time, level, rawLevel, frequency;
    };
    struct Track {
        double firstSeen, lastUpdate, level, frequency, maxLevel;
        std::vector<Sample> history;
        bool hasAlerted = false;
    };

    void updateTrack(Track& track, double f, double level, double time) const;
    bool satisfiesGrowth(const Track& track) const;
    bool looksLikeFeedback(const TonalPeak& peak, const std::vector<TonalPeak>& peaks) const;
    PlainAlert alertFor(const TonalPeak& peak, double frequency,
                        std::span<const double> spectrumDB) const;

    double sampleRate_;
    int fftSize_;
    std::vector<Track> tracks_;
};

}  // namespace TarvaneKit::Testing
