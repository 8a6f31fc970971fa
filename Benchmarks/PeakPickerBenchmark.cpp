#include <benchmark/benchmark.h>

#include <cmath>
#include <random>
#include <vector>

#include "DSP/PeakPicker.h"
#include "DSP/RingOutDetector.h"
#include "StepComparison.h"
#include "Support/LineSpectra.h"
#include "Support/PlainRingOut.h"

// One peak search over the 2048 lines of a 4096-point spectrum at 48 kHz, and one whole frame of
// the ring-out detector, with a spectrum of music that has work for all of it.

namespace TarvaneBenchmarks {
namespace {

using namespace TarvaneKit;
using namespace TarvaneKit::Testing;

constexpr PeakPicker::Configuration options = RingOutDetector::fullScalePeakPicker;

struct Spectrum {
    std::vector<float> magnitudes;
    std::vector<double> levelsDB;
};

// Eight harmonics over noise, so that all of the search has work to do.
std::vector<Spectrum> spectraOfMusic() {
    std::mt19937 random(1);
    std::normal_distribution<float> noise(0.0F, 0.001F);
    std::vector<Spectrum> spectra;
    for (int frame = 0; frame < 16; ++frame) {
        std::vector<float> samples(spectrumFFTSize);
        for (std::size_t i = 0; i < samples.size(); ++i) {
            samples[i] = noise(random);
            for (int h = 1; h <= 8; ++h) {
                samples[i] += 0.1F / static_cast<float>(h) *
                              std::sin(0.0288F * static_cast<float>(h) * static_cast<float>(i));
            }
        }
        Spectrum spectrum{.magnitudes = lineMagnitudes(samples), .levelsDB = {}};
        spectrum.levelsDB = lineLevelsDB(spectrum.magnitudes);
        spectra.push_back(std::move(spectrum));
    }
    return spectra;
}

const std::vector<Spectrum>& music() {
    static const std::vector<Spectrum> spectra = spectraOfMusic();
    return spectra;
}

// Times `work`, each time with the next spectrum and its number.
template <class Work>
void measureFramesOfMusic(benchmark::State& state, Work work) {
    int frame = 0;
    measureTicks(state, [&] {
        work(music()[static_cast<std::size_t>(frame) % music().size()], frame);
        ++frame;
    });
}

void search(benchmark::State& state, bool withMagnitudes) {
    PeakPicker::Workspace workspace;
    std::vector<TonalPeak> peaks;
    measureFramesOfMusic(state, [&](const Spectrum& spectrum, int) {
        LineSpectrum lines{.levelsDB = spectrum.levelsDB};
        if (withMagnitudes) {
            lines.magnitudes = spectrum.magnitudes;
        }
        PeakPicker::findPeaks(lines, spectrumSampleRate, spectrumFFTSize, options, workspace,
                              peaks);
        benchmark::DoNotOptimize(peaks.data());
    });
}

void peaks(benchmark::State& state) {
    search(state, true);
}

void peaksFromLevels(benchmark::State& state) {
    search(state, false);
}

void plainPeaks(benchmark::State& state) {
    measureFramesOfMusic(state, [](const Spectrum& spectrum, int) {
        benchmark::DoNotOptimize(
            plainFindPeaks(spectrum.levelsDB, spectrumSampleRate, spectrumFFTSize, options));
    });
}

const RingOutDetector::Configuration configuration(RingOutSensitivity::normal, options);

void detect(benchmark::State& state) {
    RingOutDetector detector(spectrumSampleRate, spectrumFFTSize, configuration);
    measureFramesOfMusic(state, [&](const Spectrum& spectrum, int frame) {
        benchmark::DoNotOptimize(
            detector.update({spectrum.levelsDB, spectrum.magnitudes}, spectrumFrameDate(frame)));
    });
}

void plainDetect(benchmark::State& state) {
    PlainRingOutDetector plain(spectrumSampleRate, spectrumFFTSize, configuration);
    measureFramesOfMusic(state, [&](const Spectrum& spectrum, int frame) {
        benchmark::DoNotOptimize(plain.update(spectrum.levelsDB, frame / 60.0));
    });
}

const bool isRegistered = [] {
    compareStep("findPeaks", peaks, plainPeaks);
    compareStep("findPeaksFromLevels", peaksFromLevels, "findPeaks");
    compareStep("RingOutDetector", detect, plainDetect);
    return true;
}();

}  // namespace
}  // namespace TarvaneBenchmarks
