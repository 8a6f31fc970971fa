#include "Metering/ChannelAnalysis.h"

#include <algorithm>
#include <cmath>

#include "Core/AlignedVector.h"
#include "DSP/Kernels/InterpolationKernel.h"
#include "DSP/Kernels/LevelKernel.h"

namespace TarvaneApp {

using TarvaneKit::AlignedVector;
using TarvaneKit::CalibrationProfile;
using TarvaneKit::Date;
using TarvaneKit::FFTAnalyzer;
using TarvaneKit::RingOutDetector;

namespace {

constexpr int lineCount = ChannelAnalysis::fftSize / 2;
constexpr double nominalTickSeconds = 1.0 / 60.0;

// A hold that has seen nothing yet.
constexpr double emptyHoldDB = -120.0;

// Time constants of the spectrogram's lines: a sound appears at once and leaves a short tail.
constexpr double spectrogramAttackSeconds = 0.02;
constexpr double spectrogramReleaseSeconds = 0.06;

// A ring has to be this loud to count on a calibrated channel: a quiet room.
constexpr double ringFloorSPL = 40.0;

// Working memory of the thread, one for all channels that it analyses.
struct Scratch {
    AlignedVector<float> left = AlignedVector<float>(ChannelAnalysis::spectrogramFFTSize / 2);
    AlignedVector<float> right = AlignedVector<float>(ChannelAnalysis::spectrogramFFTSize / 2);
    AlignedVector<float> magnitudes = AlignedVector<float>(ChannelAnalysis::spectrogramFFTSize / 2);
    AlignedVector<double> linePowers =
        AlignedVector<double>(ChannelAnalysis::spectrogramFFTSize / 2);
    AlignedVector<double> lineLevelsDB =
        AlignedVector<double>(ChannelAnalysis::spectrogramFFTSize / 2);
    AlignedVector<double> shownLevelsDB = AlignedVector<double>(lineCount);
    AlignedVector<double> bandPowers;
    AlignedVector<double> bandLevelsDB;

