// Code for wide registers must leave their upper halves empty: after it every instruction of plain
// code, which knows nothing of them, would have to keep them, at several times its cost. Compilers
// see to that, but for what they miss.

#if defined(__x86_64__)

#include <cpuid.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "DSP/FFTAnalyzer.h"
#include "DSP/KWeightingFilter.h"
#include "DSP/Kernels/InterpolationKernel.h"
#include "DSP/Kernels/LevelKernel.h"
#include "DSP/Kernels/SanitizeKernel.h"
#include "DSP/OctaveBandAnalyzer.h"
#include "DSP/PeakPicker.h"
#include "DSP/RingOutDetector.h"
#include "DSP/SpectrogramRow.h"
#include "DSP/TruePeakDetector.h"
#include "DSP/WeightingBank.h"
#include "Support/EachVectorTarget.h"
#include "Support/Signals.h"

namespace TarvaneKit {
namespace VectorStateTests {

constexpr unsigned upperHalves = 1U << 2 | 1U << 6;  // of YMM0 to 15, and of ZMM0 to 15

// Whether the processor tells which parts of its registers are in use.
bool tellsItsState() {
    unsigned a = 0;
    unsigned b = 0;
    unsigned c = 0;
    unsigned d = 0;
    constexpr unsigned xgetbvOfOne = 1U << 2;
    return __get_cpuid_count(0xD, 1, &a, &b, &c, &d) != 0 && (a & xgetbvOfOne) != 0 &&
           __builtin_cpu_supports("avx");
}

unsigned upperHalvesInUse() {
    unsigned low = 0;
    unsigned high = 0;
    __asm__ volatile("xgetbv" : "=a"(low), "=d"(high) : "c"(1));
    return low & upperHalves;
}

// Zero where the processor doesn't tell.
unsigned leftInUseBy(const std::function<void()>& work) {
    if (!tellsItsState()) {
        return 0;
    }
    __asm__ volatile("vzeroupper" ::: "memory");
    work();
    return upperHalvesInUse();
}

class VectorState : public Testing::EachVectorTarget {};

TEST_P(VectorState, theUpperHalvesOfRegistersAreLeftEmpty) {
    const auto samples = Testing::whiteNoise(4099);
    const auto rough = Testing::roughLevels(2051);
    const auto magnitudes = Testing::roughSpectrum(2051);
    std::vector<double> levels = rough;
    std::vector<float> narrow = magnitudes;

    const auto fft = FFTAnalyzer::create(4096, FFTAnalyzer::WindowType::hann).value();
    const OctaveBandAnalyzer bands(
        OctaveBands::standardBands(OctaveFraction::fortyEighthOctave, 20, 20000), 4096, 48000);
    std::vector<double> bandLevels(bands.bands().size());
    std::vector<float> spectrum(2048);
    std::vector<float> row(spectrogramFrequencies().size());
    const SpectrogramColumns columns(spectrogramFrequencies(), 48000, 8192);
    const auto columnLevels = Testing::roughLevels(static_cast<int>(columns.lines().size()));
    PeakPicker::Workspace workspace;
    std::vector<TonalPeak> peaks;
    const PeakPicker::Configuration search = RingOutDetector::fullScalePeakPicker;
    KWeightingFilter kWeighting(48000);
    TruePeakDetector truePeak(48000, 24);
    TruePeakDetector twofold(96000, 24);
    TruePeakDetector odd(48000, 25);
    WeightingBank weightings(48000);

    const std::vector<std::pair<std::string, std::function<void()>>> kernels{
        {"spectrum", [&] { fft.magnitudeSpectrum(std::span(samples).first(4096), spectrum); }},
        {"bands", [&] { bands.bandLevels(magnitudes, bandLevels); }},
        {"row", [&] { spectrogramRow(rough, spectrogramFrequencies(), 48000, 4096, row); }},
        {"columns", [&] { columns.row(columnLevels, row); }},
        {"gather",
         [&] { gather(magnitudes, columns.lines().first(300), std::span(row).first(300)); }},
        {"peaks from levels",
         [&] { findPeaks({.levelsDB = rough}, 48000, 4096, search, workspace, peaks); }},
        {"peaks from magnitudes",
         [&] {
             findPeaks({.levelsDB = rough, .magnitudes = magnitudes}, 48000, 4096, search,
                       workspace, peaks);
         }},
        {"K-weighting", [&] { kWeighting.sumOfSquares(samples); }},
        {"K-weighting of a few", [&] { kWeighting.sumOfSquares(std::span(samples).first(5)); }},
        {"true peak", [&] { truePeak.processBlock(samples); }},
        {"true peak at 96 kHz", [&] { twofold.processBlock(samples); }},
        {"true peak by an odd filter", [&] { odd.processBlock(samples); }},
        {"weightings", [&] { weightings.process(samples, 1.5); }},
        {"weightings of a few", [&] { weightings.process(std::span(samples).first(5), 1.0); }},
        {"sanitizing", [&] { copySanitized(narrow, narrow); }},
        {"squares", [&] { squareAmplitudes(magnitudes, 1e-18, levels); }},
        {"powers", [&] { powersOfLevels(rough, levels); }},
        {"levels",
         [&] {
             levelsOfPowers(levels, {1e-24, -240}, levels);
         }},
        {"tilt", [&] { tiltLevels(rough, 0.01, levels); }},
        {"sums", [&] { add(rough, rough, levels); }},
        {"products", [&] { multiply(rough, rough, levels); }},
        {"finite products", [&] { multiplyFinite(magnitudes, magnitudes, narrow); }},
        {"finite products with one factor", [&] { scaleFinite(magnitudes, 1.5F, narrow); }},
        {"root mean squares", [&] { rootMeanSquare(magnitudes, magnitudes, narrow); }},
        {"averages", [&] { moveTowards(rough, 0.1, levels); }},
        {"followed levels", [&] { followLevels(rough, 0.2, 0.1, levels); }},
        {"held levels", [&] { holdLevels(rough, 0.1, levels); }},
    };
    ASSERT_EQ(leftInUseBy([] {}), 0U);
    for (const auto& [name, kernel] : kernels) {
        EXPECT_EQ(leftInUseBy(kernel), 0U) << name;
    }
}

TARVANE_ON_EACH_VECTOR_TARGET(VectorState);

}  // namespace VectorStateTests
}  // namespace TarvaneKit

#endif  // __x86_64__
