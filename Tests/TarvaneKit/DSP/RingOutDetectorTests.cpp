#include "DSP/RingOutDetector.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <functional>
#include <limits>
#include <random>
#include <set>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "Core/RealtimeScope.h"
#include "Support/LineSpectra.h"
#include "Support/PlainRingOut.h"
#include "Support/RealtimeGuard.h"
#include "Support/RingOutSignals.h"

namespace TarvaneKit {
namespace RingOutDetectorTests {

using Sensitivity = RingOutDetector::Sensitivity;
using Configuration = RingOutDetector::Configuration;

constexpr double binWidthHz = 48000.0 / 4096;
constexpr double floorDB = -70.0;

constexpr PeakPicker::Configuration peakPicker = RingOutDetector::fullScalePeakPicker;

struct Line {
    double frequencyHz;
    double levelDB;
};

// Each line the parabola of a Hann window's main lobe near its top, three bins wide, on a flat
// floor: the picker reads back frequency and level exactly.
std::vector<double> spectrumOf(const std::vector<Line>& lines) {
    std::vector<double> spectrum(2048, floorDB);
    for (const Line& line : lines) {
        const double position = line.frequencyHz / binWidthHz;
        const int middle = static_cast<int>(std::lround(position));
        for (int bin = middle - 1; bin <= middle + 1; ++bin) {
            const double distance = bin - position;
            spectrum[static_cast<std::size_t>(bin)] = line.levelDB - 6.0 * distance * distance;
        }
    }
    return spectrum;
}

Date dateAt(double seconds) {
    return Date{} + std::chrono::nanoseconds(std::llround(seconds * 1e9));
}

struct Raised {
    double seconds;
    RingAlert alert;
};

// A detector at sixty frames a second, the first at time 0.
class RingOutDetection : public testing::Test {
  protected:
    static Configuration at(Sensitivity sensitivity) {
        return Configuration(sensitivity, peakPicker);
    }

    std::vector<Raised> run(double seconds,
                            const std::function<std::vector<Line>(double time)>& lines) {
        std::vector<Raised> raised;
        const double start = frame_ / 60.0;
        for (; frame_ / 60.0 < start + seconds - 1e-9; ++frame_) {
            const double time = frame_ / 60.0;
            for (const RingAlert& alert :
                 detector.update(spectrumOf(lines(time - start)), dateAt(time))) {
                raised.push_back({time - start, alert});
            }
        }
        return raised;
    }

    RingOutDetector detector{48000, 4096, at(Sensitivity::normal)};

