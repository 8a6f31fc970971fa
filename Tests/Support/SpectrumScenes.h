// Spectra as a measurement gives them, to draw in tests, benchmarks and pictures: falling noise
// with a few tones, its bands, and held levels above both.
#pragma once

#include <cmath>
#include <cstdint>
#include <vector>

#include "DSP/OctaveBands.h"
#include "Displays/Spectrum/SpectrumView.h"
#include "TargetCurves/BuiltInCurves.h"

namespace TarvaneTests {

/// The same numbers on every machine, -1 to 1.
class Roughness {
  public:
    explicit Roughness(std::uint32_t seed) : state_(seed) {}
    double next() {
        state_ = state_ * 1664525U + 1013904223U;
        return static_cast<double>(state_ >> 8U) / 8388608.0 - 1.0;
    }

  private:
    std::uint32_t state_;
};

/// Lines of pink noise about `levelDB` at 1 kHz, with tones at 250 Hz and 2.5 kHz.
inline std::vector<double> noiseSpectrum(double levelDB, std::uint32_t seed = 1,
                                         double sampleRate = 48000.0, int fftSize = 4096) {
    Roughness roughness(seed);
    std::vector<double> levelsDB;
    for (int line = 0; line < fftSize / 2; ++line) {
        const double frequencyHz = std::max(sampleRate * line / fftSize, 5.0);
        double level = levelDB - 10.0 * std::log10(frequencyHz / 1000.0) + 4.0 * roughness.next();
        for (const double toneHz : {250.0, 2500.0}) {
            const double distance = (frequencyHz - toneHz) / (1.5 * sampleRate / fftSize);
            level = std::max(level, levelDB + 25.0 - 6.0 * distance * distance);
        }
        levelsDB.push_back(level);
    }
    return levelsDB;
}

/// The power in each band, by lines; a band without a line of its own takes the nearest one.
inline std::vector<double> bandsOf(const std::vector<double>& linesDB,
                                   const std::vector<TarvaneKit::OctaveBand>& bands,
                                   double lineHz = 48000.0 / 4096) {
    std::vector<double> levelsDB;
    for (const auto& band : bands) {
        double power = 0.0;
        for (std::size_t line = 0; line < linesDB.size(); ++line) {
            const double frequencyHz = lineHz * static_cast<double>(line);
            if (band.lowerEdgeHz <= frequencyHz && frequencyHz < band.upperEdgeHz) {
                power += std::pow(10.0, linesDB[line] / 10.0);
            }
        }
        const auto nearest =
            std::min(static_cast<std::size_t>(std::lround(band.centerFrequencyHz / lineHz)),
                     linesDB.size() - 1);
        levelsDB.push_back(power > 0.0 ? 10.0 * std::log10(power) : linesDB[nearest]);
    }
    return levelsDB;
}

inline std::vector<double> raisedBy(std::vector<double> levelsDB, double riseDB) {
    for (double& level : levelsDB) {
        level += riseDB;
    }
    return levelsDB;
}

/// Line and bars with their holds, floor and ceiling.
inline TarvaneApp::SpectrumView ordinarySpectrum(
    TarvaneKit::OctaveFraction fraction = TarvaneKit::OctaveFraction::thirdOctave,
    std::uint32_t seed = 1) {
    TarvaneApp::SpectrumView view;
    view.bands = TarvaneKit::OctaveBands::standardBands(fraction, 20.0, 20000.0);
    view.lineSpectrumDB = noiseSpectrum(55.0, seed);
    view.linePeakHoldDB = raisedBy(noiseSpectrum(55.0, 7), 8.0);
    view.bandLevelsDB = bandsOf(view.lineSpectrumDB, view.bands);
    view.bandPeakHoldDB = raisedBy(bandsOf(noiseSpectrum(55.0, 7), view.bands), 6.0);
    view.traceColor = QColor::fromRgbF(0.20F, 0.80F, 0.55F);
    view.showPeakHold = true;
    view.spectrogramFloorDB = 30.0;
    view.spectrogramCeilingDB = 110.0;
    return view;
}

inline TarvaneApp::SpectrumOverlay overlayOf(double levelDB, const QColor& color,
                                             std::uint32_t seed) {
    const auto bands = TarvaneKit::OctaveBands::standardBands(TarvaneKit::OctaveFraction::oneOctave,
                                                              20.0, 20000.0);
    const std::vector<double> lines = noiseSpectrum(levelDB, seed, 96000.0);
    return {.id = TarvaneKit::UUID::main(),
            .color = color,
            .lineSpectrumDB = lines,
            .bandLevelsDB = bandsOf(lines, bands, 96000.0 / 4096),
            .bands = bands,
            .sampleRate = 96000.0,
            .levelOffsetDB = 0.0};
}

inline TarvaneKit::RingAlert ringAt(double frequencyHz) {
    return {.id = TarvaneKit::UUID::main(),
            .frequencyHz = frequencyHz,
            .note = *TarvaneKit::MusicalNoteNaming::nearestNote(frequencyHz),
            .suggestedCutDB = -6.0,
            .suggestedQ = 8.0,
            .bandwidthHz = frequencyHz / 8.0,
            .date = {}};
}

/// Everything at once: target curve, two other channels, a ring.
inline TarvaneApp::SpectrumView fullSpectrum() {
    TarvaneApp::SpectrumView view = ordinarySpectrum();
    view.targetCurve = TarvaneKit::TargetCurve::create(
        "Falling", {{20.0, 3.0}, {100.0, 3.0}, {2000.0, 0.0}, {20000.0, -12.0}});
    view.targetCurveReferenceDB = 85.0;
    view.overlays = {overlayOf(68.0, QColor::fromRgbF(0.95F, 0.75F, 0.25F), 3),
                     overlayOf(40.0, QColor::fromRgbF(0.35F, 0.65F, 1.0F), 4)};
    view.activeRingAlert = ringAt(2500.0);
    return view;
}

/// An empty graph in dBFS.
inline TarvaneApp::SpectrumView spectrumInDBFS() {
    TarvaneApp::SpectrumView view;
    view.scale = TarvaneApp::RTAScale::dbfs;
    return view;
}

inline TarvaneKit::OctaveBand bandBetween(double lowerHz, double upperHz) {
    return {.centerFrequencyHz = std::sqrt(lowerHz * upperHz),
            .lowerEdgeHz = lowerHz,
            .upperEdgeHz = upperHz,
            .label = {}};
}

}  // namespace TarvaneTests
