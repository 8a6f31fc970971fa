// The engine against the plain reading of its formulas, on every instruction set.
//
// Both compute in 64-bit floats in another order, so they differ by rounding: a relative 1e-10
// of a mean square is 4e-10 dB. The bound is 1e-9 dB for every reading, at every sample rate.
// A reading far below the signal, which is a block of one sample near a zero crossing, also has
// the rounding of the samples around it, 1e-14 of the peak: 1e-9 dB at 80 dB below the peak.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <numbers>
#include <random>
#include <string>
#include <vector>

#include "Metrics/SPLMetricEngine.h"
#include "Support/EachVectorTarget.h"
#include "Support/SPLReadings.h"
#include "Support/ScalarSPLMeter.h"

namespace TarvaneKit {
namespace SPLMetricEngineAccuracyTests {

using Testing::calibrationWithOffsetDB;
using Testing::ScalarSPLMeter;

constexpr double toleranceDB = 1e-9;
constexpr double sampleRates[] = {44100, 48000, 88200, 96000, 176400, 192000, 384000};

double boundDB(double levelDB, double peakDB) {
    constexpr double dBPerUnit = 20.0 / std::numbers::ln10;
    return toleranceDB + dBPerUnit * 1e-14 * std::pow(10.0, (peakDB - levelDB) / 20.0);
}

struct Pair {
    explicit Pair(double sampleRate) : engine(sampleRate, {}), scalar(sampleRate) {
        for (const Weighting weighting : allCases<Weighting>()) {
            engine.configureLeq(std::string(rawValue(weighting)), weighting, 60.0);
            scalar.addLeq(weighting);
        }
    }

    void setOffsetDB(double offsetDB) {
        engine.setCalibration(calibrationWithOffsetDB(offsetDB));
        scalar.setOffsetDB(offsetDB);
    }

    void process(std::span<const float> samples) {
        engine.processBlock(samples);
        scalar.processBlock(samples);
    }

    void expectEqualReadings(const std::string& where) const {
        SCOPED_TRACE(where);
        int leq = 0;
        for (const Weighting w : allCases<Weighting>()) {
            const std::string name(rawValue(w));
            for (const TimeWeighting t : allCases<TimeWeighting>()) {
                const double levelDB = scalar.levelDB(w, t);
                EXPECT_NEAR(engine.value(SPLMetric::spl(w, t)), levelDB,
                            boundDB(levelDB, scalar.peakDB(w)))
                    << name << "-" << rawValue(t);
            }
            EXPECT_NEAR(engine.value(SPLMetric::peak(w)), scalar.peakDB(w), toleranceDB)
                << name << " peak";
            EXPECT_NEAR(engine.value(SPLMetric::leq(name)), scalar.leqDB(leq), toleranceDB)
                << name << " Leq";
            ++leq;
        }
    }

