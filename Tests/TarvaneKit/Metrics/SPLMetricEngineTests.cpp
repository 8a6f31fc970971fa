#include "Metrics/SPLMetricEngine.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>
#include <limits>
#include <numbers>
#include <random>
#include <thread>
#include <vector>

#include "Core/RealtimeScope.h"
#include "Support/RealtimeGuard.h"
#include "Support/SPLReadings.h"

namespace TarvaneKit {
namespace SPLMetricEngineTests {

using Testing::allLevelMetrics;
using Testing::allPeakMetrics;
using Testing::calibrationWithOffsetDB;

constexpr double sampleRate = 48000.0;
constexpr double minusInfinity = -std::numeric_limits<double>::infinity();
const SPLMetric zNone = SPLMetric::spl(Weighting::z, TimeWeighting::none);
const SPLMetric user = SPLMetric::leq("user");

std::vector<float> sine(double frequencyHz, double seconds) {
    std::vector<float> samples(static_cast<std::size_t>(seconds * sampleRate));
    for (std::size_t i = 0; i < samples.size(); ++i) {
        samples[i] = static_cast<float>(
            std::sin(2.0 * std::numbers::pi * frequencyHz * static_cast<double>(i) / sampleRate));
    }
    return samples;
}

std::vector<float> constant(float amplitude, int count) {
    return std::vector<float>(static_cast<std::size_t>(count), amplitude);
}

std::vector<SPLMetric> allMetrics() {
    auto metrics = allLevelMetrics();
    const auto peaks = allPeakMetrics();
    metrics.insert(metrics.end(), peaks.begin(), peaks.end());
    metrics.push_back(user);
    return metrics;
}

// -3.01 dB by every weighting at 1 kHz.
const double fullScaleSineDB = 10.0 * std::log10(0.5);

TEST(SPLMetricEngine, aNewEngineReadsSilence) {
    SPLMetricEngine engine(sampleRate, {});
    engine.configureLeq("user", Weighting::a, 60.0);
    for (const SPLMetric& metric : allLevelMetrics()) {
        EXPECT_EQ(engine.value(metric), -240.0);
    }
    for (const SPLMetric& metric : allPeakMetrics()) {
        EXPECT_EQ(engine.value(metric), -240.0);
    }
    EXPECT_EQ(engine.value(user), minusInfinity);
}

TEST(SPLMetricEngine, silenceReadsTheFloor) {
    SPLMetricEngine engine(sampleRate, {});
    engine.configureLeq("user", Weighting::a, 60.0);
    engine.processBlock(constant(0.0F, 512));
    for (const double value : engine.values(allMetrics())) {
        EXPECT_EQ(value, -240.0);
    }
}

TEST(SPLMetricEngine, aFullScaleSineReadsItsLevelUnderEveryWeighting) {
    SPLMetricEngine engine(sampleRate, {});
    const auto block = sine(1000.0, 0.1);
    for (int i = 0; i < 100; ++i) {
        engine.processBlock(block);
    }
    for (const SPLMetric& metric : allLevelMetrics()) {
        const auto& spl = std::get<SPLMetric::SPL>(metric.reading);
        if (spl.timeWeighting != TimeWeighting::infinite) {
            // Slow is within exp(-10) after 10 s.
            EXPECT_NEAR(engine.value(metric), fullScaleSineDB, 3e-4);
        }
    }
    for (const SPLMetric& metric : allPeakMetrics()) {
        // 48 samples a cycle: one lies within pi/48 of the crest, cos(pi/48) is -0.019 dB.
        EXPECT_NEAR(engine.value(metric), 0.0, 0.019);
    }
}

TEST(SPLMetricEngine, aCalibrationLiftsTheReading) {
    SPLMetricEngine engine(sampleRate, calibrationWithOffsetDB(94.0));
    engine.processBlock(sine(1000.0, 0.1));
    EXPECT_NEAR(engine.value(zNone), 90.99, 0.005);
    EXPECT_NEAR(engine.value(zNone), 94.0 + fullScaleSineDB, 1e-6);
}

TEST(SPLMetricEngine, anOffsetOfZeroIsAGainOfOne) {
    SPLMetricEngine engine(sampleRate, calibrationWithOffsetDB(0.0));
    engine.processBlock(constant(0.25F, 100));
    EXPECT_DOUBLE_EQ(engine.value(zNone), 20.0 * std::log10(0.25));
}

TEST(SPLMetricEngine, aNewCalibrationActsFromTheNextBlockAndRescalesNothing) {
    SPLMetricEngine engine(sampleRate, {});
    engine.configureLeq("user", Weighting::z, 60.0);
    engine.processBlock(constant(0.1F, 100));
    const auto before = engine.values(allMetrics());
    engine.setCalibration(calibrationWithOffsetDB(20.0));
    EXPECT_EQ(engine.calibration(), calibrationWithOffsetDB(20.0));
    EXPECT_EQ(engine.values(allMetrics()), before);
    engine.processBlock(constant(0.1F, 100));
    EXPECT_NEAR(engine.value(zNone), 0.0, 1e-6);
    // One block at -20 dB and one at 0 dB.
    EXPECT_NEAR(engine.value(user), 10.0 * std::log10((0.01 + 1.0) / 2.0), 1e-6);
}

TEST(SPLMetricEngine, anEmptyBlockChangesNothing) {
    SPLMetricEngine engine(sampleRate, {});
    SPLMetricEngine undisturbed(sampleRate, {});
    for (SPLMetricEngine* each : {&engine, &undisturbed}) {
        each->configureLeq("user", Weighting::a, 60.0);
        each->processBlock(sine(1000.0, 0.01));
    }
    const auto before = engine.values(allMetrics());
    engine.processBlock({});
    EXPECT_EQ(engine.values(allMetrics()), before);
    for (SPLMetricEngine* each : {&engine, &undisturbed}) {
        each->processBlock(sine(500.0, 0.01));
    }
    EXPECT_EQ(engine.values(allMetrics()), undisturbed.values(allMetrics()))
        << "the filters' states were touched";
}

TEST(SPLMetricEngine, resettingALeqLeavesNoValueUntilTheNextBlock) {
    SPLMetricEngine engine(sampleRate, {});
    engine.configureLeq("user", Weighting::z, 60.0);
    engine.processBlock(constant(1.0F, 100));
    EXPECT_NEAR(engine.value(user), 0.0, 1e-12);
    engine.resetLeq("user");
    EXPECT_EQ(engine.value(user), minusInfinity);
    engine.resetLeq("nobody");
    engine.processBlock(constant(1.0F, 100));
    EXPECT_NEAR(engine.value(user), 0.0, 1e-12);
}

TEST(SPLMetricEngine, unknownIdsHaveNoValue) {
    SPLMetricEngine engine(sampleRate, {});
    engine.processBlock(constant(1.0F, 100));
    EXPECT_EQ(engine.value(SPLMetric::leq("nobody")), minusInfinity);
    EXPECT_FALSE(engine.leqProgress("nobody"));
}

TEST(SPLMetricEngine, configuringALeqAgainReplacesIt) {
    SPLMetricEngine engine(sampleRate, {});
    engine.configureLeq("user", Weighting::z, 60.0);
    engine.processBlock(constant(1.0F, 100));
    engine.configureLeq("user", Weighting::c, 30.0);
    EXPECT_EQ(engine.value(user), minusInfinity);
    EXPECT_EQ(engine.leqProgress("user"), (SPLMetricEngine::LeqProgress{0.0, false}));
}

TEST(SPLMetricEngine, severalLeqsRunSideBySideEachWithItsWeighting) {
    SPLMetricEngine engine(sampleRate, {});
    engine.configureLeq("a", Weighting::a, 60.0);
    engine.configureLeq("z", Weighting::z, 60.0);
    engine.processBlock(sine(100.0, 2.0));
    // A is 19.17 dB down at 100 Hz; its onset of some 50 ms is 2 % of the energy.
    EXPECT_NEAR(engine.value(SPLMetric::leq("a")), fullScaleSineDB - 19.17, 0.1);
    EXPECT_NEAR(engine.value(SPLMetric::leq("z")), fullScaleSineDB, 1e-6);
}

TEST(SPLMetricEngine, anIntegrationTimeOfZeroIsCompleteAtOnce) {
    SPLMetricEngine engine(sampleRate, {});
    engine.configureLeq("user", Weighting::a, 0.0);
    EXPECT_EQ(engine.leqProgress("user"), (SPLMetricEngine::LeqProgress{0.0, true}));
}

TEST(SPLMetricEngine, aCompleteLeqGoesOn) {
    SPLMetricEngine engine(sampleRate, {});
    engine.configureLeq("user", Weighting::z, 0.1);
    engine.processBlock(constant(1.0F, 2400));
    EXPECT_EQ(engine.leqProgress("user"), (SPLMetricEngine::LeqProgress{0.5, false}));
    engine.processBlock(constant(1.0F, 2400));
    EXPECT_EQ(engine.leqProgress("user"), (SPLMetricEngine::LeqProgress{1.0, true}));
    engine.processBlock(constant(0.0F, 4800));
    EXPECT_EQ(engine.leqProgress("user"), (SPLMetricEngine::LeqProgress{1.0, true}));
    EXPECT_NEAR(engine.value(user), 10.0 * std::log10(0.5), 1e-12);
}

TEST(SPLMetricEngine, resettingAllDetectorsLeavesLeqAndFilters) {
    SPLMetricEngine engine(sampleRate, {});
    engine.configureLeq("user", Weighting::a, 60.0);
    engine.processBlock(constant(0.9F, 300));
    const double leq = engine.value(user);
    engine.resetAllDetectors();
    EXPECT_EQ(engine.value(user), leq);
    for (const SPLMetric& metric : allLevelMetrics()) {
        EXPECT_EQ(engine.value(metric), -240.0);
    }
    for (const SPLMetric& metric : allPeakMetrics()) {
        EXPECT_EQ(engine.value(metric), -240.0);
    }
    // The filters remember the offset of 0.9: its end is a step for them.
    engine.processBlock(constant(0.0F, 300));
    EXPECT_GT(engine.value(SPLMetric::peak(Weighting::c)), -20.0);
    EXPECT_EQ(engine.value(SPLMetric::peak(Weighting::z)), -240.0);
}

TEST(SPLMetricEngine, resettingThePeaksLeavesTheLevels) {
    SPLMetricEngine engine(sampleRate, {});
    engine.processBlock(sine(1000.0, 0.1));
    std::vector<double> before;
    before = engine.values(allLevelMetrics());
    engine.resetPeakDetectors();
    EXPECT_EQ(engine.values(allLevelMetrics()), before);
    for (const SPLMetric& metric : allPeakMetrics()) {
        EXPECT_EQ(engine.value(metric), -240.0);
    }
}

TEST(SPLMetricEngine, aPeakIsHeldForTheLastSecond) {
    SPLMetricEngine engine(sampleRate, {});
    auto block = constant(0.0F, 1000);
    block[700] = -1.0F;
    engine.processBlock(block);
    block[700] = 0.0F;
    for (int i = 1; i < 47; ++i) {
        engine.processBlock(block);
        EXPECT_EQ(engine.value(SPLMetric::peak(Weighting::z)), 0.0);
    }
    engine.processBlock(block);
    engine.processBlock(block);
    EXPECT_EQ(engine.value(SPLMetric::peak(Weighting::z)), -240.0);
}

TEST(SPLMetricEngine, valuesAreInOrderAndEqualToTheSingleOnes) {
    SPLMetricEngine engine(sampleRate, {});
    engine.configureLeq("user", Weighting::c, 60.0);
    engine.processBlock(sine(200.0, 0.05));
    const auto metrics = allMetrics();
    const auto values = engine.values(metrics);
    std::vector<double> intoSpan(metrics.size());
    engine.values(metrics, intoSpan);
    ASSERT_EQ(values.size(), metrics.size());
    for (std::size_t i = 0; i < metrics.size(); ++i) {
        EXPECT_EQ(values[i], engine.value(metrics[i]));
        EXPECT_EQ(intoSpan[i], values[i]);
    }
    EXPECT_TRUE(engine.values(std::vector<SPLMetric>{}).empty());
}

TEST(SPLMetricEngine, powersAreThoseOfTheValues) {
    SPLMetricEngine engine(sampleRate, {});
    engine.configureLeq("user", Weighting::c, 60.0);
    const auto metrics = allMetrics();
    std::vector<double> powers(metrics.size());
    const auto expectThoseOfTheValues = [&] {
        engine.powers(metrics, powers);
        for (std::size_t i = 0; i < metrics.size(); ++i) {
            EXPECT_NEAR(10.0 * std::log10(powers[i]), engine.value(metrics[i]), 1e-9);
        }
    };
    engine.powers(metrics, powers);
    EXPECT_EQ(std::ranges::count(powers, 0.0), 1) << "no audio, no Leq";
    EXPECT_EQ(std::ranges::count(powers, 1e-24), static_cast<std::ptrdiff_t>(metrics.size()) - 1);
    engine.processBlock(constant(0.0F, 100));
    expectThoseOfTheValues();
    engine.processBlock(sine(200.0, 0.05));
    expectThoseOfTheValues();
    engine.powers(
        std::array{SPLMetric::leq("unknown"), SPLMetric::loudness(LoudnessMetric::momentary)},
        std::span(powers).first(2));
    EXPECT_EQ(powers[0], 0.0);
    EXPECT_EQ(powers[1], 0.0);
}

TEST(SPLMetricEngine, aBlockAllocatesNothing) {
    SPLMetricEngine engine(sampleRate, {});
    engine.configureLeq("user", Weighting::a, 60.0);
    const auto metrics = allMetrics();
    std::vector<double> values(metrics.size());
    const auto samples = sine(1000.0, 0.5);
    const auto before = TarvaneTests::RealtimeGuard::counts().allocations;
    {
        const RealtimeScope scope;
        for (const std::size_t length : {1U, 7U, 235U, 236U, 256U, 1000U, 8192U}) {
            engine.processBlock(std::span(samples).first(length));
            engine.values(metrics, values);
        }
    }
    EXPECT_EQ(TarvaneTests::RealtimeGuard::counts().allocations, before);
    std::vector<double> returned;
    {
        const RealtimeScope scope;
        returned = engine.values(metrics);
    }
    EXPECT_EQ(returned, values);
    EXPECT_GT(TarvaneTests::RealtimeGuard::counts().allocations, before)
        << "the count itself works";
}

// A square wave reads its amplitude as level and as peak. With amplitudes that only grow, the two
// agree at every instant at which no block is half applied.
TEST(SPLMetricEngine, readersSeeWholeBlocksWhileBlocksArrive) {
    SPLMetricEngine engine(sampleRate, {});
    engine.configureLeq("user", Weighting::a, 1.0);
    std::atomic<bool> done = false;
    std::thread capture([&] {
        for (int i = 1; i <= 2000; ++i) {
            engine.processBlock(constant(static_cast<float>(i) / 2000.0F, 64 + i % 300));
        }
        done = true;
    });
    const std::vector<SPLMetric> metrics{zNone, SPLMetric::peak(Weighting::z)};
    std::thread analysis([&] {
        while (!done) {
            engine.leqProgress("user");
            engine.resetLeq("user");
            engine.configureLeq("user", Weighting::c, 2.0);
            engine.value(user);
        }
    });
    int readings = 0;
    do {
        const auto values = engine.values(metrics);
        EXPECT_NEAR(values[0], values[1], 1e-9);
        ++readings;
    } while (!done);
    capture.join();
    analysis.join();
    EXPECT_GT(readings, 0);
}

TEST(SPLMetricEngine, everyOperationMayMeetABlock) {
    SPLMetricEngine engine(sampleRate, {});
    std::atomic<bool> done = false;
    std::thread capture([&] {
        for (int i = 0; i < 500; ++i) {
            engine.processBlock(constant(0.5F, 256));
        }
        done = true;
    });
    std::thread control([&] {
        for (int i = 0; !done; ++i) {
            engine.setCalibration(calibrationWithOffsetDB(i % 2 == 0 ? 0.0 : 94.0));
            engine.configureLeq("other", Weighting::z, 1.0);
            engine.resetAllDetectors();
            engine.resetPeakDetectors();
        }
    });
    do {
        const double offsetDB = engine.calibration().broadbandOffsetDB();
        EXPECT_TRUE(offsetDB == 0.0 || offsetDB == 94.0);
        for (const double value : engine.values(allMetrics())) {
            EXPECT_LE(value, 94.0 + 3.0);
        }
    } while (!done);
    capture.join();
    control.join();
    // With the controls at rest the last block alone tells the level.
    engine.setCalibration(calibrationWithOffsetDB(94.0));
    engine.processBlock(constant(0.5F, 256));
    EXPECT_NEAR(engine.value(zNone), 94.0 + 20.0 * std::log10(0.5), 1e-9);
}

// Engines are made on several threads when all devices open at once.
TEST(SPLMetricEngine, enginesAreMadeOnSeveralThreads) {
    std::vector<std::thread> threads;
    std::vector<double> values(8);
    for (std::size_t i = 0; i < values.size(); ++i) {
        threads.emplace_back([&values, i] {
            SPLMetricEngine engine(i % 2 == 0 ? 44100.0 : 96000.0, {});
            engine.processBlock(constant(1.0F, 1000));
            values[i] = engine.value(SPLMetric::spl(Weighting::a, TimeWeighting::none));
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    for (std::size_t i = 2; i < values.size(); ++i) {
        EXPECT_EQ(values[i], values[i % 2]);
    }
}

TEST(SPLMetricEngineDeathTest, aSampleRateIsPositive) {
    EXPECT_DEATH(SPLMetricEngine(0.0, {}), "sampleRate");
}

TEST(SPLMetricEngineTests, loudnessIsNotItsReading) {
    SPLMetricEngine engine(48000.0, CalibrationProfile{});
    engine.processBlock(std::vector<float>(48000, 0.1F));
    for (const LoudnessMetric metric : allCases<LoudnessMetric>()) {
        EXPECT_EQ(engine.value(SPLMetric::loudness(metric)),
                  -std::numeric_limits<double>::infinity());
    }
}

}  // namespace SPLMetricEngineTests
}  // namespace TarvaneKit