  private:
    int frame_ = 0;
};

std::vector<Line> growing(double time, double frequencyHz = 1000.0) {
    return {{frequencyHz, -50.0 + 10.0 * time}};
}

// 20 dB in 2 s. The smoothed level lags the raw one by 0.3 s and rises from the first level by
// 10 (t - 0.3 (1 - e^(-t/0.3))) dB: 7.1 dB after 1 s, more than the 6 asked for.
TEST_F(RingOutDetection, aGrowingSteadyToneAlertsOnceAtItsLeastAge) {
    const auto raised = run(2.0, [](double time) { return growing(time); });
    ASSERT_EQ(raised.size(), 1U);
    EXPECT_DOUBLE_EQ(raised[0].seconds, 1.0);
    EXPECT_NEAR(raised[0].alert.frequencyHz, 1000.0, 1e-6);
    EXPECT_EQ(raised[0].alert.note.name, "B5");  // 987.77 Hz
    EXPECT_EQ(raised[0].alert.date, dateAt(1.0));
}

// After t s the smoothed level has risen by 10 (t - 0.3 (1 - e^(-t/0.3))) dB, to first order in
// the frame's spacing: at 0.6 s 3.4 dB, less than the 4 of `high`; 4 dB at 0.67 s. At 1.5 s
// 12 dB, more than the 9 of `low`.
TEST_F(RingOutDetection, eachSensitivityHasItsAge) {
    detector.configuration.apply(Sensitivity::low);
    auto raised = run(2.0, [](double time) { return growing(time); });
    ASSERT_EQ(raised.size(), 1U);
    EXPECT_DOUBLE_EQ(raised[0].seconds, 1.5);

    detector.configuration.apply(Sensitivity::high);
    detector.reset();
    raised = run(2.0, [](double time) { return growing(time); });
    ASSERT_EQ(raised.size(), 1U);
    EXPECT_NEAR(raised[0].seconds, 0.67, 0.02);
}

TEST_F(RingOutDetection, aConstantToneNeverAlerts) {
    for (const auto sensitivity : allCases<Sensitivity>()) {
        detector.configuration.apply(sensitivity);
        for (const double levelDB : {-55.0, -20.0, 0.0, 40.0}) {
            detector.reset();
            EXPECT_TRUE(run(4.0, [&](double) {
                            return std::vector<Line>{{1000, levelDB}};
                        }).empty());
        }
    }
}

TEST_F(RingOutDetection, twoHarmonicsMakeItMusic) {
    EXPECT_TRUE(run(3.0, [](double time) {
                    return std::vector<Line>{
                        {500, -50 + 10 * time}, {1000, -55 + 10 * time}, {1500, -60 + 10 * time}};
                }).empty());
    EXPECT_EQ(detector.trackCount(), 3);
}

TEST_F(RingOutDetection, oneHarmonicAloneDoesNot) {
    const auto raised = run(3.0, [](double time) {
        return std::vector<Line>{{500, -50 + 10 * time}, {1000, -52 + 10 * time}};
    });
    ASSERT_EQ(raised.size(), 2U);
    EXPECT_NEAR(raised[0].alert.frequencyHz, 500, 1e-6);
    EXPECT_NEAR(raised[1].alert.frequencyHz, 1000, 1e-6);
}

TEST_F(RingOutDetection, aHarmonicOfALowerSteadyToneIsMusicToo) {
    // Only the third harmonic grows.
    EXPECT_TRUE(run(3.0, [](double time) {
                    return std::vector<Line>{{400, -30}, {800, -30}, {1200, -50 + 10 * time}};
                }).empty());
}

TEST_F(RingOutDetection, thePartnerTestCanBeSwitchedOff) {
    detector.configuration.harmonicPartnerLimit = 0;
    EXPECT_EQ(run(3.0,
                  [](double time) {
                      return std::vector<Line>{
                          {500, -50 + 10 * time}, {1000, -50 + 10 * time}, {1500, -50 + 10 * time}};
                  })
                  .size(),
              3U);
}

// 1.5 % of 3000 Hz is 45 Hz.
TEST_F(RingOutDetection, aPartnerMayMissItsMultipleByItsTolerance) {
    for (const bool isInside : {true, false}) {
        detector.reset();
        const double third = isInside ? 3044.0 : 3050.0;
        const auto raised = run(3.0, [&](double time) {
            return std::vector<Line>{{1000, -50 + 10 * time}, {2000, -30}, {third, -30}};
        });
        EXPECT_EQ(raised.size(), isInside ? 0U : 1U);
    }
}

// 7 is above the highest harmonic looked at: neither 2 nor 3 times another line, it stands alone.
TEST_F(RingOutDetection, theSeventhHarmonicHasNoFamily) {
    const auto raised = run(3.0, [](double time) {
        std::vector<Line> lines;
        for (int h = 1; h <= 6; ++h) {
            lines.push_back({300.0 * h, -30});
        }
        lines.push_back({2100, -50 + 10 * time});
        return lines;
    });
    ASSERT_EQ(raised.size(), 1U);
    EXPECT_NEAR(raised[0].alert.frequencyHz, 2100, 1e-6);
}

TEST_F(RingOutDetection, aToneThatStopsTooLongStartsItsAgeAnew) {
    // The fifth frame without it comes 5 / 60 = 0.083 s after its last.
    run(0.9, [](double time) { return growing(time); });
    run(5 / 60.0, [](double) { return std::vector<Line>{}; });
    EXPECT_EQ(detector.trackCount(), 0);
    const auto raised = run(1.5, [](double time) { return growing(time); });
    ASSERT_EQ(raised.size(), 1U);
    EXPECT_NEAR(raised[0].seconds, 1.0, 1e-9);
}

TEST_F(RingOutDetection, aShortGapIsBridged) {
    // The fourth frame without it comes 4 / 60 = 0.067 s after its last. The tone came 58 frames
    // before the third run and is 1 s old in its third frame.
    run(0.9, [](double time) { return growing(time); });
    run(4 / 60.0, [](double) { return std::vector<Line>{}; });
    EXPECT_EQ(detector.trackCount(), 1);
    const auto raised = run(1.5, [](double time) { return growing(time + 58 / 60.0); });
    ASSERT_EQ(raised.size(), 1U);
    EXPECT_NEAR(raised[0].seconds, 2 / 60.0, 1e-9);
}

TEST_F(RingOutDetection, aTrackIsDroppedWhenUnmatchedForLongerThanItMay) {
    detector.update(spectrumOf({{1000, -30}}), dateAt(0));
    detector.update(spectrumOf({}), dateAt(0.075));
    EXPECT_EQ(detector.trackCount(), 1);
    detector.update(spectrumOf({}), dateAt(0.0751));
    EXPECT_EQ(detector.trackCount(), 0);
}

TEST_F(RingOutDetection, anAlertedToneThatComesBackAlertsAgain) {
    EXPECT_EQ(run(2.0, [](double time) { return growing(time); }).size(), 1U);
    run(0.2, [](double) { return std::vector<Line>{}; });
    EXPECT_EQ(run(2.0, [](double time) { return growing(time); }).size(), 1U);
}

// A sweep of c cents/s has a standard deviation of c t / sqrt(12) over t s: 22 cents after the
// first second at 75 cents/s, where 10 are allowed. Faster ones leave the tracking's quarter
// semitone about the smoothed pitch, which lags by 0.3 s, and never grow old.
TEST_F(RingOutDetection, aSweepingToneFailsTheSteadinessTest) {
    for (const double centsPerSecond : {75.0, 165.0, 1200.0}) {
        detector.reset();
        EXPECT_TRUE(run(3.0,
                        [&](double time) {
                            return growing(time, 3000 * std::exp2(centsPerSecond * time / 1200));
                        })
                        .empty())
            << centsPerSecond;
    }
}

// The limit at 1 kHz and `normal`: the larger of 10 cents, 5.8 Hz, and a quarter bin, 2.9 Hz.
// A deviation of +-d has a standard deviation of d.
TEST_F(RingOutDetection, theSteadinessLimitIsWhereItIsTold) {
    for (const double deviationHz : {5.5, 6.1}) {
        detector.reset();
        int frame = 0;
        const auto raised = run(1.5, [&](double time) {
            return growing(time, 1000.0 + (++frame % 2 == 0 ? deviationHz : -deviationHz));
        });
        EXPECT_EQ(raised.size(), deviationHz < 5.8 ? 1U : 0U);
    }
    // At 200 Hz 10 cents are 1.2 Hz, and the quarter bin decides.
    for (const double deviationHz : {2.7, 3.1}) {
        detector.reset();
        int frame = 0;
        const auto raised = run(1.5, [&](double time) {
            return growing(time, 200.0 + (++frame % 2 == 0 ? deviationHz : -deviationHz));
        });
        EXPECT_EQ(raised.size(), deviationHz < 2.93 ? 1U : 0U);
    }
}

TEST_F(RingOutDetection, growthThatEndedAgoDoesNotAlert) {
    // 20 dB in half a second, then level for ever: at 1 s of age the last half second is flat.
    EXPECT_TRUE(run(4.0, [](double time) {
                    return std::vector<Line>{{1000, -50 + 40 * std::min(time, 0.45)}};
                }).empty());
}

// -50 + 10 t over a floor of -70: 34.5 dB at 1.45 s, 34.67 dB a frame later.
TEST_F(RingOutDetection, aToneMustStandFarEnoughAboveItsFloor) {
    detector.configuration.minAlertProminenceDB = 34.55;
    const auto raised = run(2.0, [](double time) { return growing(time); });
    ASSERT_EQ(raised.size(), 1U);
    EXPECT_DOUBLE_EQ(raised[0].seconds, 88 / 60.0);
}

TEST_F(RingOutDetection, theLiveAlertStaysWhileAFallingToneIsMatched) {
    run(2.0, [](double time) { return growing(time); });
    ASSERT_TRUE(detector.currentLiveAlert().has_value());
    run(1.0, [](double time) { return std::vector<Line>{{1000, -30 - 15 * time}}; });
    EXPECT_TRUE(detector.currentLiveAlert().has_value());
    run(1 / 60.0, [](double) { return std::vector<Line>{}; });
    EXPECT_FALSE(detector.currentLiveAlert().has_value()) << "gone in the very frame";
    EXPECT_EQ(detector.trackCount(), 1) << "before the track is";
    run(1 / 60.0, [](double) { return std::vector<Line>{{1000, -45}}; });
    EXPECT_TRUE(detector.currentLiveAlert().has_value()) << "the track is still alerted";
}

TEST_F(RingOutDetection, theLiveAlertStandsInTheFrameOfTheAlert) {
    int frames = 0;
    while (!detector.currentLiveAlert() && frames < 200) {
        const double time = frames / 60.0;
        const auto raised = detector.update(spectrumOf(growing(time)), dateAt(time));
        EXPECT_EQ(raised.empty(), !detector.currentLiveAlert());
        ++frames;
    }
    EXPECT_EQ(frames, 61);
}

TEST_F(RingOutDetection, ofTwoRingsTheLiveAlertShowsTheStronger) {
    std::set<std::string> ids;
    for (int frame = 0; frame < 180; ++frame) {
        const double time = frame / 60.0;
        const bool secondIsStronger = frame >= 120;
        detector.update(
            spectrumOf({{700, -50 + 8 * time}, {1130, (secondIsStronger ? -30 : -52) + 8 * time}}),
            dateAt(time));
        if (frame == 110 || frame == 179) {
            ASSERT_TRUE(detector.currentLiveAlert().has_value());
            EXPECT_NEAR(detector.currentLiveAlert()->frequencyHz, frame == 110 ? 700 : 1130, 1e-6);
        }
        if (detector.currentLiveAlert()) {
            EXPECT_TRUE(ids.insert(detector.currentLiveAlert()->id.text()).second)
                << "a new identifier in every frame";
        }
    }
    EXPECT_GE(ids.size(), 100U);
}

// The live alert has the frame's frequency, the raised one the smoothed: alpha of a frame is
// 1 - e^(-1/(60 0.3)) = 0.054.
TEST_F(RingOutDetection, theLiveAlertHasTheFramesOwnFrequency) {
    run(2.0, [](double time) { return growing(time); });
    run(1 / 60.0, [](double) { return std::vector<Line>{{1004, -29}}; });
    EXPECT_NEAR(detector.currentLiveAlert()->frequencyHz, 1004, 1e-6);
}

TEST_F(RingOutDetection, aSpectrumWithoutPeaksOrWithoutBinsClearsTheLiveAlert) {
    run(2.0, [](double time) { return growing(time); });
    EXPECT_TRUE(detector.currentLiveAlert().has_value());
    EXPECT_TRUE(detector.update(std::vector<double>{}, dateAt(2.0)).empty());
    EXPECT_FALSE(detector.currentLiveAlert().has_value());
    EXPECT_EQ(detector.trackCount(), 1);
    detector.update(std::vector<double>{}, dateAt(2.2));
    EXPECT_EQ(detector.trackCount(), 0);
}

TEST_F(RingOutDetection, afterAResetAFrameMakesTracksAndNoAlert) {
    run(2.0, [](double time) { return growing(time); });
    detector.reset();
    EXPECT_EQ(detector.trackCount(), 0);
    EXPECT_FALSE(detector.currentLiveAlert().has_value());
    EXPECT_TRUE(run(1 / 60.0, [](double) { return growing(2.0); }).empty());
    EXPECT_EQ(detector.trackCount(), 1);
    EXPECT_FALSE(detector.currentLiveAlert().has_value());
}

TEST_F(RingOutDetection, theSuggestedCutIsTheProminenceWithinItsRange) {
    const int bin = 85;
    run(3.0, [&](double time) { return growing(time, bin * binWidthHz); });
    ASSERT_TRUE(detector.currentLiveAlert().has_value());
    const struct {
        double prominenceDB, cutDB;
    } cases[] = {{40, -12}, {12.4, -12}, {11.6, -12}, {11.4, -11}, {10.2, -10}};
    for (const auto& c : cases) {
        run(1 / 60.0, [&](double) {
            return std::vector<Line>{{bin * binWidthHz, floorDB + c.prominenceDB}};
        });
        ASSERT_TRUE(detector.currentLiveAlert().has_value());
        EXPECT_EQ(detector.currentLiveAlert()->suggestedCutDB, c.cutDB) << c.prominenceDB;
    }
    // A picker that takes a peak of 2 dB.
    detector.configuration.peakPicker.prominenceThresholdDB = 1;
    detector.configuration.peakPicker.minPeakLevelDB = -100;
    auto faint = spectrumOf({});
    faint[bin] = floorDB + 2;
    faint[bin - 1] = faint[bin + 1] = floorDB + 1;
    detector.update(faint, dateAt(3 + 5 / 60.0));
    ASSERT_TRUE(detector.currentLiveAlert().has_value());
    EXPECT_EQ(detector.currentLiveAlert()->suggestedCutDB, -3.0);
}

// The lines of these tests fall 6 d^2 dB at d bins, linear between bins; on a bin -6 beside it,
// so that 3 dB are half a bin to either side: 1 bin. Below 3 bins Q may not exceed 15.
TEST_F(RingOutDetection, qIsLimitedWhereTheWindowDecidesTheBandwidth) {
    const double low = 10 * binWidthHz;
    const double high = 400 * binWidthHz;
    run(2.0, [&](double time) { return growing(time, low); });
    EXPECT_NEAR(detector.currentLiveAlert()->bandwidthHz, binWidthHz, 1e-6);
    EXPECT_NEAR(detector.currentLiveAlert()->suggestedQ, 10.0, 1e-6);
    detector.reset();
    run(2.0, [&](double time) { return growing(time, high); });
    EXPECT_EQ(detector.currentLiveAlert()->suggestedQ, 15.0);
}

TEST_F(RingOutDetection, aWideTopGivesItsOwnQ) {
    // 1 dB a bin to either side, 9 bins far: 3 dB down is 3 bins away, so 6 bins.
    for (const int bin : {60, 600}) {
        detector.reset();
        for (int frame = 0; frame < 120; ++frame) {
            std::vector<double> spectrum(2048, floorDB);
            const double level = -45 + frame / 6.0;
            for (int k = -9; k <= 9; ++k) {
                spectrum[static_cast<std::size_t>(bin + k)] = level - std::abs(k);
            }
            detector.configuration.peakPicker.noiseFloorGuardHz = 9 * binWidthHz;
            detector.configuration.peakPicker.noiseFloorWindowHz = 30 * binWidthHz;
            detector.update(spectrum, dateAt(frame / 60.0));
        }
        ASSERT_TRUE(detector.currentLiveAlert().has_value());
        EXPECT_NEAR(detector.currentLiveAlert()->bandwidthHz, 6 * binWidthHz, 1e-6);
        EXPECT_NEAR(detector.currentLiveAlert()->suggestedQ, bin == 60 ? 10.0 : 30.0, 1e-6)
            << "60 / 6, and 600 / 6 at the highest Q";
    }
}

TEST_F(RingOutDetection, aBandwidthThatCannotBeMeasuredCountsAsFourBins) {
    detector.configuration.bandwidthMaxSearchBins = 0;
    run(2.0, [](double time) { return growing(time, 100 * binWidthHz); });
    EXPECT_NEAR(detector.currentLiveAlert()->bandwidthHz, 4 * binWidthHz, 1e-9);
    EXPECT_NEAR(detector.currentLiveAlert()->suggestedQ, 25.0, 1e-6);
}

// A peak takes the nearest free track; one that finds none makes a track that the next peak of
// the same frame may already take.
TEST_F(RingOutDetection, aNewTrackCanBeMatchedInItsOwnFrame) {
    // At 8 kHz a quarter semitone is 116 Hz; the two peaks lie 94 Hz apart.
    const double first = 683 * binWidthHz;
    const double second = 691 * binWidthHz;
    detector.update(spectrumOf({{first, -30}, {second, -30}}), dateAt(0));
    EXPECT_EQ(detector.trackCount(), 1);
    // In the next frame the first peak takes that track, and the second makes its own.
    detector.update(spectrumOf({{first, -30}, {second, -30}}), dateAt(1 / 60.0));
    EXPECT_EQ(detector.trackCount(), 2);
}

TEST_F(RingOutDetection, theToleranceIsTwoBinsBelowAndAQuarterSemitoneAbove) {
    const auto tracksAfter = [&](double fromHz, double toHz) {
        detector.reset();
        detector.update(spectrumOf({{fromHz, -30}}), dateAt(0));
        detector.update(spectrumOf({{toHz, -30}}), dateAt(1 / 60.0));
        return detector.trackCount();
    };
    EXPECT_EQ(tracksAfter(300, 300 + 1.98 * binWidthHz), 1);
    EXPECT_EQ(tracksAfter(300, 300 + 2.02 * binWidthHz), 2);
    // The tolerance is that of the new peak's frequency: 8000 - 8000 (2^(1/48) - 1) = 7883.6.
    EXPECT_EQ(tracksAfter(7885, 8000), 1);
    EXPECT_EQ(tracksAfter(7882, 8000), 2);
}

TEST_F(RingOutDetection, framesOfOneDateAreSurvived) {
    for (int frame = 0; frame < 100; ++frame) {
        EXPECT_TRUE(detector.update(spectrumOf(growing(frame / 60.0)), dateAt(5)).empty());
    }
}

TEST_F(RingOutDetection, aClockThatStepsBackNeitherStopsNorFillsIt) {
    run(0.5, [](double time) { return growing(time); });
    for (int frame = 0; frame < 6000; ++frame) {
        const double time = -3600 + frame / 60.0;
        detector.update(spectrumOf({{1000, -40 + 0.1 * std::sin(time)}}), dateAt(time));
    }
    EXPECT_EQ(detector.trackCount(), 1);
    // Once the old samples lie in the past again, the tone is judged as any other.
    detector.reset();
    EXPECT_EQ(run(2.0, [](double time) { return growing(time); }).size(), 1U);
}

// Detectors that one thread runs in turn share the memory in which they search for peaks.
TEST_F(RingOutDetection, whatAnotherDetectorHearsBetweenItsFramesChangesNothing) {
    RingOutDetector longer(48000, 8192, at(Sensitivity::high));
    RingOutDetector shorter(48000, 1024, at(Sensitivity::low));
    std::vector<double> comb(4096, floorDB);
    for (std::size_t bin = 40; bin < comb.size(); bin += 40) {
        comb[bin - 1] = comb[bin + 1] = -20.0;
        comb[bin] = -10.0;
    }
    const auto raised = run(2.0, [&](double time) {
        longer.update(comb, dateAt(time));
        shorter.update(std::span(comb).first(512), dateAt(time));
        return growing(time);
    });
    EXPECT_EQ(longer.trackCount(), peakPicker.maxPeaks);
    ASSERT_EQ(raised.size(), 1U);
    EXPECT_DOUBLE_EQ(raised[0].seconds, 1.0);
    EXPECT_NEAR(raised[0].alert.frequencyHz, 1000.0, 1e-6);
}

TEST_F(RingOutDetection, aWarmDetectorAllocatesNothingWhileNothingRings) {
    std::mt19937 random(3);
    std::normal_distribution<double> normal(-55.0, 8.0);
    std::vector<double> spectrum(2048);
    std::int64_t allocationsWhenWarm = 0;
    for (int frame = 0; frame < 4000; ++frame) {
        for (double& level : spectrum) {
            level = normal(random);
        }
        for (int h = 1; h <= 8; ++h) {
            const auto bin = static_cast<std::size_t>(60 * h);
            spectrum[bin - 1] = spectrum[bin + 1] = -16;
            spectrum[bin] = -10;
        }
        const Date date = dateAt(frame / 60.0);
        const auto before = TarvaneTests::RealtimeGuard::counts().allocations;
        {
            const RealtimeScope scope;
            detector.update(spectrum, date);
        }
        if (frame >= 2000) {
            allocationsWhenWarm += TarvaneTests::RealtimeGuard::counts().allocations - before;
        }
    }
    EXPECT_LE(detector.trackCount(), 24 * 6) << "at most a frame's peaks for each frame of 0.075 s";
    // Tracks come and go all the time in noise: some 20 in each of these 2000 frames. Only one
    // that outlives all that had its memory before needs more.
    EXPECT_LE(allocationsWhenWarm, 100);
}

TEST(RingOutConfiguration, isTheTableOfItsSensitivity) {
    const struct {
        Sensitivity sensitivity;
        double age, growth, rise, cents, prominence;
    } table[] = {{Sensitivity::low, 1.5, 3, 9, 6, 15},
                 {Sensitivity::normal, 1.0, 2, 6, 10, 12},
                 {Sensitivity::high, 0.6, 1, 4, 20, 9}};
    for (const auto& row : table) {
        const Configuration c(row.sensitivity, peakPicker);
        EXPECT_EQ(c.minTrackAgeSeconds, row.age);
        EXPECT_EQ(c.minGrowthRateDBPerSecond, row.growth);
        EXPECT_EQ(c.minTotalRiseDB, row.rise);
        EXPECT_EQ(c.maxFrequencyDeviationCents, row.cents);
        EXPECT_EQ(c.minAlertProminenceDB, row.prominence);
        EXPECT_EQ(c.peakPicker, peakPicker);
    }
    EXPECT_EQ(rawValue(Sensitivity::low), "low");
    EXPECT_EQ(rawValue(Sensitivity::normal), "normal");
    EXPECT_EQ(rawValue(Sensitivity::high), "high");
}

TEST(RingOutConfiguration, aSensitivityOverwritesItsFiveFieldsAlone) {
    Configuration c(Sensitivity::low, peakPicker);
    c.peakPicker.minPeakLevelDB = 40;
    c.maxMissedSeconds = 1;
    c.minQ = 2;
    c.harmonicPartnerLimit = 7;
    Configuration expected(Sensitivity::high, c.peakPicker);
    expected.maxMissedSeconds = 1;
    expected.minQ = 2;
    expected.harmonicPartnerLimit = 7;
    c.apply(Sensitivity::high);
    EXPECT_EQ(c, expected);
}

// Random tones that come, grow, wander and go over noise: every alert, live or raised, is the
// plain reading's.
TEST(RingOutAgainstThePlainReading, randomTonesGiveTheSameAlerts) {
    std::mt19937 random(17);
    std::uniform_real_distribution<double> uniform(0.0, 1.0);
    std::normal_distribution<double> normal(0.0, 1.0);
    struct RandomTone {
        double frequencyHz, levelDB, growth, drift;
    };
    const double rates[] = {48000, 8000, 44100, 96000, 192000, 384000};
    int alertCount = 0;
    for (int round = 0; round < 36; ++round) {
        Configuration configuration(allCases<Sensitivity>()[static_cast<std::size_t>(round % 3)],
                                    peakPicker);
        configuration.peakPicker.maxPeaks = 10;
        // The same lines stand for other frequencies at another rate.
        const double rate = rates[static_cast<std::size_t>(round / 3) % std::size(rates)];
        RingOutDetector detector(rate, 4096, configuration);
        Testing::PlainRingOutDetector plain(rate, 4096, configuration);
        std::vector<RandomTone> tones(5);
        double time = 100.0;
        for (int frame = 0; frame < 300; ++frame) {
            // Uneven, now and then with a jump, also backward; of a grid on which no limit lies.
            constexpr double grid = 0.0007;
            time += grid * static_cast<double>(14 + random() % 20);
            if (random() % 150 == 0) {
                time += grid * (static_cast<double>(random() % 600) - 300);
            }
            std::vector<Line> lines;
            for (RandomTone& tone : tones) {
                if (frame == 0 || uniform(random) < 0.004) {
                    tone = {.frequencyHz = 100.0 * std::exp2(7.0 * uniform(random)),
                            .levelDB = -60 + 15 * uniform(random),
                            .growth = 12 * uniform(random) - 1,
                            .drift = 8 * normal(random) * uniform(random)};
                }
                tone.levelDB += tone.growth / 60;
                tone.frequencyHz *= std::exp2(tone.drift / 1200 / 60);
                lines.push_back({tone.frequencyHz * std::exp2(2 * normal(random) / 1200),
                                 tone.levelDB + 0.1 * normal(random)});
            }
            auto spectrum = spectrumOf(lines);
            for (double& level : spectrum) {
                level = std::max(level, -62.0) + 3.0 * uniform(random);
            }
            const auto alerts = detector.update(spectrum, dateAt(time));
            const auto expected = plain.update(spectrum, time);
            ASSERT_EQ(alerts.size(), expected.size()) << round << ", frame " << frame;
            ASSERT_EQ(detector.trackCount(), plain.trackCount()) << round << ", frame " << frame;
            for (std::size_t i = 0; i < alerts.size(); ++i) {
                EXPECT_NEAR(alerts[i].frequencyHz, expected[i].frequencyHz, 1e-6);
                EXPECT_NEAR(alerts[i].suggestedQ, expected[i].suggestedQ, 1e-6);
                EXPECT_EQ(alerts[i].suggestedCutDB, expected[i].suggestedCutDB);
            }
            alertCount += static_cast<int>(alerts.size());
            const auto& live = detector.currentLiveAlert();
            ASSERT_EQ(live.has_value(), plain.live.has_value());
            if (live) {
                EXPECT_NEAR(live->frequencyHz, plain.live->frequencyHz, 1e-6);
                EXPECT_NEAR(live->bandwidthHz, plain.live->bandwidthHz, 1e-6);
                EXPECT_EQ(live->suggestedCutDB, plain.live->suggestedCutDB);
            }
        }
    }
    EXPECT_GT(alertCount, 20) << "the comparison saw alerts at all";
}

// One signal, heard at each sensitivity by the detector and by the plain reading of its rules.
struct Listener {
    explicit Listener(Sensitivity sensitivity)
        : detector(48000, 4096, Configuration(sensitivity, peakPicker)),
          plain(48000, 4096, detector.configuration) {}

