#include "Reports/LevelHistoryReport.h"

#include <gmock/gmock.h>

#include "TarvaneApp/Reports/ReportFixture.h"

namespace TarvaneApp {
namespace LevelHistoryReportTests {

using TarvaneKit::TimeWeighting;
using TarvaneKit::TrafficLightBand;
using TarvaneKit::TrafficLightConfig;
using TarvaneKit::UUID;
using TarvaneKit::Weighting;
using TarvaneTests::silence;
using testing::HasSubstr;
using testing::IsEmpty;

class LevelHistoryReportTests : public TarvaneTests::ReportFixture {
  protected:
    // Behind the time in which a minimum and the exceeded levels don't count yet.
    static constexpr double settled = 4.0;
};

TEST_F(LevelHistoryReportTests, aSessionOfOneEveningReadsAsThis) {
    start();
    play(5.5, -40.0);
    play(1.0, -20.0);
    play(83.5, -40.0);
    engine->stop();
    // Of 90 s the Fast level is at or over -23 for none, and the energy is that of one loud second:
    // 10 log10((0.01 + 89 * 0.0001) / 2 / 90) = -39.8.
    EXPECT_EQ(make()->plainText(),
              QStringLiteral(
                  "Main Input · Level History · SPL A Fast\n"
                  "Exported 2026-03-01 21:31:30 · Tarvane 7.8.9\n"
                  "\n"
                  "SESSION\n"
                  "  Session           2026-03-01 21:30:00 – 21:31:30 (1:30)\n"
                  "  Input             Default Input\n"
                  "  Calibration       None (uncalibrated, levels in dBFS)\n"
                  "  Levels            dBFS\n"
                  "  Resolution        0.1 s per history point\n"
                  "\n"
                  "LEVELS\n"
                  "  Session Leq       LAeq -39.8 dBFS · LCeq -39.8 dBFS · LZeq -39.8 dBFS\n"
                  "  Max (SPL A Fast)  -23.0 dBFS at 0:06 (21:30:06)\n"
                  "  Min (SPL A Fast)  -43.0 dBFS at 0:03 (21:30:03)\n"
                  "\n"
                  "STATISTICS · SPL A FAST\n"
                  "  L10 / L50 / L90   -43.0 / -43.0 / -43.0 dBFS\n"
                  "  Time ≥ -3 dBFS    0:00 (0.0 %)\n"
                  "  Time ≥ -12 dBFS   0:00 (0.0 %)\n"
                  "\n"
                  "L10/L50/L90 are approximate (from history points, skipping the first 3 s while "
                  "the detectors settle). Leq excludes paused time.\n"));
}

TEST_F(LevelHistoryReportTests, aRunningSessionSaysSo) {
    start();
    play(75.0, -20.0);
    EXPECT_EQ(row("Session"), QStringLiteral("2026-03-01 21:30:00 – 21:31:15 (1:15, still "
                                             "recording)"));
}

TEST_F(LevelHistoryReportTests, aSessionAcrossMidnightEndsWithItsDate) {
    clock.advance(2.0 * 3600.0 + 29.0 * 60.0);
    start();
    play(70.0, -20.0);
    engine->stop();
    EXPECT_EQ(row("Session"), QStringLiteral("2026-03-01 23:59:00 – 2026-03-02 00:00:10 (1:10)"));
}

TEST_F(LevelHistoryReportTests, fromAnHourOnDurationsHaveHours) {
    start();
    play(5.0, -20.0);
    engine->pause();
    clock.advance(3720.0 - 0.1);
    engine->resume();
    play(0.1, -20.0);
    engine->stop();
    EXPECT_EQ(row("Session"), QStringLiteral("2026-03-01 21:30:00 – 22:32:05 (1:02:05)"));
    EXPECT_EQ(row("Paused"), QStringLiteral("1:01:59"));
}

TEST_F(LevelHistoryReportTests, aPauseIsToldFromASecondOn) {
    start();
    play(4.0, -20.0);
    engine->pause();
    clock.advance(0.9);
    engine->resume();
    play(4.0, -20.0);
    EXPECT_EQ(row("Paused"), QStringLiteral("no row"));
    engine->pause();
    clock.advance(1.0);
    engine->resume();
    play(4.0, -20.0);
    EXPECT_EQ(row("Paused"), QStringLiteral("0:01"));
}

TEST_F(LevelHistoryReportTests, silenceIsNoPause) {
    start();
    play(2.0, -20.0);
    play(6.0, silence);
    EXPECT_EQ(row("Paused"), QStringLiteral("no row"));
}

TEST_F(LevelHistoryReportTests, lostAudioIsTold) {
    start();
    play(4.0, -20.0);
    EXPECT_EQ(row("Lost audio"), QStringLiteral("no row"));
    live().lostAudio = {{.elapsed = 1.0, .seconds = 0.25, .count = 1}};
    EXPECT_EQ(row("Lost audio"), QStringLiteral("1 gap, 0.25 s"));
    live().lostAudio.push_back({.elapsed = 2.0, .seconds = 1.5, .count = 3});
    EXPECT_EQ(row("Lost audio"), QStringLiteral("4 gaps, 1.75 s"));
}

TEST_F(LevelHistoryReportTests, aCalibratedChannelReportsSoundPressure) {
    calibrate(117.0);
    start();
    play(settled, -20.0);
    play(settled, -10.0);
    EXPECT_EQ(row("Calibration"), QStringLiteral("Reference tone, offset +117.0 dB"));
    EXPECT_EQ(row("Levels"), QStringLiteral("dB SPL"));
    EXPECT_THAT(row("Max (SPL A Fast)").toStdString(), HasSubstr("104.0 dB at 0:0"));
    // The soft half reads 117 - 23, the loud one 117 - 13; a point counts as its largest level.
    EXPECT_EQ(row("Time ≥ 85 dB"), QStringLiteral("0:08 (100.0 %)"));
    EXPECT_THAT(row("Time ≥ 100 dB").toStdString(), testing::StartsWith("0:04 (5"));
}

TEST_F(LevelHistoryReportTests, aCalibratedChannelInDBFSReportsThoseAgainstTheirThresholds) {
    calibrate(117.0);
    engine->splReadoutShowsDBFS.set(true);
    start();
    play(2.0 * settled, -2.0);
    EXPECT_EQ(row("Levels"), QStringLiteral("dBFS"));
    EXPECT_THAT(row("Max (SPL A Fast)").toStdString(), HasSubstr("-5.0 dBFS at "));
    EXPECT_EQ(row("Session Leq"),
              QStringLiteral("LAeq -5.0 dBFS · LCeq -5.0 dBFS · LZeq -5.0 dBFS"));
    EXPECT_EQ(row("L10 / L50 / L90"), QStringLiteral("-5.0 / -5.0 / -5.0 dBFS"));
    EXPECT_EQ(row("Time ≥ -3 dBFS"), QStringLiteral("0:00 (0.0 %)"));
    EXPECT_THAT(row("Time ≥ -12 dBFS").toStdString(), testing::StartsWith("0:0"));
    EXPECT_EQ(row("Time ≥ -6 dBFS"), QStringLiteral("no row"));
}

TEST_F(LevelHistoryReportTests, aSensFactorIsNamed) {
    TarvaneKit::CalibrationProfile profile;
    profile.micCalFile.emplace();
    profile.micCalFile->sensFactorDB = -18.5;
    engine->calibration.set(profile);
    start();
    play(settled, -20.0);
    EXPECT_EQ(row("Calibration"),
              QStringLiteral("Mic cal file Sens Factor, offset %1 dB")
                  .arg(QString::asprintf("%+.1f", profile.broadbandOffsetDB())));
}

TEST_F(LevelHistoryReportTests, aThresholdIsWrittenAsShortAsItCan) {
    engine->trafficLightConfigDBFS.set(TrafficLightConfig::create(
        "Own", {TrafficLightBand{-22.5, {}}, TrafficLightBand{-40.0, {}}}, {}));
    start();
    play(settled, -20.0);
    EXPECT_EQ(row("Time ≥ -22.5 dBFS"), QStringLiteral("0:00 (0.0 %)"));
    EXPECT_EQ(row("Time ≥ -40 dBFS"), QStringLiteral("0:04 (100.0 %)"));
}

TEST_F(LevelHistoryReportTests, aLoudnessChannelReportsItsProgramme) {
    engine->mainInputMeasuresLoudness.set(true);
    start();
    play(20.0, -20.0);
    engine->stop();
    const auto report = make();
    EXPECT_EQ(report->title, QStringLiteral("Main Input · Level History · Short-Term"));
    EXPECT_EQ(row("Calibration"), QStringLiteral("no row"));
    EXPECT_EQ(row("Session Leq"), QStringLiteral("no row"));
    EXPECT_EQ(row("Levels"), QStringLiteral("LUFS (ITU-R BS.1770 / EBU R128), target ") +
                                 QString::fromStdString(engine->loudnessTarget().name));
    // BS.1770-4: a 1 kHz sine in one channel reads its RMS level.
    EXPECT_EQ(row("Integrated"), QStringLiteral("-23.0 LUFS"));
    EXPECT_THAT(row("Max (Short-Term)").toStdString(), HasSubstr("-23.0 LUFS at "));
    EXPECT_EQ(report->sections.back().title, QStringLiteral("Statistics · Short-Term"));
    // A short-term loudness begins once three seconds are there, which is no pause.
    EXPECT_EQ(row("Paused"), QStringLiteral("no row"));
    const LoudnessTarget& target = engine->loudnessTarget();
    EXPECT_NE(row(QStringLiteral("Time ≥ %1 LUFS").arg(target.targetLUFS + target.toleranceLU)),
              QStringLiteral("no row"));
    EXPECT_NE(row(QStringLiteral("Time ≥ %1 LUFS").arg(target.targetLUFS - target.toleranceLU)),
              QStringLiteral("no row"));
}

TEST_F(LevelHistoryReportTests, aLoudnessThatIsNotThereIsADash) {
    engine->mainInputMeasuresLoudness.set(true);
    start();
    play(4.0, silence);
    EXPECT_EQ(row("Integrated"), QStringLiteral("—"));
    EXPECT_EQ(row("Loudness Range"), QStringLiteral("—"));
    EXPECT_EQ(row("True Peak Max"), QStringLiteral("—"));
    EXPECT_EQ(row("Max (Short-Term)"), QStringLiteral("—"));
    EXPECT_EQ(row("L10 / L50 / L90"), QStringLiteral("— / — / — LUFS"));
}

TEST_F(LevelHistoryReportTests, aLostChannelKeepsItsLoudness) {
    engine->mainInputMeasuresLoudness.set(true);
    start();
    play(10.0, -20.0);
    audio.lose("", TarvaneKit::AudioSourceLoss::deviceRemoved);
    waitUntil([this] { return !engine->isRunning(); });
    EXPECT_EQ(row("Integrated"), QStringLiteral("-23.0 LUFS"));
    EXPECT_EQ(row("Session"), QStringLiteral("2026-03-01 21:30:00 – 21:30:10 (0:10)"));
}

TEST_F(LevelHistoryReportTests, inSilenceThereIsNoLeqAndNothingIsRecorded) {
    start();
    play(5.0, silence);
    EXPECT_EQ(row("Session Leq"), QStringLiteral("no row"));
    EXPECT_EQ(row("Max (SPL A Fast)"), QStringLiteral("—"));
    EXPECT_EQ(row("Min (SPL A Fast)"), QStringLiteral("—"));
    EXPECT_EQ(row("Time ≥ -3 dBFS"), QStringLiteral("0:00 (0.0 %)"));
}

TEST_F(LevelHistoryReportTests, aLeqThatIsNotThereIsMissingFromItsRow) {
    start();
    auto& history = TarvaneTests::EngineInsides::levelHistory(*engine, UUID::main());
    std::vector<double> levels(history.metrics().size(), -30.0);
    levels[static_cast<std::size_t>(*history.index(
        TarvaneKit::SPLMetric::spl(Weighting::c, TimeWeighting::infinite)))] = silence;
    history.record(levels, 1.0);
    EXPECT_EQ(row("Session Leq"), QStringLiteral("LAeq -30.0 dBFS · LZeq -30.0 dBFS"));
}

TEST_F(LevelHistoryReportTests, anInputThatNobodyNamedIsUnknown) {
    start();
    play(1.0, -20.0);
    TarvaneTests::EngineInsides::channel(*engine, UUID::main())
        .levelHistoryInputDescription.reset();
    EXPECT_EQ(row("Input"), QStringLiteral("Unknown"));
}

// Its clock of elapsed time counts on, and nobody pressed Pause.
TEST_F(LevelHistoryReportTests, aMachineThatSleptHasAGapAndItsTimesAreRight) {
    start();
    play(5.0, -30.0);
    clock.advance(3600.0);
    play(5.0, -20.0);
    engine->stop();
    EXPECT_EQ(row("Session"), QStringLiteral("2026-03-01 21:30:00 – 22:30:10 (1:00:10)"));
    EXPECT_THAT(row("Paused").toStdString(), testing::AnyOf("59:59", "1:00:00"));
    EXPECT_THAT(row("Max (SPL A Fast)").toStdString(),
                testing::MatchesRegex("-23\\.0 dBFS at 1:00:0[5-9] \\(22:30:0[5-9]\\)"));
}

// Both come from elsewhere: a name from a profile, a device's from its maker.
TEST_F(LevelHistoryReportTests, aNameIsOneLineAndTurnsNothing) {
    const ChannelConfig stage = addChannel("Stage\nleft\t\u202EA\u2028\u2067B\uFFFE", "mic", 0);
    start();
    audio.feed("mic", {TarvaneTests::sine(1000.0, 0.1, 9600)});
    clock.advance(0.2);
    tick(stage.id);
    EXPECT_EQ(make(stage.id)->title, QStringLiteral("Stage left A B · Level History · SPL A Fast"));
    ChannelConfig longer = stage;
    longer.name.clear();
    for (int i = 0; i < 300; ++i) {
        longer.name += "e\u0301\U0001F3A4";
    }
    engine->extraChannels.set({longer});
    const QString name = LevelHistoryReport::suggestedFileName({*make(stage.id)}, clock.now());
    // With extension and the ending of an unfinished file no more than the 255 bytes of ext4.
    EXPECT_LE(name.toUtf8().size(), 244);
    EXPECT_TRUE(name.contains(QStringLiteral("\u0301\U0001F3A4 2026-03-01 2130")) ||
                name.contains(QStringLiteral("e\u0301 2026-03-01 2130")))
        << name.toStdString();
}

TEST_F(LevelHistoryReportTests, theStatisticsCountALevelThatFollowsTheProgramme) {
    start();
    play(5.0, -20.0);
    const auto statistics = [this] { return make()->sections.back().title; };
    EXPECT_EQ(statistics(), QStringLiteral("Statistics · SPL A Fast"));
    engine->splTimeWeighting.set(TimeWeighting::slow);
    EXPECT_EQ(statistics(), QStringLiteral("Statistics · SPL A Slow"));
    engine->splTimeWeighting.set(TimeWeighting::infinite);
    EXPECT_EQ(statistics(), QStringLiteral("Statistics · SPL A Fast"));
    engine->metricMode.set(MetricMode::peak);
    engine->peakWeighting.set(Weighting::c);
    EXPECT_EQ(statistics(), QStringLiteral("Statistics · SPL C Fast"));
    engine->metricMode.set(MetricMode::leq);
    engine->leqWeighting.set(Weighting::z);
    EXPECT_EQ(statistics(), QStringLiteral("Statistics · SPL Z Fast"));
}

TEST_F(LevelHistoryReportTests, thereIsAReportOfWhatHasRecordedAndLookingMakesNothing) {
    const ChannelConfig stage = addChannel("Stage", "desk", 2);
    EXPECT_FALSE(make().has_value());
    EXPECT_FALSE(make(stage.id).has_value());
    EXPECT_FALSE(make(UUID::random()).has_value());
    EXPECT_THAT(LevelHistoryReport::exportableChannels(*engine), IsEmpty());
    EXPECT_EQ(engine->findMeterChannel(stage.id), nullptr);
    start();
    EXPECT_FALSE(make().has_value());  // nothing came in yet
    play(1.0, -20.0);
    const auto exportable = LevelHistoryReport::exportableChannels(*engine);
    ASSERT_EQ(exportable.size(), 1U);
    EXPECT_EQ(exportable[0].id, UUID::main());
}

TEST_F(LevelHistoryReportTests, theFileIsNamedAfterTheEarliestSessionAndAnOnlyChannel) {
    const ChannelConfig stage = addChannel("Stage L/R", "mic", 0);
    start();
    play(1.0, -20.0);
    audio.feed("mic", {TarvaneTests::sine(1000.0, 0.1, 4800)});
    tick(stage.id);
    auto main = *make();
    const auto other = *make(stage.id);
    EXPECT_EQ(LevelHistoryReport::suggestedFileName({main}, clock.now()),
              QStringLiteral("Level History Main Input 2026-03-01 2130"));
    EXPECT_EQ(LevelHistoryReport::suggestedFileName({other}, clock.now()),
              QStringLiteral("Level History Stage L-R 2026-03-01 2130"));
    EXPECT_EQ(other.title, QStringLiteral("Stage L/R · Level History · SPL A Fast"));
    main.sessionStart -= std::chrono::hours(1);
    EXPECT_EQ(LevelHistoryReport::suggestedFileName({other, main}, clock.now()),
              QStringLiteral("Level History 2026-03-01 2030"));
    clock.advance(3600.0);
    EXPECT_EQ(LevelHistoryReport::suggestedFileName({}, clock.now()),
              QStringLiteral("Level History 2026-03-01 2230"));
}

TEST_F(LevelHistoryReportTests, severalReportsStandUnderEachOther) {
    start();
    play(1.0, -20.0);
    const auto report = *make();
    const QString text = report.plainText();
    EXPECT_EQ(LevelHistoryReport::plainText({report}), text);
    EXPECT_EQ(LevelHistoryReport::plainText({report, report}),
              text + u'\n' + QString(72, QChar(0x2500)) + QStringLiteral("\n\n") + text);
    EXPECT_TRUE(text.endsWith(u'\n'));
}

}  // namespace LevelHistoryReportTests
}  // namespace TarvaneApp