    static Scratch& ofThisThread() {
        thread_local Scratch scratch;
        return scratch;
    }
};

RingOutDetector::Configuration ringOutConfiguration(
    const ChannelAnalysis::Configuration& configuration) {
    auto peakPicker = RingOutDetector::fullScalePeakPicker;
    if (configuration.calibration.calibrationSource() != TarvaneKit::CalibrationSource::none) {
        peakPicker.minPeakLevelDB = ringFloorSPL;
    }
    return {configuration.ringOutSensitivity, peakPicker};
}

// The amplitude factor of a line at that frequency: the channel's offset to dB SPL and its
// microphone's correction.
float correctionGain(const CalibrationProfile& calibration, double frequencyHz) {
    return static_cast<float>(std::pow(
        10.0, (calibration.broadbandOffsetDB() + calibration.micCorrectionDB(frequencyHz)) / 20.0));
}

// By a factor for each, or by one for all.
void correct(std::span<float> magnitudes, std::span<const float> gains) {
    if (gains.size() == 1) {
        TarvaneKit::scaleFinite(magnitudes, gains.front(), magnitudes);
    } else {
        TarvaneKit::multiplyFinite(magnitudes, gains, magnitudes);
    }
}

// Follows the levels up at once, and lets the rest fall at the holds' pace.
void updateHold(std::span<const double> levelsDB, double elapsedSeconds,
                std::vector<double>& heldDB) {
    if (heldDB.size() != levelsDB.size()) {
        heldDB.assign(levelsDB.size(), emptyHoldDB);
    }
    TarvaneKit::holdLevels(levelsDB, ChannelAnalysis::peakHoldDecayPerSecond * elapsedSeconds,
                           heldDB);
}

}  // namespace

ChannelAnalysis::ChannelAnalysis(const Configuration& configuration)
    : sampleRate_(configuration.sampleRate),
      fftAnalyzer_(FFTAnalyzer::create(fftSize, FFTAnalyzer::WindowType::hann)),
      spectrogramFFTAnalyzer_(
          FFTAnalyzer::create(spectrogramFFTSize, FFTAnalyzer::WindowType::hann)),
      tables_(sharedSpectrumTables(configuration.sampleRate)),
      ringOutDetector_(configuration.sampleRate, fftSize, ringOutConfiguration(configuration)),
      ringOutSensitivity_(configuration.ringOutSensitivity) {}

void ChannelAnalysis::analyze(const AnalysisSettings& settings,
                              const ChannelAnalysisRequest& request,
                              const std::optional<Window>& window, ChannelFrame& frame) {
    std::optional<ChannelFrame::RTA> rta = std::exchange(frame.rta, std::nullopt);
    frame.spectrogramRows.clear();
    followSettings(settings, request);
    if (!window || !fftAnalyzer_ || !spectrogramFFTAnalyzer_) {
        return;
    }
    followCalibration(settings, request);
    const double elapsedSeconds = elapsedSince(settings.now);
    if (request.wantsRTA) {
        frame.rta = rta ? std::move(rta) : std::optional<ChannelFrame::RTA>(std::in_place);
        analyzeSpectrum(settings, request, *window, elapsedSeconds, *frame.rta);
    }
    if (request.wantsSpectrogram) {
        frame.spectrogramRows =
            spectrogramPace_.rows(spectrogramRow(request, *window, elapsedSeconds), elapsedSeconds);
    } else {
        spectrogramLevelsDB_.clear();
        spectrogramPace_.forgetDebt();
    }
}

void ChannelAnalysis::followSettings(const AnalysisSettings& settings,
                                     const ChannelAnalysisRequest& request) {
    if (std::exchange(timingGeneration_, settings.timingGeneration) != settings.timingGeneration) {
        lastUpdate_.reset();
        spectrogramPace_.forgetDebt();
    }
    if (std::exchange(octaveFraction_, request.octaveFraction) != request.octaveFraction) {
        octaveAnalyzer_ = sharedBandAnalyzer(request.octaveFraction, sampleRate_);
        // There are other bands now, but the same lines: their hold stays.
        peakHoldValues_.clear();
        resetSmoothing();
    }
    if (std::exchange(smoothingGeneration_, settings.smoothingGeneration) !=
        settings.smoothingGeneration) {
        resetSmoothing();
    }
    if (std::exchange(octaveNormalized_, request.octaveNormalized) != request.octaveNormalized) {
        resetSmoothing();
    }
    if (std::exchange(peakHoldGeneration_, settings.peakHoldGeneration) !=
        settings.peakHoldGeneration) {
        clearHolds();
    }
    if (std::exchange(ringOutSensitivity_, request.ringOutSensitivity) !=
        request.ringOutSensitivity) {
        ringOutDetector_.configuration.apply(request.ringOutSensitivity);
        ringOutDetector_.reset();
    }
    const bool detects = request.ringOutEnabled && request.wantsRTA;
    if (std::exchange(ringOutWasEnabled_, detects) && !detects) {
        ringOutDetector_.reset();
    }
    if (!std::exchange(rtaWasWanted_, request.wantsRTA) && request.wantsRTA) {
        // A display that comes back shows nothing of what it hasn't seen.
        resetSmoothing();
        clearHolds();
    }
}

void ChannelAnalysis::followCalibration(const AnalysisSettings& settings,
                                        const ChannelAnalysisRequest& request) {
    if (std::exchange(calibrationGeneration_, settings.calibrationGeneration) ==
            settings.calibrationGeneration &&
        !correctionGains_.empty()) {
        return;
    }
    static const CalibrationProfile uncalibrated;
    const CalibrationProfile& calibration =
        request.calibration ? *request.calibration : uncalibrated;
    const auto spectrogramLines = tables_->spectrogramColumns.lines();
    correctionGains_.assign(1, correctionGain(calibration, 0.0));
    spectrogramCorrectionGains_ = correctionGains_;
    if (!calibration.micCalFile) {
        return;  // the same at all frequencies
    }
    correctionGains_.resize(lineCount);
    spectrogramCorrectionGains_.resize(spectrogramLines.size());
    for (int i = 0; i < lineCount; ++i) {
        correctionGains_[static_cast<std::size_t>(i)] =
            correctionGain(calibration, sampleRate_ * i / fftSize);
    }
    std::ranges::transform(
        spectrogramLines, spectrogramCorrectionGains_.begin(), [&](std::int32_t line) {
            return correctionGain(calibration, sampleRate_ * line / spectrogramFFTSize);
        });
}

double ChannelAnalysis::elapsedSince(Date now) {
    const auto last = std::exchange(lastUpdate_, now);
    return last ? std::chrono::duration<double>(now - *last).count() : nominalTickSeconds;
}

void ChannelAnalysis::resetSmoothing() {
    bandAverage_.reset();
    lineAverage_.reset();
    spectrogramLevelsDB_.clear();
}

void ChannelAnalysis::clearHolds() {
    peakHoldValues_.clear();
    linePeakHoldValues_.clear();
}

void ChannelAnalysis::analyzeSpectrum(const AnalysisSettings& settings,
                                      const ChannelAnalysisRequest& request, const Window& window,
                                      double elapsedSeconds, ChannelFrame::RTA& rta) {
    Scratch& scratch = Scratch::ofThisThread();
    const std::span magnitudes(scratch.magnitudes.data(), lineCount);
    fftAnalyzer_->magnitudeSpectrum(window.left.last(fftSize), magnitudes);
    if (!window.right.empty()) {
        const std::span right(scratch.right.data(), lineCount);
        fftAnalyzer_->magnitudeSpectrum(window.right.last(fftSize), right);
        TarvaneKit::rootMeanSquare(magnitudes, right, magnitudes);
    }
    correct(magnitudes, correctionGains_);

    const std::span powers(scratch.linePowers.data(), lineCount);
    const std::span levelsDB(scratch.lineLevelsDB.data(), lineCount);
    TarvaneKit::squareAmplitudes(magnitudes, TarvaneKit::lineFloor.power, powers);
    TarvaneKit::levelsOfPowers(powers, TarvaneKit::lineFloor, levelsDB);
    rta.ringAlert.reset();
    if (request.ringOutEnabled) {
        ringOutDetector_.update({.levelsDB = levelsDB, .magnitudes = magnitudes}, settings.now);
        rta.ringAlert = ringOutDetector_.currentLiveAlert();
    }

    const auto bandCount = static_cast<std::size_t>(octaveAnalyzer_->bandCount());
    scratch.bandPowers.resize(bandCount);
    scratch.bandLevelsDB.resize(bandCount);
    octaveAnalyzer_->bandPowers(magnitudes, scratch.bandPowers);
    TarvaneKit::levelsOfPowers(scratch.bandPowers, TarvaneKit::bandFloor, scratch.bandLevelsDB);
    rta.bandLevelsDB.resize(bandCount);
    TarvaneKit::smoothLevels({.powers = scratch.bandPowers, .levelsDB = scratch.bandLevelsDB},
                             bandAverage_, settings.rtaTimeWeighting, elapsedSeconds,
                             rta.bandLevelsDB);
    updateHold(scratch.bandLevelsDB, elapsedSeconds, peakHoldValues_);
    rta.bandPeakHoldDB = peakHoldValues_;

    std::span<const double> shownDB = levelsDB;
    if (request.octaveNormalized) {
        const TarvaneKit::OctaveTilt& tilt = tables_->lineTilt;
        TarvaneKit::add(levelsDB, tilt.levelsDB(), scratch.shownLevelsDB);
        TarvaneKit::multiply(powers, tilt.factors(), powers);
        shownDB = scratch.shownLevelsDB;
    }
    rta.lineSpectrumDB.resize(lineCount);
    TarvaneKit::smoothLevels({.powers = powers, .levelsDB = shownDB}, lineAverage_,
                             settings.rtaTimeWeighting, elapsedSeconds, rta.lineSpectrumDB);
    updateHold(shownDB, elapsedSeconds, linePeakHoldValues_);
    rta.linePeakHoldDB = linePeakHoldValues_;
}

std::vector<float> ChannelAnalysis::spectrogramRow(const ChannelAnalysisRequest& request,
                                                   const Window& window, double elapsedSeconds) {
    Scratch& scratch = Scratch::ofThisThread();
    const TarvaneKit::SpectrogramColumns& columns = tables_->spectrogramColumns;
    const auto lines = columns.lines();
    const std::span magnitudes(scratch.left.data(), lines.size());

    const auto magnitudesAtLines = [&](std::span<const float> side, std::span<float> out) {
        spectrogramFFTAnalyzer_->magnitudeSpectrum(side, scratch.magnitudes);
        TarvaneKit::gather(scratch.magnitudes, lines, out);
    };
    magnitudesAtLines(window.left, magnitudes);
    if (!window.right.empty()) {
        const std::span right(scratch.right.data(), lines.size());
        magnitudesAtLines(window.right, right);
        TarvaneKit::rootMeanSquare(magnitudes, right, magnitudes);
    }
    correct(magnitudes, spectrogramCorrectionGains_);

    const std::span powers(scratch.linePowers.data(), lines.size());
    const std::span levelsDB(scratch.lineLevelsDB.data(), lines.size());
    TarvaneKit::squareAmplitudes(magnitudes, TarvaneKit::lineFloor.power, powers);
    TarvaneKit::levelsOfPowers(powers, TarvaneKit::lineFloor, levelsDB);
    if (request.octaveNormalized) {
        TarvaneKit::add(levelsDB, tables_->spectrogramTiltDB, levelsDB);
    }
    if (spectrogramLevelsDB_.size() != levelsDB.size()) {
        spectrogramLevelsDB_.assign(levelsDB.begin(), levelsDB.end());
    } else {
        TarvaneKit::followLevels(
            levelsDB, 1.0 - std::exp(elapsedSeconds / -spectrogramAttackSeconds),
            1.0 - std::exp(elapsedSeconds / -spectrogramReleaseSeconds), spectrogramLevelsDB_);
    }
    std::vector<float> row(static_cast<std::size_t>(columns.columnCount()));
    columns.row(spectrogramLevelsDB_, row);
    return row;
}

}  // namespace TarvaneApp
