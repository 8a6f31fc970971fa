#include "DSP/FFTAnalyzer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <thread>

#include "Core/FlushDenormals.h"
#include "Core/RealtimeScope.h"
#include "Support/EachVectorTarget.h"
#include "Support/RealtimeGuard.h"
#include "Support/ScalarSpectrum.h"
#include "Support/Signals.h"

namespace TarvaneKit {
namespace FFTAnalyzerTests {

using Testing::plainHannWindow;
using Testing::plainMagnitudes;
using Testing::sineOfCycles;
using Testing::whiteNoise;

FFTAnalyzer analyzerOf(int fftSize, FFTAnalyzer::WindowType type = FFTAnalyzer::WindowType::hann) {
    return FFTAnalyzer::create(fftSize, type).value();
}

std::vector<double> asDoubles(std::span<const float> values) {
    return {values.begin(), values.end()};
}

TEST(FFTAnalyzer, wantsAPowerOfTwo) {
    for (const int size : {0, -1, -4096, 3, 1000, 4095, 6144}) {
        EXPECT_FALSE(FFTAnalyzer::create(size, FFTAnalyzer::WindowType::hann)) << size;
    }
    for (const int size : {1, 2, 4, 4096, 8192}) {
        EXPECT_TRUE(FFTAnalyzer::create(size, FFTAnalyzer::WindowType::hann)) << size;
    }
}

TEST(FFTAnalyzerDeathTest, aFrameOfAnotherLengthOrOfOneSampleStopsTheProgram) {
    const auto analyzer = analyzerOf(64);
    EXPECT_DEATH(analyzer.magnitudeSpectrum(std::vector<float>(63)), "samples.size");
    EXPECT_DEATH(analyzerOf(1).magnitudeSpectrum(std::vector<float>(1)), "size > 1");
}

// 0.5 (1 - cos(2 pi n / N)), whose sum is N/2.
TEST(FFTAnalyzer, theHannWindowIsPeriodic) {
    const auto analyzer = analyzerOf(4096);
    const auto expected = plainHannWindow(4096);
    for (std::size_t n = 0; n < expected.size(); ++n) {
        EXPECT_NEAR(analyzer.window()[n], expected[n], 1e-7);
    }
    EXPECT_EQ(analyzer.windowNormalization(), 4.0F / 4096.0F);
}

// Symmetric, the four coefficients' sum 1 in the middle and 0.35875 - 0.48829 + 0.14128 - 0.01168
// at the ends.
TEST(FFTAnalyzer, theBlackmanHarrisWindowIsSymmetric) {
    const auto analyzer = analyzerOf(512, FFTAnalyzer::WindowType::blackmanHarris);
    const auto window = analyzer.window();
    EXPECT_NEAR(window[0], 0.00006, 1e-6);
    for (std::size_t n = 0; n < 256; ++n) {
        EXPECT_NEAR(window[n], window[511 - n], 2e-6);
    }
    EXPECT_NEAR(*std::ranges::max_element(window), 1.0, 1e-4);
    const double sum = std::accumulate(window.begin(), window.end(), 0.0);
    EXPECT_NEAR(analyzer.windowNormalization(), 2.0 / sum, 1e-8);
    // A denominator of 1 for fewer than three samples.
    const auto shortest = analyzerOf(2, FFTAnalyzer::WindowType::blackmanHarris);
    EXPECT_NEAR(shortest.window()[1], 0.35875 - 0.48829 + 0.14128 - 0.01168, 1e-5);
}

TEST(FFTAnalyzer, binsLieAtMultiplesOfTheRateOverTheSize) {
    EXPECT_EQ(analyzerOf(4096).binFrequency(1, 48000.0), 11.71875);
    EXPECT_EQ(analyzerOf(8192).binFrequency(4096, 44100.0), 22050.0);
}

TEST(FFTAnalyzer, allocatesNothingAfterTheFirstFrame) {
    const auto analyzer = analyzerOf(4096);
    const auto samples = whiteNoise(4096);
    std::vector<float> magnitudes(2048);
    analyzer.magnitudeSpectrum(samples, magnitudes);
    const auto before = TarvaneTests::RealtimeGuard::counts().allocations;
    {
        const RealtimeScope scope;
        analyzer.magnitudeSpectrum(samples, magnitudes);
    }
    EXPECT_EQ(TarvaneTests::RealtimeGuard::counts().allocations, before);
}

TEST(FFTAnalyzer, threadsMakeAndUseAnalyzersAtOnce) {
    const auto samples = whiteNoise(1024);
    const auto expected = analyzerOf(1024).magnitudeSpectrum(samples);
    std::vector<std::vector<float>> results(4);
    std::vector<std::thread> threads;
    for (auto& result : results) {
        threads.emplace_back([&] {
            const auto other = analyzerOf(256, FFTAnalyzer::WindowType::blackmanHarris);
            other.magnitudeSpectrum(std::vector<float>(256, 1.0F));
            for (int i = 0; i < 50; ++i) {
                result = analyzerOf(1024).magnitudeSpectrum(samples);
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    for (const auto& result : results) {
        EXPECT_EQ(result, expected);
    }
}

class FFTAnalyzerSpectra : public Testing::EachVectorTarget {};

// The transform runs in 32 bits: about log2(N) rounded additions on values as large as the whole
// spectrum's root mean square, so that the error is told in proportion to that.
void expectTheTransform(const FFTAnalyzer& analyzer, const std::vector<float>& samples) {
    const auto magnitudes = analyzer.magnitudeSpectrum(samples);
    const auto expected = plainMagnitudes(samples, asDoubles(analyzer.window()));
    ASSERT_EQ(magnitudes.size(), expected.size());
    double squares = 0.0;
    double squaredError = 0.0;
    for (std::size_t k = 0; k < expected.size(); ++k) {
        const double error = static_cast<double>(magnitudes[k]) - expected[k];
        squares += expected[k] * expected[k];
        squaredError += error * error;
    }
    EXPECT_LT(std::sqrt(squaredError), 4e-7 * std::sqrt(squares)) << samples.size();
}

TEST_P(FFTAnalyzerSpectra, areTheDiscreteFourierTransform) {
    for (const auto type :
         {FFTAnalyzer::WindowType::hann, FFTAnalyzer::WindowType::blackmanHarris}) {
        for (int size = 2; size <= 8192; size *= 2) {
            expectTheTransform(analyzerOf(size, type),
                               whiteNoise(size, 0.3, static_cast<std::uint32_t>(size)));
        }
    }
}

TEST_P(FFTAnalyzerSpectra, areTheTransformAtFullScaleAndFarBelow) {
    const auto analyzer = analyzerOf(1024);
    std::vector<float> square(1024);
    std::vector<float> impulse(1024);
    impulse[333] = 1.0F;
    for (std::size_t n = 0; n < square.size(); ++n) {
        square[n] = n / 37 % 2 == 0 ? 1.0F : -1.0F;
    }
    expectTheTransform(analyzer, square);
    expectTheTransform(analyzer, impulse);
    expectTheTransform(analyzer, whiteNoise(1024, 1e-7));   // -140 dB
    expectTheTransform(analyzer, whiteNoise(1024, 1e-15));  // far below the floor of the lines
}

// A square below the smallest normal number loses its places or all of itself: an amplitude is
// off by the root of that at the most, whether denormal numbers are taken as 0 or not. It lies
// 200 dB below the floor of the lines.
TEST_P(FFTAnalyzerSpectra, ofTheSmallestNumbersStayAsSmall) {
    const auto analyzer = analyzerOf(1024);
    const double lost = 2.0 * std::sqrt(static_cast<double>(std::numeric_limits<float>::min())) *
                        static_cast<double>(analyzer.windowNormalization());
    ASSERT_LT(lost, 1e-9 * 1e-10);
    for (const double deviation : {1e-20, 1e-30, 1e-39}) {
        const auto samples = whiteNoise(1024, deviation);
        const auto expected = plainMagnitudes(samples, asDoubles(analyzer.window()));
        const auto expectAsSmall = [&] {
            const auto magnitudes = analyzer.magnitudeSpectrum(samples);
            for (std::size_t k = 0; k < expected.size(); ++k) {
                ASSERT_NEAR(magnitudes[k], expected[k], lost) << deviation;
            }
        };
        expectAsSmall();
        const FlushDenormals flush;
        expectAsSmall();
    }
}

TEST_P(FFTAnalyzerSpectra, ofSilenceAreZeros) {
    const auto magnitudes = analyzerOf(4096).magnitudeSpectrum(std::vector<float>(4096));
    EXPECT_EQ(magnitudes, std::vector<float>(2048));
}

// Hann's main lobe is 1, 1/2 at the neighbours, 0 from the second neighbour on.
TEST_P(FFTAnalyzerSpectra, ofASineOnABinReadItsAmplitudeAndTheMainLobe) {
    const auto magnitudes = analyzerOf(4096).magnitudeSpectrum(sineOfCycles(100.0, 4096));
    EXPECT_NEAR(magnitudes[100], 1.0, 1e-6);
    EXPECT_NEAR(magnitudes[99], 0.5, 1e-6);
    EXPECT_NEAR(magnitudes[101], 0.5, 1e-6);
    for (std::size_t k = 0; k < magnitudes.size(); ++k) {
        if (k < 99 || k > 101) {
            EXPECT_NEAR(magnitudes[k], 0.0, 1e-6) << k;
        }
    }
}

// Half way between two bins Hann reads sin(pi/2) / (pi/2) / (1 - 1/4) = 8 / (3 pi): 1.42 dB low.
TEST_P(FFTAnalyzerSpectra, ofASineBetweenBinsAreLowByTheWindowsScallop) {
    const auto magnitudes = analyzerOf(4096).magnitudeSpectrum(sineOfCycles(700.5, 4096));
    const double expected = 8.0 / (3.0 * std::numbers::pi);
    EXPECT_NEAR(magnitudes[700], expected, 1e-3);
    EXPECT_NEAR(magnitudes[701], expected, 1e-3);
}

TEST_P(FFTAnalyzerSpectra, ofAConstantReadTwiceItAtBinZero) {
    const auto magnitudes = analyzerOf(4096).magnitudeSpectrum(std::vector<float>(4096, 0.25F));
    EXPECT_NEAR(magnitudes[0], 0.5, 1e-6);
    EXPECT_NEAR(magnitudes[1], 0.25, 1e-6);
    const auto negative = analyzerOf(4096).magnitudeSpectrum(std::vector<float>(4096, -0.25F));
    EXPECT_NEAR(negative[0], 0.5, 1e-6);
}

// Half the amplitude leaks into the neighbour; the bin itself would read 2, its mirror being
// itself, and so would twice half of it: 1 at N/2 - 1.
TEST_P(FFTAnalyzerSpectra, ofASineAtHalfTheRateShowOnlyTheWindowsLeakage) {
    std::vector<float> samples;
    for (int n = 0; n < 4096; ++n) {
        samples.push_back(n % 2 == 0 ? 1.0F : -1.0F);
    }
    const auto magnitudes = analyzerOf(4096).magnitudeSpectrum(samples);
    EXPECT_NEAR(magnitudes[2047], 1.0, 1e-5);
    for (std::size_t k = 0; k < 2047; ++k) {
        EXPECT_NEAR(magnitudes[k], 0.0, 1e-5) << k;
    }
}

// Parseval: the one-sided sum of (m sum(w) / 2)^2, both ends counted once, is N sum (w x)^2 / 2.
// With no power at half the rate, bin 0 halved.
TEST_P(FFTAnalyzerSpectra, carryTheEnergyOfTheWindowedFrame) {
    const auto analyzer = analyzerOf(8192);
    const auto samples = sineOfCycles(333.3, 8192, 0.7);
    const auto magnitudes = analyzer.magnitudeSpectrum(samples);
    double frame = 0.0;
    for (std::size_t n = 0; n < samples.size(); ++n) {
        const double x =
            static_cast<double>(samples[n]) * static_cast<double>(analyzer.window()[n]);
        frame += x * x;
    }
    double spectrum = 0.0;
    for (std::size_t k = 0; k < magnitudes.size(); ++k) {
        const double x = static_cast<double>(magnitudes[k]) * 8192.0 / 4.0;
        spectrum += (k == 0 ? 0.5 : 1.0) * x * x;
    }
    EXPECT_NEAR(spectrum / (8192.0 * frame / 2.0), 1.0, 1e-5);
}

TARVANE_ON_EACH_VECTOR_TARGET(FFTAnalyzerSpectra);

}  // namespace FFTAnalyzerTests
}  // namespace TarvaneKit
