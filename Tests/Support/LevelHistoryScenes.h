// Sessions of a level, to draw in tests, benchmarks and pictures.
#pragma once

#include <QDateTime>
#include <array>
#include <cmath>
#include <memory>
#include <numbers>

#include "Displays/LevelHistory/LevelHistoryView.h"
#include "Support/SpectrumScenes.h"

namespace TarvaneTests {

using Recorder = TarvaneKit::SPLHistoryRecorder;

/// Half past seven in the evening, wherever the machine stands.
inline TarvaneKit::Date showTime() {
    const QDateTime start(QDate(2026, 3, 1), QTime(19, 30, 0));
    return TarvaneKit::Date(std::chrono::milliseconds(start.toMSecsSinceEpoch()));
}

/// Two metrics: 0 is the reading, 1 a quicker one.
inline std::unique_ptr<Recorder> newSession() {
    auto recorder = std::make_unique<Recorder>(
        std::vector{TarvaneKit::SPLMetric::loudness(TarvaneKit::LoudnessMetric::shortTerm),
                    TarvaneKit::SPLMetric::loudness(TarvaneKit::LoudnessMetric::momentary)},
        0.1, 144000, 3.0);
    recorder->reset(showTime());
    return recorder;
}

/// Records from `from` up to `to` at the display's pace, or slower for sessions of hours.
template <class Level>
void record(Recorder& recorder, double from, double to, Level level,
            double tickSeconds = 1.0 / 60.0) {
    const auto ticks = static_cast<std::int64_t>(std::llround((to - from) / tickSeconds));
    for (std::int64_t tick = 0; tick < ticks; ++tick) {
        const double elapsed = from + static_cast<double>(tick) * tickSeconds;
        const double levelDB = level(elapsed);
        recorder.record(std::array{levelDB, levelDB + 3.0 * std::sin(9.0 * elapsed)}, elapsed);
    }
}

/// A concert: songs with pauses between, about `loudDB` at their loudest.
class Concert {
  public:
    explicit Concert(double loudDB) : loudDB_(loudDB) {}
    double operator()(double elapsed) {
        const double inSong = std::fmod(elapsed, 60.0);
        const double song = inSong < 52.0 ? 0.0 : -22.0;
        return loudDB_ + song - 8.0 + 6.0 * std::sin(elapsed * std::numbers::pi / 31.0) +
               3.0 * roughness_.next();
    }

  private:
    double loudDB_;
    Roughness roughness_{1};
};

inline std::unique_ptr<Recorder> concert(double seconds, double loudDB = 102.0,
                                         double tickSeconds = 1.0 / 60.0) {
    auto recorder = newSession();
    record(*recorder, 0.0, seconds, Concert(loudDB), tickSeconds);
    return recorder;
}

/// The recorder outlives the view.
inline TarvaneApp::LevelHistoryView historyOf(const Recorder& recorder) {
    TarvaneApp::LevelHistoryView view;
    view.recorder = &recorder;
    view.revision = 1;
    view.unitLabel = QStringLiteral("dB");
    view.trafficLight = TarvaneKit::TrafficLightConfig::defaultSPL();
    return view;
}

/// A level that stays.
inline auto constant(double levelDB) {
    return [levelDB](double) { return levelDB; };
}

inline TarvaneApp::LevelHistoryOverlay overlayOf(const Recorder& recorder,
                                                 const TarvaneKit::RGBAColor& color) {
    return {.id = TarvaneKit::UUID::main(),
            .recorder = &recorder,
            .revision = 1,
            .metricIndex = 0,
            .color = color,
            .displayOffsetDB = 0.0};
}

}  // namespace TarvaneTests