    RingOutDetector detector;
    Testing::PlainRingOutDetector plain;
    std::vector<RingAlert> raised;
    std::size_t plainAlertCount = 0;
};

std::vector<Listener> listenAtEachSensitivity(const std::vector<float>& signal) {
    std::vector<Listener> listeners;
    for (const auto sensitivity : allCases<Sensitivity>()) {
        listeners.emplace_back(sensitivity);
    }
    Testing::forEachSpectrum(signal, [&](auto levelsDB, auto magnitudes, Date date) {
        const double seconds = std::chrono::duration<double>(date.time_since_epoch()).count();
        for (Listener& listener : listeners) {
            for (RingAlert& alert : listener.detector.update({levelsDB, magnitudes}, date)) {
                listener.raised.push_back(std::move(alert));
            }
            listener.plainAlertCount += listener.plain.update(levelsDB, seconds).size();
        }
    });
    return listeners;
}

TEST(RingOutInARoom, feedbackIsFoundAtEverySensitivity) {
    for (const double modeHz : {125.0, 315.0, 1000.0, 2500.0, 8000.0}) {
        auto room = Testing::roomWithModeAt(modeHz);
        room.durationSeconds = 14;
        const Testing::FeedbackRun run = Testing::simulate(room);
        ASSERT_GT(run.howlAtSeconds, run.unstableAtSeconds);
        for (const Listener& listener : listenAtEachSensitivity(run.signal)) {
            const auto isTheRing = [&](const RingAlert& alert) {
                return std::abs(alert.frequencyHz - run.ringFrequencyHz) <= binWidthHz;
            };
            EXPECT_TRUE(std::ranges::any_of(listener.raised, isTheRing))
                << modeHz << " Hz at " << listener.detector.configuration.minTrackAgeSeconds;
            EXPECT_EQ(listener.raised.size(), listener.plainAlertCount);
        }
    }
}

// Alerts neither too many nor too few: those of the plain reading, and none where nothing grows
// steadily and alone.
TEST(RingOutAtAConcert, musicAlertsOnlyWhereTheRulesAskForIt) {
    for (const Testing::Material& material : Testing::musicLikeMaterial()) {
        std::size_t alertCount = 0;
        for (const Listener& listener : listenAtEachSensitivity(material.signal)) {
            EXPECT_EQ(listener.raised.size(), listener.plainAlertCount) << material.name;
            alertCount += listener.raised.size();
        }
        EXPECT_EQ(alertCount > 0, !material.whyItRings.empty()) << material.name;
    }
}

}  // namespace RingOutDetectorTests
}  // namespace TarvaneKit
