// The whole text of ten sessions, as it stands in Tests/Golden. What the numbers must be is said
// beside each: a golden that is written anew has to say the same.
#include <gmock/gmock.h>

#include <QFile>

#include "Reports/LevelHistoryReport.h"
#include "Support/GoldenText.h"
#include "TarvaneApp/Reports/ReportFixture.h"

namespace TarvaneApp {
namespace LevelHistoryReportGoldenTests {

using TarvaneTests::silence;
using TarvaneTests::sine;
using TarvaneTests::GoldenText::matches;

class LevelHistoryReportGoldenTests : public TarvaneTests::ReportFixture {
  protected:
    QString text(const TarvaneKit::UUID& id = TarvaneKit::UUID::main()) {
        const auto report = make(id);
        return report ? report->plainText() : QStringLiteral("no report\n");
    }
    // The same to a device of eight inputs: two of them at their own peak levels, which are the
    // sides of the channel.
    void playPair(const ChannelConfig& channel, double seconds, double left, double right) {
        std::vector<std::vector<float>> block(8, std::vector<float>(4800));
        block[0] = sine(1000.0, std::pow(10.0, left / 20.0), 4800);
        block[1] = sine(1000.0, std::pow(10.0, right / 20.0), 4800);
        for (int n = 0; n < std::lround(seconds * 10.0); ++n) {
            clock.advance(0.1);
            audio.feed("desk", block);
            tick(channel.id);
        }
    }
};

// A sine reads 3.01 dB under its peak level, in all weightings: -23.0.
TEST_F(LevelHistoryReportGoldenTests, running) {
    start();
    play(75.0, -20.0);
    EXPECT_TRUE(matches("report-running", text()));
}

// Ten seconds at -33.0, thirty of pause, ten at -23.0: the Leq is of the twenty that were measured,
// 10 lg((1 + 0.1) / 2) - 23.0 = -25.6, and the loudest moment is behind the pause by the clock too.
TEST_F(LevelHistoryReportGoldenTests, paused) {
    start();
    play(10.0, -30.0);
    engine->pause();
    clock.advance(30.0);
    engine->resume();
    play(10.0, -20.0);
    engine->stop();
    EXPECT_TRUE(matches("report-paused", text()));
}

// From 23:59:30 on; the louder minute begins at 00:00:00, thirty seconds in.
TEST_F(LevelHistoryReportGoldenTests, midnight) {
    clock.advance(2.0 * 3600.0 + 29.5 * 60.0);
    start();
    play(30.0, -40.0);
    play(60.0, -20.0);
    engine->stop();
    EXPECT_TRUE(matches("report-midnight", text()));
}

// An offset of 117 dB: 94.0 for five seconds and 104.0 for five more. Over 100 dB is the half that
// is louder, and the tenth of a second in which Fast still falls or rises.
TEST_F(LevelHistoryReportGoldenTests, calibrated) {
    calibrate(117.0);
    start();
    play(5.0, -20.0);
    play(5.0, -10.0);
    engine->stop();
    EXPECT_TRUE(matches("report-calibrated", text()));
}

// The same session in dBFS: all levels 117 dB less, and the thresholds of that scale.
TEST_F(LevelHistoryReportGoldenTests, calibratedInDBFS) {
    calibrate(117.0);
    engine->splReadoutShowsDBFS.set(true);
    start();
    play(5.0, -20.0);
    play(5.0, -10.0);
    engine->stop();
    EXPECT_TRUE(matches("report-dbfs", text()));
}

// BS.1770-4: a 1 kHz sine in one channel reads its RMS, -23.0 LUFS, which is on EBU R128's target.
// Ten seconds are 12 LU softer, below the relative gate of -10 LU: Integrated leaves them out, and
// they are the Loudness Range.
TEST_F(LevelHistoryReportGoldenTests, loudness) {
    engine->mainInputMeasuresLoudness.set(true);
    start();
    play(30.0, -20.0);
    play(10.0, -32.0);
    engine->stop();
    EXPECT_TRUE(matches("report-loudness", text()));
}

// The mean of the two sides' energies: 10 lg((1 + 0.1) / 2) - 23.0 = -25.6.
TEST_F(LevelHistoryReportGoldenTests, stereo) {
    const ChannelConfig pair = addChannel("Desk L+R", "desk", 0, 1);
    start();
    playPair(pair, 10.0, -20.0, -30.0);
    engine->stop();
    EXPECT_TRUE(matches("report-stereo", text(pair.id)));
}

// Each of eight hours 4 dB louder than the one before, from 70 dB on, at ten levels a second. At
// the full eighth hour the points have merged for the second time. A tenth of the time is the last
// hour's 98 dB, the upper half begins with the fifth hour's 86. The Leq is the last that was
// written.
TEST_F(LevelHistoryReportGoldenTests, eightHours) {
    calibrate(117.0);
    start();
    auto& history = TarvaneTests::EngineInsides::levelHistory(*engine, TarvaneKit::UUID::main());
    const std::size_t metricCount = history.metrics().size();
    constexpr int perHour = 36000;
    for (int n = 0; n <= 8 * perHour; ++n) {
        const int hour = std::min(n / perHour, 7);
        history.record(std::vector<double>(metricCount, 70.0 + 4.0 * hour), n / 10.0);
    }
    clock.advance(8.0 * 3600.0);
    engine->stop();
    EXPECT_TRUE(matches("report-eight-hours", text()));
}

// Metered, and nothing there above the noise of a cable: no level, and no time of one.
TEST_F(LevelHistoryReportGoldenTests, nothingRecorded) {
    EXPECT_EQ(text(), QStringLiteral("no report\n"));
    start();
    EXPECT_EQ(text(), QStringLiteral("no report\n"));
    play(5.0, silence);
    engine->stop();
    EXPECT_TRUE(matches("report-nothing-recorded", text()));
}

// The name stays as it is in the report; only a file can't have it.
TEST_F(LevelHistoryReportGoldenTests, nameWithASlash) {
    const ChannelConfig stage = addChannel("Bühne 1/2 · L/R", "mic", 0);
    start();
    for (int n = 0; n < 50; ++n) {
        clock.advance(0.1);
        audio.feed("mic", {sine(1000.0, 0.1, 4800)});
        tick(stage.id);
    }
    engine->stop();
    EXPECT_TRUE(matches("report-name-with-a-slash", text(stage.id)));
    EXPECT_EQ(LevelHistoryReport::suggestedFileName({*make(stage.id)}, clock.now()),
              QStringLiteral("Level History Bühne 1-2 · L-R 2026-03-01 2130"));
}

}  // namespace LevelHistoryReportGoldenTests
}  // namespace TarvaneApp
