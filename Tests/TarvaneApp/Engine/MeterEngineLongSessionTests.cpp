// A whole day of metering, and an analysis that doesn't keep up: what the meters read at the end
// is what the signal was.

#include <malloc.h>

#include "Support/Sanitized.h"
#include "TarvaneApp/Engine/EngineFixture.h"

namespace TarvaneApp {
namespace MeterEngineLongSessionTests {

using TarvaneKit::SPLMetric;
using TarvaneKit::TimeWeighting;
using TarvaneKit::UUID;
using TarvaneKit::Weighting;
using TarvaneTests::sine;

// A sanitized build takes ten times as long for the same, and learns no more from a day.
#ifdef TARVANE_SANITIZED
constexpr int hours = 2;
constexpr int secondsPerHour = 240;
#else
constexpr int hours = 24;
constexpr int secondsPerHour = 3600;
#endif

class MeterEngineLongSessionTests : public TarvaneTests::EngineFixture {
  protected:
    double value(const SPLMetric& metric) { return processorOf()->value(metric); }
};

TEST_F(MeterEngineLongSessionTests, aDaysLevelsAreRightAtItsEndAndItsMemoryIsBounded) {
    engine->mainInputMeasuresLoudness.set(true);
    engine->configureLeq(Weighting::z, 7200.0);
    start();
    // One hour at -20 dBFS, one at -26, in turn.
    const std::vector<std::vector<float>> loud{sine(1000.0, 0.1, 48000)};
    const std::vector<std::vector<float>> soft{sine(1000.0, 0.05, 48000)};
    std::size_t bytesAfterAnHour = 0;
    for (int second = 0; second < hours * secondsPerHour; ++second) {
        audio.feed("", second / secondsPerHour % 2 == 0 ? loud : soft);
        clock.advance(1.0);
        tick();
        if (second == secondsPerHour) {
            bytesAfterAnHour = mallinfo2().uordblks;
        }
    }
    EXPECT_LT(mallinfo2().uordblks, bytesAfterAnHour + (1U << 20U));

    // Half the energy at 0.1, half at 0.05.
    const double meanDB = 10.0 * std::log10((0.01 + 0.0025) / 2.0 / 2.0);
    EXPECT_NEAR(value(SPLMetric::leq("user")), meanDB, 0.001);
    // BS.1770-4: a 1 kHz sine reads its RMS level and -0.691 dB plus the K-weighting's 0.70 dB
    // there; 6 dB apart, no hour is gated.
    EXPECT_NEAR(live().loudness->integrated, meanDB, 0.03);
    EXPECT_NEAR(live().loudness->truePeakMax, -20.0, 0.1);

    auto& history = engine->meterChannel(UUID::main()).levelHistory();
    const int metric = *history.index(SPLMetric::spl(Weighting::z, TimeWeighting::slow));
    EXPECT_NEAR(history.duration(), hours * secondsPerHour, 1e-3);
    EXPECT_NEAR(history.extremes(metric).max->levelDB, -23.01, 0.01);
    // One tick a second fills one bucket of it; after a step the Slow detector takes one to follow.
    EXPECT_NEAR(history.secondsAtOrAbove(metric, -24.0) / history.recordedSeconds(metric), 0.5,
                1.0 / secondsPerHour);
    EXPECT_NEAR(*history.exceedanceLevel(metric, 90.0), -29.03, 0.01);
}

TEST_F(MeterEngineLongSessionTests, anAnalysisThatStallsCostsTheMetersNothing) {
    engine->mainInputMeasuresLoudness.set(true);
    engine->configureLeq(Weighting::a, 60.0);
    engine->addDemand(ChannelDemand::rta, UUID::main());
    start();
    audio.feed("", {sine(1000.0, 0.1, 9600)});
    tick();
    // Ten seconds in which no tick comes through, with a clip and a soft half in them.
    for (int i = 0; i < 100; ++i) {
        auto block = sine(1000.0, i < 50 ? 0.2 : 0.02, 4800, 4800 * i);
        block[100] = i == 30 ? 1.0F : block[100];
        audio.feed("", {block});
    }
    clock.advance(10.0);
    tick();
    EXPECT_EQ(live().inputClipState, TarvaneKit::InputClipState::active);
    EXPECT_NEAR(live().inputPeakDBFS, 0.0, 1e-6);
    // 0.2 s at 0.1, 5 s at 0.2, 5 s at 0.02; the one clipped sample adds its part.
    const double energy = 0.2 * 0.01 / 2.0 + 5.0 * 0.04 / 2.0 + 5.0 * 0.0004 / 2.0;
    EXPECT_NEAR(value(SPLMetric::leq("user")), 10.0 * std::log10(energy / 10.2), 0.02);
    // The soft half lies 20 LU down: the relative gate leaves it out, but for the blocks at its
    // borders.
    EXPECT_NEAR(live().loudness->integrated, -17.0, 0.3);
    EXPECT_NEAR(live().lineSpectrumDB.at(85), 20.0 * std::log10(0.02), 1.5);
}

}  // namespace MeterEngineLongSessionTests
}  // namespace TarvaneApp
