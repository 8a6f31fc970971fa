#include "DSP/OctaveBandAnalyzer.h"

#include <gtest/gtest.h>

#include <cmath>

#include "Core/RealtimeScope.h"
#include "DSP/FFTAnalyzer.h"
#include "Support/AllNear.h"
#include "Support/EachVectorTarget.h"
#include "Support/RealtimeGuard.h"
#include "Support/ScalarSpectrum.h"
#include "Support/Signals.h"

namespace TarvaneKit {
namespace OctaveBandAnalyzerTests {

using Testing::allNear;
using Testing::plainBandLevels;
using Testing::roughSpectrum;
using Testing::sineOfCycles;

OctaveBandAnalyzer standardAnalyzer(OctaveFraction fraction, int fftSize = 4096,
                                    double sampleRate = 48000.0) {
    return {OctaveBands::standardBands(fraction, 20.0, 20000.0), fftSize, sampleRate};
}

class OctaveBandLevels : public Testing::EachVectorTarget {};

// Sums of the same products in another order.
TEST_P(OctaveBandLevels, areThoseOfAWalkOverTheBins) {
    for (const auto fraction : allCases<OctaveFraction>()) {
        for (const int fftSize : {256, 4096, 8192}) {
            for (const double rate : {8000.0, 44100.0, 48000.0, 192000.0, 384000.0}) {
                const auto analyzer = standardAnalyzer(fraction, fftSize, rate);
                const auto magnitudes = roughSpectrum(fftSize / 2);
                const auto levels = analyzer.bandLevels(magnitudes);
                const auto expected = plainBandLevels(analyzer.bands(), fftSize, rate, magnitudes);
                ASSERT_TRUE(allNear(levels, expected, 1e-9)) << label(fraction);
            }
        }
    }
}

// Around either end of the bands bin by bin: the finest table reaches from bin 1 to bin 1783.
TEST_P(OctaveBandLevels, ofASpectrumOfAnyLengthAreThoseOfAWalkOverTheBins) {
    std::vector<int> counts{500, 2047, 3000};
    for (int i = 0; i < 100; ++i) {
        counts.push_back(i);
        counts.push_back(1690 + i);
    }
    for (const auto fraction : {OctaveFraction::twelfthOctave, OctaveFraction::fortyEighthOctave}) {
        const auto analyzer = standardAnalyzer(fraction);
        for (const int count : counts) {
            // As long as told, so that a read behind the end is one behind the memory.
            const auto magnitudes = roughSpectrum(count);
            const auto levels = analyzer.bandLevels(magnitudes);
            const auto expected = plainBandLevels(analyzer.bands(), 4096, 48000.0, magnitudes);
            ASSERT_TRUE(allNear(levels, expected, 1e-9)) << count;
        }
    }
}

TEST_P(OctaveBandLevels, ofSilenceAreTheFloor) {
    for (const auto fraction : allCases<OctaveFraction>()) {
        const auto analyzer = standardAnalyzer(fraction);
        EXPECT_EQ(analyzer.bandLevels(std::vector<float>(2048)),
                  std::vector<double>(analyzer.bands().size(), -240.0));
        EXPECT_EQ(analyzer.bandLevels({}), std::vector<double>(analyzer.bands().size(), -240.0));
    }
}

TEST_P(OctaveBandLevels, ofASpectrumOfOneBinEndWithThatBin) {
    const auto analyzer = standardAnalyzer(OctaveFraction::oneOctave, 1024, 48000.0);
    // Bin 0 reaches to 23.4375 Hz; the lowest octave begins at 31.25 / sqrt(2) = 22.097 Hz.
    const auto levels = analyzer.bandLevels(std::vector<float>{1.0F});
    EXPECT_NEAR(levels[0], 10.0 * std::log10((23.4375 - 31.25 / std::sqrt(2.0)) / 46.875), 1e-9);
    for (std::size_t i = 1; i < levels.size(); ++i) {
        EXPECT_EQ(levels[i], -240.0);
    }
}

// A bin's power counts once, whatever the bands: between the first band's lower edge and the last
// one's upper edge nothing is lost or doubled.
TEST_P(OctaveBandLevels, shareOutEachBinsPowerOnce) {
    for (const auto fraction : allCases<OctaveFraction>()) {
        const auto analyzer = standardAnalyzer(fraction);
        std::vector<float> magnitudes(2048, 0.0F);
        double expected = 0.0;
        const auto rough = roughSpectrum(2048, 7);
        const double width = 48000.0 / 4096.0;
        for (std::size_t k = 0; k < magnitudes.size(); ++k) {
            const double center = width * static_cast<double>(k);
            if (center - width / 2.0 > analyzer.bands().front().lowerEdgeHz &&
                center + width / 2.0 < analyzer.bands().back().upperEdgeHz) {
                magnitudes[k] = rough[k];
                expected += static_cast<double>(rough[k]) * static_cast<double>(rough[k]);
            }
        }
        std::vector<double> powers(analyzer.bands().size());
        analyzer.bandPowers(magnitudes, powers);
        double sum = 0.0;
        for (const double power : powers) {
            sum += power;
        }
        EXPECT_NEAR(sum / expected, 1.0, 1e-12) << label(fraction);
    }
}

// Power by the ratio of the widths: 14.44 Hz of the band at 1 kHz, 11.71875 Hz of a bin.
TEST_P(OctaveBandLevels, areSumsOfPowerAndNotDensities) {
    const std::vector<float> flat(2048, 0.01F);
    for (const auto fraction : allCases<OctaveFraction>()) {
        const auto analyzer = standardAnalyzer(fraction);
        const auto levels = analyzer.bandLevels(flat);
        for (std::size_t i = 0; i < levels.size(); ++i) {
            const OctaveBand& band = analyzer.bands()[i];
            const double bins = (band.upperEdgeHz - band.lowerEdgeHz) / (48000.0 / 4096.0);
            ASSERT_NEAR(levels[i], -40.0 + 10.0 * std::log10(bins), 1e-6);
        }
    }
}

// Hann's main lobe 1, 1/2, 1/2 has the power 1.5: 1.76 dB.
TEST_P(OctaveBandLevels, ofASineReadTheWindowsMainLobe) {
    const auto fft = FFTAnalyzer::create(4096, FFTAnalyzer::WindowType::hann).value();
    const auto magnitudes = fft.magnitudeSpectrum(sineOfCycles(85.0, 4096));  // 996 Hz
    const auto analyzer = standardAnalyzer(OctaveFraction::oneOctave);
    EXPECT_NEAR(analyzer.bandLevels(magnitudes)[5], 10.0 * std::log10(1.5), 1e-4);
}

// Bands with gaps, and many within one bin.
TEST_P(OctaveBandLevels, ofTablesOfAnyShapeAreThoseOfAWalkOverTheBins) {
    const std::vector<OctaveBand> bands = {{10.0, 9.0, 11.0, ""},
                                           {11.5, 11.0, 12.0, ""},
                                           {12.5, 12.0, 13.0, ""},
                                           {300.0, 200.0, 400.0, ""},
                                           {30000.0, 23999.0, 40000.0, ""}};
    const OctaveBandAnalyzer analyzer(bands, 4096, 48000.0);
    const auto magnitudes = roughSpectrum(2048, 3);
    const auto levels = analyzer.bandLevels(magnitudes);
    const auto expected = plainBandLevels(bands, 4096, 48000.0, magnitudes);
    EXPECT_TRUE(allNear(levels, expected, 1e-9));
    EXPECT_TRUE(OctaveBandAnalyzer({}, 4096, 48000.0).bandLevels(magnitudes).empty());
}

TEST_P(OctaveBandLevels, areWrittenWithoutAnAllocation) {
    const auto analyzer = standardAnalyzer(OctaveFraction::fortyEighthOctave);
    const auto magnitudes = roughSpectrum(2048);
    std::vector<double> levels(analyzer.bands().size());
    const auto before = TarvaneTests::RealtimeGuard::counts().allocations;
    {
        const RealtimeScope scope;
        analyzer.bandLevels(magnitudes, levels);
    }
    EXPECT_EQ(TarvaneTests::RealtimeGuard::counts().allocations, before);
}

TARVANE_ON_EACH_VECTOR_TARGET(OctaveBandLevels);

}  // namespace OctaveBandAnalyzerTests
}  // namespace TarvaneKit
