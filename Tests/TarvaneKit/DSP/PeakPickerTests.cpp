#include "DSP/PeakPicker.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <random>
#include <vector>

#include "Core/RealtimeScope.h"
#include "DSP/RingOutDetector.h"
#include "Support/EachVectorTarget.h"
#include "Support/LineSpectra.h"
#include "Support/PlainRingOut.h"
#include "Support/RealtimeGuard.h"

namespace TarvaneKit {
namespace PeakPickerTests {

using PeakPicker::findPeaks;
using PeakPicker::measureBandwidth;

constexpr double binWidthHz = 48000.0 / 4096;  // 11.71875

// As the application gives it for a channel that isn't calibrated: a box of 9 bins to either
// side with a hole of 1.
constexpr PeakPicker::Configuration usual = RingOutDetector::fullScalePeakPicker;

std::vector<double> flat(double levelDB, int count = 2048) {
    return std::vector<double>(static_cast<std::size_t>(count), levelDB);
}

double& at(std::vector<double>& spectrum, int bin) {
    return spectrum[static_cast<std::size_t>(bin)];
}

// A Hann window's main lobe on a bin: half the amplitude, -6.02 dB, beside it.
void addTone(std::vector<double>& spectrum, int bin, double levelDB) {
    at(spectrum, bin) = levelDB;
    at(spectrum, bin - 1) = levelDB - 6.02;
    at(spectrum, bin + 1) = levelDB - 6.02;
}

std::vector<TonalPeak> peaksOf(const std::vector<double>& spectrum,
                               const PeakPicker::Configuration& configuration = usual) {
    return findPeaks(spectrum, 48000.0, 4096, configuration);
}

std::vector<int> binsOf(const std::vector<TonalPeak>& peaks) {
    std::vector<int> bins;
    for (const TonalPeak& peak : peaks) {
        bins.push_back(peak.binIndex);
    }
    return bins;
}

class PeakSearchOnEachTarget : public Testing::EachVectorTarget {};

TEST_P(PeakSearchOnEachTarget, aToneIsFoundWithItsLevelAndFloor) {
    auto spectrum = flat(-80);
    addTone(spectrum, 100, -20);
    const auto peaks = peaksOf(spectrum);
    ASSERT_EQ(peaks.size(), 1U);
    EXPECT_EQ(peaks[0].binIndex, 100);
    EXPECT_DOUBLE_EQ(peaks[0].frequencyHz, 100 * binWidthHz);
    EXPECT_DOUBLE_EQ(peaks[0].levelDB, -20);
    // The tone's three bins lie in the hole; all around is -80.
    EXPECT_NEAR(peaks[0].noiseFloorDB, -80, 1e-9);
}

TEST_P(PeakSearchOnEachTarget, interpolationIsThatOfAParabola) {
    // y = L - c (x - x0)^2 through three bins gives back its vertex.
    const double top = -20.0, curve = 4.0, x0 = 200.3;
    auto spectrum = flat(-80);
    for (const int bin : {199, 200, 201}) {
        at(spectrum, bin) = top - curve * (bin - x0) * (bin - x0);
    }
    const auto peaks = peaksOf(spectrum);
    ASSERT_EQ(peaks.size(), 1U);
    EXPECT_NEAR(peaks[0].frequencyHz, x0 * binWidthHz, 1e-9);
    EXPECT_NEAR(peaks[0].levelDB, top, 1e-9);
}

TEST_P(PeakSearchOnEachTarget, ofAPlateauTheLeftBinIsReportedOnce) {
    for (const int bin : {7, 8, 9, 15, 100, 101, 102, 103, 104, 105, 106, 107, 1300}) {
        auto spectrum = flat(-80);
        addTone(spectrum, bin, -20);
        at(spectrum, bin + 1) = -20;
        at(spectrum, bin + 2) = -26;
        EXPECT_EQ(binsOf(peaksOf(spectrum)), std::vector{bin});
    }
}

TEST_P(PeakSearchOnEachTarget, aLoneSpikeIsTurnedDown) {
    auto spectrum = flat(-80);
    at(spectrum, 100) = -20;
    EXPECT_TRUE(peaksOf(spectrum).empty());
    // The neighbours must stand 3 dB, half the prominence, above the floor, both of them.
    at(spectrum, 99) = -76.9;
    at(spectrum, 101) = -77.1;
    EXPECT_TRUE(peaksOf(spectrum).empty());
    at(spectrum, 101) = -76.9;
    EXPECT_EQ(peaksOf(spectrum).size(), 1U);
}

TEST_P(PeakSearchOnEachTarget, prominenceAndLevelCountFromTheirLimitOn) {
    const auto toneOf = [](double floorDB, double levelDB) {
        auto spectrum = flat(floorDB);
        addTone(spectrum, 100, levelDB);
        at(spectrum, 99) = at(spectrum, 101) = levelDB - 1.0;
        return spectrum;
    };
    EXPECT_TRUE(peaksOf(toneOf(-50, -44.01)).empty());
    EXPECT_EQ(peaksOf(toneOf(-50, -43.99)).size(), 1U);
    EXPECT_TRUE(peaksOf(toneOf(-90, -60.001)).empty());
    EXPECT_EQ(peaksOf(toneOf(-90, -60)).size(), 1U);
}

TEST_P(PeakSearchOnEachTarget, whatExceedsTheMostPeaksGoesByProminence) {
    auto spectrum = flat(-80);
    addTone(spectrum, 100, -20);
    addTone(spectrum, 200, -40);
    addTone(spectrum, 300, -30);
    auto two = usual;
    two.maxPeaks = 2;
    EXPECT_EQ(binsOf(peaksOf(spectrum, two)), (std::vector{100, 300}));
    two.maxPeaks = 0;
    EXPECT_TRUE(peaksOf(spectrum, two).empty());
    // Of equal prominence the lower frequency is kept: all stand on the lowest floor.
    auto equal = flat(-180);
    for (const int bin : {600, 500, 400}) {
        addTone(equal, bin, -30);
    }
    two.maxPeaks = 2;
    EXPECT_EQ(binsOf(peaksOf(equal, two)), (std::vector{400, 500}));
}

TEST_P(PeakSearchOnEachTarget, onSilenceAPureLineStandsOnTheLowestFloor) {
    auto spectrum = flat(-180);
    addTone(spectrum, 100, -50);
    const auto peaks = peaksOf(spectrum);
    ASSERT_EQ(peaks.size(), 1U);
    EXPECT_EQ(peaks[0].noiseFloorDB, -120.0);
}

TEST_P(PeakSearchOnEachTarget, atTheLowerEndTheBoxHasFewerBins) {
    // Bin 7 (82 Hz): the box reaches from 0 to 16, without 6 to 8: 14 bins. One of them at
    // -60 dB, the others silent (1e-18 each).
    auto spectrum = flat(-180);
    addTone(spectrum, 7, -20);
    at(spectrum, 0) = -60;
    at(spectrum, 1) = -60;
    const auto peaks = peaksOf(spectrum);
    ASSERT_FALSE(peaks.empty());
    EXPECT_EQ(peaks[0].binIndex, 7);
    // Do the two stand above their own first floors? Their boxes hold the tone, so no.
    EXPECT_NEAR(peaks[0].noiseFloorDB, 10 * std::log10(2e-6 / 14), 1e-9);
}

TEST_P(PeakSearchOnEachTarget, atTheUpperEndTheBoxHasFewerBins) {
    // 40 bins; the last that can be reached is 37. Its box: 28 to 39 without 36 to 38, 9 bins.
    auto spectrum = flat(-70, 40);
    for (int bin = 28; bin <= 35; ++bin) {
        at(spectrum, bin) = -80;
    }
    addTone(spectrum, 37, -20);
    const auto peaks = peaksOf(spectrum);
    ASSERT_EQ(binsOf(peaks), std::vector{37});
    EXPECT_NEAR(peaks[0].noiseFloorDB, 10 * std::log10((8e-8 + 1e-7) / 9), 1e-9);
}

TEST_P(PeakSearchOnEachTarget, linesCloserThanTheBoxDoNotLiftEachOthersFloor) {
    auto spectrum = flat(-80);
    addTone(spectrum, 100, -20);
    addTone(spectrum, 105, -20);
    const auto peaks = peaksOf(spectrum);
    ASSERT_EQ(binsOf(peaks), (std::vector{100, 105}));
    // Of the 16 bins of either ring three are the other tone's. Its top stands 10 dB above the
    // first floor, -30.3, and is counted as silence in the second; its two neighbours stay.
    const double floorPower = (2 * std::pow(10, -2.602) + 13 * 1e-8) / 16;
    for (const TonalPeak& peak : peaks) {
        EXPECT_NEAR(peak.noiseFloorDB, 10 * std::log10(floorPower), 1e-9);
    }
}

TEST_P(PeakSearchOnEachTarget, twoBinsAtEitherEndAreOutOfReach) {
    auto everything = usual;
    everything.minFrequencyHz = 0;
    everything.maxFrequencyHz = 24000;
    for (const int bin : {1, 2, 2045, 2046}) {
        auto spectrum = flat(-80);
        addTone(spectrum, bin, -20);
        EXPECT_EQ(peaksOf(spectrum, everything).size(), bin == 2 || bin == 2045 ? 1U : 0U) << bin;
    }
}

TEST_P(PeakSearchOnEachTarget, theRangeIncludesBothEnds) {
    // 80 Hz is bin 6.83, 16 kHz bin 1365.33.
    for (const int bin : {6, 7, 1365, 1366}) {
        auto spectrum = flat(-80);
        addTone(spectrum, bin, -20);
        EXPECT_EQ(peaksOf(spectrum).size(), bin == 7 || bin == 1365 ? 1U : 0U) << bin;
    }
}

TEST_P(PeakSearchOnEachTarget, impossibleInputGivesNothing) {
    auto spectrum = flat(-80);
    addTone(spectrum, 100, -20);
    EXPECT_TRUE(findPeaks({}, 48000, 4096, usual).empty());
    EXPECT_TRUE(findPeaks(std::vector{-80.0, -20.0, 0.0, -20.0}, 48000, 8, usual).empty());
    EXPECT_TRUE(findPeaks(spectrum, 0, 4096, usual).empty());
    EXPECT_TRUE(findPeaks(spectrum, -48000, 4096, usual).empty());
    EXPECT_TRUE(findPeaks(spectrum, 48000, 0, usual).empty());
    EXPECT_TRUE(findPeaks(spectrum, 48000, -4096, usual).empty());
    EXPECT_TRUE(findPeaks(spectrum, std::numeric_limits<double>::quiet_NaN(), 4096, usual).empty());
    EXPECT_TRUE(findPeaks(spectrum, 1e-300, 4096, usual).empty()) << "all bins below the range";
    EXPECT_TRUE(findPeaks(spectrum, 1e300, 4096, usual).empty()) << "all bins above it";
    auto turned = usual;
    std::swap(turned.minFrequencyHz, turned.maxFrequencyHz);
    EXPECT_TRUE(peaksOf(spectrum, turned).empty());
}

TEST_P(PeakSearchOnEachTarget, agreesWithThePlainReading) {
    std::mt19937 random(21);
    std::normal_distribution<double> normal(0.0, 1.0);
    std::uniform_real_distribution<double> uniform(0.0, 1.0);
    const double rates[] = {48000, 8000, 44100, 48000, 96000, 192000, 384000};
    for (int round = 0; round < 700; ++round) {
        const int count = round % 4 == 0 ? 5 + static_cast<int>(uniform(random) * 60) : 2048;
        std::vector<float> magnitudes(static_cast<std::size_t>(count));
        const double noise = std::pow(10.0, -6.0 * uniform(random));
        for (float& m : magnitudes) {
            m = static_cast<float>(noise * std::hypot(normal(random), normal(random)));
        }
        for (int tone = 0; tone < round % 40; ++tone) {
            const int bin = 1 + static_cast<int>(uniform(random) * (count - 3));
            const double level = std::pow(10.0, -4.0 * uniform(random));
            for (int k = -1; k <= 1; ++k) {
                magnitudes[static_cast<std::size_t>(bin + k)] +=
                    static_cast<float>(level * (k == 0 ? 1.0 : 0.3 + 0.5 * uniform(random)));
            }
        }
        auto configuration = usual;
        if (round % 3 == 0) {
            configuration = {.minFrequencyHz = 500 * uniform(random),
                             .maxFrequencyHz = 24000 * uniform(random),
                             .prominenceThresholdDB = 12 * uniform(random),
                             .minPeakLevelDB = -120 + 100 * uniform(random),
                             .noiseFloorWindowHz = 300 * uniform(random),
                             .noiseFloorGuardHz = 150 * uniform(random),
                             .maxPeaks = static_cast<int>(40 * uniform(random))};
        }
        const auto levels = Testing::lineLevelsDB(magnitudes);
        const double rate = rates[static_cast<std::size_t>(round) % std::size(rates)];
        const auto expected = Testing::plainFindPeaks(levels, rate, 4096, configuration);
        PeakPicker::Workspace workspace;
        std::vector<TonalPeak> fromMagnitudes;
        findPeaks({.levelsDB = levels, .magnitudes = magnitudes}, rate, 4096, configuration,
                  workspace, fromMagnitudes);
        for (const auto& peaks : {findPeaks(levels, rate, 4096, configuration), fromMagnitudes}) {
            ASSERT_EQ(binsOf(peaks), binsOf(expected)) << "round " << round;
            for (std::size_t i = 0; i < peaks.size(); ++i) {
                EXPECT_EQ(peaks[i].frequencyHz, expected[i].frequencyHz);
                EXPECT_EQ(peaks[i].levelDB, expected[i].levelDB);
                // Running sums of powers up to 1 leave about 1e-13 of rounding per sum; the
                // floors lie above 1e-12, mostly far above.
                EXPECT_NEAR(peaks[i].noiseFloorDB, expected[i].noiseFloorDB, 0.01);
                if (expected[i].noiseFloorDB > -80) {
                    EXPECT_NEAR(peaks[i].noiseFloorDB, expected[i].noiseFloorDB, 1e-4);
                }
            }
        }
    }
}

TARVANE_ON_EACH_VECTOR_TARGET(PeakSearchOnEachTarget);

TEST(PeakPicker, boxAveragesOfTheReferenceAreThoseCountedByHand) {
    // Window 2, hole 1: of 1 2 4 8 16 the ring about bin 0 is bin 2, about bin 2 bins 0 and 4.
    const std::vector<double> values{1, 2, 4, 8, 16};
    EXPECT_EQ(Testing::plainBoxAveragePower(values, 2, 1),
              (std::vector<double>{4, 8, (1.0 + 16.0) / 2, 2, 4}));
    // A hole as wide as the window: the whole box.
    EXPECT_EQ(Testing::plainBoxAveragePower(values, 1, 1),
              (std::vector<double>{1.5, 7.0 / 3, 14.0 / 3, 28.0 / 3, 12}));
    EXPECT_TRUE(Testing::plainBoxAveragePower({}, 1, 1).empty());
}

// Of a bin that passes the tests left < center and right <= center, so that left - 2 center +
// right < 0: interpolation never divides by 0 and never leaves the bin.
TEST(PeakPicker, interpolationStaysWithinHalfABin) {
    std::mt19937 random(5);
    std::normal_distribution<double> normal(-60.0, 3.0);
    for (int round = 0; round < 50; ++round) {
        auto spectrum = flat(0);
        for (double& level : spectrum) {
            level = normal(random);
        }
        auto open = usual;
        open.maxPeaks = 2048;
        open.prominenceThresholdDB = 1;
        open.minPeakLevelDB = -100;
        const auto peaks = peaksOf(spectrum, open);
        EXPECT_GT(peaks.size(), 5U);
        for (const TonalPeak& peak : peaks) {
            EXPECT_LE(std::abs(peak.frequencyHz / binWidthHz - peak.binIndex), 0.5 + 1e-9);
            EXPECT_GE(peak.levelDB, at(spectrum, peak.binIndex));
        }
        EXPECT_TRUE(std::ranges::is_sorted(peaks, {}, &TonalPeak::frequencyHz));
    }
}

// A Hann-windowed sine between bins: the parabola through its levels in dB misses the frequency
// by less than 0.02 bins; what it reads follows from
// the window's own transform.
TEST(PeakPicker, aWindowedSineReadsItsFrequency) {
    for (const double position : {100.0, 100.2, 100.5, 100.8}) {
        std::vector<float> samples(Testing::spectrumFFTSize);
        for (std::size_t i = 0; i < samples.size(); ++i) {
            samples[i] = static_cast<float>(
                0.1 * std::sin(2 * std::numbers::pi * position * static_cast<double>(i) / 4096));
        }
        const auto magnitudes = Testing::lineMagnitudes(samples);
        const auto peaks = peaksOf(Testing::lineLevelsDB(magnitudes));
        ASSERT_FALSE(peaks.empty());
        const auto loudest = std::ranges::max_element(peaks, {}, &TonalPeak::levelDB);
        // |W(x)| = sin(pi x) / (pi x (1 - x^2)), 1 at x = 0.
        const auto windowDB = [](double x) {
            const double px = std::numbers::pi * x;
            const double w = std::abs(x) < 1e-9                 ? 1.0
                             : std::abs(std::abs(x) - 1) < 1e-9 ? 0.5
                                                                : std::sin(px) / (px * (1 - x * x));
            return 20 * std::log10(std::abs(w)) - 20;
        };
        const int bin = loudest->binIndex;
        const double l = windowDB(bin - 1 - position), c = windowDB(bin - position),
                     r = windowDB(bin + 1 - position);
        const double delta = 0.5 * (l - r) / (l - 2 * c + r);
        EXPECT_NEAR(loudest->frequencyHz / binWidthHz, bin + delta, 1e-3);
        EXPECT_NEAR(loudest->levelDB, c - 0.25 * (l - r) * delta, 1e-3);
        EXPECT_NEAR(loudest->frequencyHz / binWidthHz, position, 0.02);
    }
}

TEST(PeakPicker, whatIsNoNumberNeitherStopsNorHangsIt) {
    std::mt19937 random(6);
    const double odd[] = {std::numeric_limits<double>::quiet_NaN(),
                          std::numeric_limits<double>::infinity(),
                          -std::numeric_limits<double>::infinity(), 5000.0, -5000.0};
    for (int round = 0; round < 100; ++round) {
        auto spectrum = flat(-80);
        for (double& level : spectrum) {
            level =
                random() % 8 == 0 ? odd[random() % 5] : -80.0 + static_cast<double>(random() % 60);
        }
        EXPECT_LE(peaksOf(spectrum).size(), 24U);
    }
}

TEST(PeakPicker, aKeptWorkspaceAllocatesOnce) {
    std::mt19937 random(8);
    std::normal_distribution<double> normal(-90.0, 3.0);
    PeakPicker::Workspace workspace;
    std::vector<TonalPeak> peaks;
    peaks.reserve(2048);
    auto spectrum = flat(0);
    std::int64_t allocations = 0;
    for (int frame = 0; frame < 20; ++frame) {
        for (double& level : spectrum) {
            level = normal(random);
        }
        for (int bin = 30; bin < 1300; bin += 30) {
            addTone(spectrum, bin, -20);
        }
        const auto before = TarvaneTests::RealtimeGuard::counts().allocations;
        {
            const RealtimeScope scope;
            findPeaks({.levelsDB = spectrum}, 48000, 4096, usual, workspace, peaks);
        }
        if (frame > 0) {
            allocations += TarvaneTests::RealtimeGuard::counts().allocations - before;
        }
        EXPECT_EQ(peaks.size(), 24U);
    }
    EXPECT_EQ(allocations, 0);
}

TEST(PeakPickerDeathTest, theMostPeaksAreNotNegative) {
    auto negative = usual;
    negative.maxPeaks = -1;
    EXPECT_DEATH(peaksOf(flat(-80), negative), "maxPeaks");
}

TEST(PeakPickerDeathTest, magnitudesAreAsManyAsLevels) {
    const auto levels = flat(-80);
    const std::vector<float> magnitudes(10);
    PeakPicker::Workspace workspace;
    std::vector<TonalPeak> peaks;
    EXPECT_DEATH(findPeaks({.levelsDB = levels, .magnitudes = magnitudes}, 48000, 4096, usual,
                           workspace, peaks),
                 "magnitudes");
}

// A roof with 2 dB a bin to the left and 1 dB a bin to the right falls 3 dB within 1.5 and 3 bins.
TEST(Bandwidth, edgesAreInterpolatedInDecibels) {
    std::vector<double> spectrum;
    for (int bin = 0; bin < 40; ++bin) {
        spectrum.push_back(bin <= 20 ? -2.0 * (20 - bin) : -1.0 * (bin - 20));
    }
    EXPECT_DOUBLE_EQ(measureBandwidth(spectrum, 20, 0.0, 10.0, 50).value(), 45.0);
    // From a level between the bins: 3 dB below 0.5 is -2.5, at 1.25 and 2.5 bins.
    EXPECT_DOUBLE_EQ(measureBandwidth(spectrum, 20, 0.5, 10.0, 50).value(), 37.5);
}

TEST(Bandwidth, aBinExactlyAtTheEdgeIsTheEdge) {
    const std::vector<double> spectrum{-9, -3, 0, -1, -3, -9};
    EXPECT_DOUBLE_EQ(measureBandwidth(spectrum, 2, 0.0, 1.0, 5).value(), 3.0);
}

TEST(Bandwidth, aSkirtThatDoesNotFallWithinTheSearchGivesNothing) {
    std::vector<double> spectrum;
    for (int bin = 0; bin < 41; ++bin) {
        spectrum.push_back(-std::abs(bin - 20.0));
    }
    // 3 dB down is three bins away: three steps see it, two don't.
    EXPECT_TRUE(measureBandwidth(spectrum, 20, 0.0, 1.0, 3).has_value());
    EXPECT_FALSE(measureBandwidth(spectrum, 20, 0.0, 1.0, 2).has_value());
    // Past either end of the spectrum.
    EXPECT_FALSE(measureBandwidth(std::span(spectrum).subspan(18), 2, 0.0, 1.0, 9).has_value());
    EXPECT_FALSE(measureBandwidth(std::span(spectrum).first(23), 20, 0.0, 1.0, 9).has_value());
    EXPECT_TRUE(measureBandwidth(std::span(spectrum).first(24), 20, 0.0, 1.0, 9).has_value());
}

TEST(Bandwidth, impossibleInputGivesNothing) {
    const std::vector<double> spectrum{-9, -3, 0, -1, -3, -9};
    EXPECT_FALSE(measureBandwidth(spectrum, -1, 0.0, 1.0, 5).has_value());
    EXPECT_FALSE(measureBandwidth(spectrum, 6, 0.0, 1.0, 5).has_value());
    EXPECT_FALSE(measureBandwidth(spectrum, 2, 0.0, 0.0, 5).has_value());
    EXPECT_FALSE(measureBandwidth(spectrum, 2, 0.0, -1.0, 5).has_value());
    EXPECT_FALSE(measureBandwidth(spectrum, 2, 0.0, 1.0, 0).has_value());
    EXPECT_FALSE(measureBandwidth({}, 0, 0.0, 1.0, 5).has_value());
}

// A level far above the bins puts both edges at the peak's own bin: equal levels shift by a
// whole bin, the right one never lies left of the left one.
TEST(Bandwidth, equalLevelsAtTheEdgeTakeTheOuterBin) {
    const std::vector<double> spectrum{-10, -10, -10, -10, -10};
    EXPECT_DOUBLE_EQ(measureBandwidth(spectrum, 2, 0.0, 1.0, 5).value(), 2.0);
}

}  // namespace PeakPickerTests
}  // namespace TarvaneKit
