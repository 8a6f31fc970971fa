// Writes the reports of a made-up evening as PDF, PNG and text, for people to look at: run it with
// the folder to write to, on any Qt platform.

#include <QDir>
#include <QGuiApplication>
#include <QTest>
#include <algorithm>
#include <cmath>
#include <iostream>
#include <numbers>
#include <random>

#include "Engine/MeterEngine.h"
#include "Reports/LevelHistoryExporter.h"
#include "Support/FakeAudioSystem.h"
#include "Support/ManualTime.h"
#include "Support/MemoryStore.h"

namespace {

using namespace TarvaneApp;

// Two hours of a show: songs, applause, an interval.
void playAnEvening(MeterEngine& engine, TarvaneTests::FakeAudioSystem& audio,
                   TarvaneTests::ManualClock& clock, TarvaneTests::ManualTickTimer& timer) {
    std::mt19937 random(7);
    std::normal_distribution<float> noise;
    std::vector<float> unit(48000);
    for (float& sample : unit) {
        sample = noise(random);
    }
    std::vector<float> block(unit.size());
    for (int n = 0; n < 7200; ++n) {
        const double minute = n / 60.0;
        const double song = std::sin(minute * std::numbers::pi / 4.0);
        const double level = minute > 55.0 && minute < 70.0 ? -50.0 : -24.0 + 8.0 * song;
        const auto gain = static_cast<float>(std::pow(10.0, level / 20.0));
        std::ranges::transform(unit, block.begin(), [gain](float sample) { return gain * sample; });
        clock.advance(1.0);
        audio.feed("", {block, block});
        timer.fire();
        QTest::qWait(0);
        if (n == 3600) {
            engine.pause();
            clock.advance(600.0);
            engine.resume();
        }
    }
}

void save(const QString& folder, const QString& name, MeterEngine& engine, TarvaneKit::Date now) {
    namespace Exporter = LevelHistoryExporter;
    std::vector<TarvaneKit::UUID> ids;
    for (const ChannelInfo& channel : LevelHistoryReport::exportableChannels(engine)) {
        ids.push_back(channel.id);
    }
    const auto pages = Exporter::pages(ids, engine, now);
    for (const auto format :
         {Exporter::Format::pdf, Exporter::Format::png, Exporter::Format::text}) {
        Exporter::write(Exporter::render(format, pages),
                        QDir(folder).filePath(name + u'.' + Exporter::fileExtension(format)));
    }
}

}  // namespace

int main(int argc, char** argv) {
    QGuiApplication application(argc, argv);
    QGuiApplication::setApplicationName(QStringLiteral("Tarvane"));
    QGuiApplication::setApplicationVersion(QStringLiteral("1.0"));
    if (argc != 2) {
        std::cerr << "usage: TarvaneReportPictures FOLDER\n";
        return 2;
    }
    const QString folder = QString::fromLocal8Bit(argv[1]);
    TarvaneTests::FakeAudioSystem audio;
    TarvaneTests::MemoryStore store;
    TarvaneTests::ManualClock clock;
    TarvaneTests::ManualTickTimer timer;
    audio.plugIn({.id = 7, .uid = "mic", .name = "Measurement Microphone", .channelCount = 2});
    audio.setDefaultInput(7);
    audio.behaviour("").channelCount = 2;
    MeterEngine engine({.audio = audio, .store = store, .clock = clock, .tickTimer = timer});
    engine.refreshDevices();
    TarvaneKit::CalibrationProfile calibration;
    calibration.reference.emplace();
    calibration.reference->offsetDB = 124.3;
    engine.calibration.set(calibration);
    ChannelConfig programme;
    programme.name = "Programme feed to the broadcaster";
    programme.measuresLoudness = true;
    programme.isDigital = true;
    engine.extraChannels.set({programme});
    engine.start();
    while (engine.isStarting()) {
        QTest::qWait(5);
    }
    playAnEvening(engine, audio, clock, timer);
    save(folder, QStringLiteral("evening"), engine, clock.now());
    return 0;
}
