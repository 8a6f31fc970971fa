// The spectra of one channel: bands, lines, their holds, ring-out detection and spectrogram rows,
// once per display tick and only as far as some display asks for them.
//
// Owned by the channel's processor, which brings the newest samples. Runs on the analysis queue,
// one call at a time, and shares nothing with any other thread: a setting that has to reset
// something here raises a counter in `AnalysisSettings`, and the next analysis acts.
//
// The fast road stays in power between the transform and the levels that are shown: 10^(dB/10) of
// a line is its squared magnitude, and a tilt in dB is a factor.
#pragma once

#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "DSP/FFTAnalyzer.h"
#include "DSP/RingOutDetector.h"
#include "DSP/SpectrumSmoothing.h"
#include "Metering/AnalysisSettings.h"
#include "Metering/ChannelFrame.h"
#include "Metering/SpectrogramPace.h"
#include "Metering/SpectrumTables.h"
#include "Metering/TransformSizes.h"

namespace TarvaneApp {

class ChannelAnalysis {
  public:
    /// Of the spectrum with its bands and ring-out detection, and of the spectrogram.
    static constexpr int fftSize = TransformSizes::spectrum;
    static constexpr int spectrogramFFTSize = TransformSizes::spectrogram;
    /// Samples of each side that an analysis looks at.
    static constexpr int windowLength = spectrogramFFTSize;
    static constexpr double peakHoldDecayPerSecond = 6.0;

    struct Configuration {
        double sampleRate = 48000.0;
        TarvaneKit::CalibrationProfile calibration;
        TarvaneKit::RingOutSensitivity ringOutSensitivity = TarvaneKit::RingOutSensitivity::normal;
    };
    explicit ChannelAnalysis(const Configuration& configuration);

    /// The newest `windowLength` samples of each side; no right side on a mono channel.
    struct Window {
        std::span<const float> left;
        std::span<const float> right;
    };

    /// Fills `frame` but for its peak. Without a window (too few samples so far) only the changes
    /// in settings and request are followed. The arrays that come in `frame` are used again.
    void analyze(const AnalysisSettings& settings, const ChannelAnalysisRequest& request,
                 const std::optional<Window>& window, ChannelFrame& frame);

  private:
    void followSettings(const AnalysisSettings& settings, const ChannelAnalysisRequest& request);
    void followCalibration(const AnalysisSettings& settings, const ChannelAnalysisRequest& request);
    double elapsedSince(TarvaneKit::Date now);
    void resetSmoothing();
    void clearHolds();
    void analyzeSpectrum(const AnalysisSettings& settings, const ChannelAnalysisRequest& request,
                         const Window& window, double elapsedSeconds, ChannelFrame::RTA& rta);
    std::vector<float> spectrogramRow(const ChannelAnalysisRequest& request, const Window& window,
                                      double elapsedSeconds);

    const double sampleRate_;
    const std::optional<TarvaneKit::FFTAnalyzer> fftAnalyzer_;
    const std::optional<TarvaneKit::FFTAnalyzer> spectrogramFFTAnalyzer_;
    const std::shared_ptr<const SpectrumTables> tables_;
    std::shared_ptr<const TarvaneKit::OctaveBandAnalyzer> octaveAnalyzer_;
    TarvaneKit::RingOutDetector ringOutDetector_;

    // As of the last analysis; the first one takes every change.
    std::optional<TarvaneKit::OctaveFraction> octaveFraction_;
    std::optional<bool> octaveNormalized_;
    std::optional<TarvaneKit::RingOutSensitivity> ringOutSensitivity_;
    bool ringOutWasEnabled_ = false;
    bool rtaWasWanted_ = false;
    int smoothingGeneration_ = -1;
    int peakHoldGeneration_ = -1;
    int timingGeneration_ = -1;
    int calibrationGeneration_ = -1;
    std::optional<TarvaneKit::Date> lastUpdate_;

    // Amplitude factors: of each line, and of the lines that the spectrogram's columns read. A
    // single one where all are alike, which spares a channel without a microphone file the table.
    std::vector<float> correctionGains_;
    std::vector<float> spectrogramCorrectionGains_;

    TarvaneKit::SpectrumAverage bandAverage_;
    TarvaneKit::SpectrumAverage lineAverage_;
    std::vector<double> peakHoldValues_;
    std::vector<double> linePeakHoldValues_;
    std::vector<double> spectrogramLevelsDB_;  // averaged, at the lines that the columns read
    SpectrogramPace spectrogramPace_;
};

}  // namespace TarvaneApp