    SPLMetricEngine engine;
    ScalarSPLMeter scalar;
};

using Signal = std::function<float(int)>;

// Blocks of random lengths up to `longestBlock`, the readings compared after each of the first
// blocks and then now and then.
void expectEqualOver(double sampleRate, const Signal& signal, int length, int longestBlock,
                     const std::string& name) {
    Pair pair(sampleRate);
    std::mt19937 random(static_cast<unsigned>(longestBlock));
    std::uniform_int_distribution<int> blockLength(1, longestBlock);
    std::vector<float> block;
    int blocks = 0;
    for (int position = 0; position < length;) {
        block.resize(static_cast<std::size_t>(std::min(blockLength(random), length - position)));
        for (float& sample : block) {
            sample = signal(position++);
        }
        pair.process(block);
        if (++blocks <= 20 || blocks % 7 == 0 || position == length) {
            pair.expectEqualReadings(name + " at " + std::to_string(sampleRate) + " Hz, sample " +
                                     std::to_string(position));
        }
        if (testing::Test::HasFailure()) {
            return;
        }
    }
}

Signal noise(double amplitude, double offset = 0.0) {
    return [random = std::mt19937(7), amplitude, offset](int) mutable {
        std::uniform_real_distribution<double> sample(-1.0, 1.0);
        return static_cast<float>(offset + amplitude * sample(random));
    };
}

Signal sine(double frequencyHz, double amplitude, double sampleRate) {
    return [=](int i) {
        return static_cast<float>(amplitude *
                                  std::sin(2.0 * std::numbers::pi * frequencyHz * i / sampleRate));
    };
}

class SPLMetricEngineAccuracy : public Testing::EachVectorTarget {};

TEST_P(SPLMetricEngineAccuracy, equalsTheFormulasOnNoiseInRandomBlocks) {
    for (const double sampleRate : sampleRates) {
        for (const int longestBlock : {1, 17, 70, 300, 1100, 8192}) {
            expectEqualOver(sampleRate, noise(0.5), longestBlock == 1 ? 2000 : 60000, longestBlock,
                            "noise, blocks up to " + std::to_string(longestBlock));
        }
    }
}

TEST_P(SPLMetricEngineAccuracy, equalsTheFormulasOnTonesFromTheBottomToTheTopOfTheBand) {
    for (const double sampleRate : sampleRates) {
        for (const double frequencyHz : {10.0, 31.5, 1000.0, 20000.0}) {
            expectEqualOver(sampleRate, sine(frequencyHz, 0.9, sampleRate), 60000, 600,
                            std::to_string(frequencyHz) + " Hz");
        }
    }
}

TEST_P(SPLMetricEngineAccuracy, equalsTheFormulasAtFullScaleAndFarBelow) {
    for (const double sampleRate : sampleRates) {
        expectEqualOver(
            sampleRate, [](int i) { return i / 50 % 2 == 0 ? 1.0F : -1.0F; }, 40000, 512,
            "full-scale square");
        expectEqualOver(sampleRate, noise(1e-7), 40000, 512, "noise at -140 dB");
        expectEqualOver(sampleRate, noise(0.01, 0.9), 40000, 512, "noise on an offset of 0.9");
        expectEqualOver(
            sampleRate, [](int i) { return i % 9973 == 100 ? 1.0F : 0.0F; }, 40000, 512,
            "impulses");
    }
}

TEST_P(SPLMetricEngineAccuracy, equalsTheFormulasOnSilenceAndOnTheWayIntoIt) {
    for (const double sampleRate : sampleRates) {
        expectEqualOver(
            sampleRate, [](int) { return 0.0F; }, 20000, 512, "silence");
        auto burst = noise(1.0);
        expectEqualOver(
            sampleRate, [&](int i) { return i < 5000 ? burst(i) : 0.0F; }, 60000, 512,
            "silence after noise");
    }
}

// Samples of 1e-40, lifted into sight by a calibration.
TEST_P(SPLMetricEngineAccuracy, equalsTheFormulasOnDenormalSamples) {
    Pair pair(48000.0);
    pair.setOffsetDB(760.0);
    auto signal = noise(1e-40);
    std::vector<float> block(512);
    for (int i = 0; i < 40; ++i) {
        std::ranges::generate(block, [&] { return signal(0); });
        ASSERT_TRUE(
            std::ranges::any_of(block, [](float x) { return std::fpclassify(x) == FP_SUBNORMAL; }));
        pair.process(block);
        pair.expectEqualReadings("block " + std::to_string(i));
    }
    EXPECT_GT(pair.engine.value(SPLMetric::spl(Weighting::z, TimeWeighting::none)), -100.0);
}

// The filters' states stay in the units of the gain under which they came about.
TEST_P(SPLMetricEngineAccuracy, equalsTheFormulasAcrossChangesOfCalibration) {
    for (const double sampleRate : sampleRates) {
        Pair pair(sampleRate);
        auto signal = noise(0.3, 0.2);
        std::mt19937 random(3);
        std::uniform_int_distribution<int> blockLength(1, 700);
        std::uniform_real_distribution<double> offsetDB(-60.0, 140.0);
        std::vector<float> block;
        for (int i = 0; i < 60; ++i) {
            if (i % 3 == 0) {
                pair.setOffsetDB(offsetDB(random));
            }
            block.resize(static_cast<std::size_t>(blockLength(random)));
            std::ranges::generate(block, [&] { return signal(0); });
            pair.process(block);
            pair.expectEqualReadings(std::to_string(sampleRate) + " Hz, block " +
                                     std::to_string(i));
        }
    }
}

TARVANE_ON_EACH_VECTOR_TARGET(SPLMetricEngineAccuracy);

}  // namespace SPLMetricEngineAccuracyTests
}  // namespace TarvaneKit
