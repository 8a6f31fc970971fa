// What one picture of the level history costs, by the fast raster and by the plain drawing, in
// process CPU time. The count is the session's length in seconds: an evening must be as quick as
// a minute.

#include <benchmark/benchmark.h>

#include <QImage>
#include <QPainter>
#include <map>

#include "Displays/LevelHistory/LevelHistoryDrawing.h"
#include "Displays/LevelHistory/LevelHistoryRaster.h"
#include "DrawingCost.h"
#include "Support/LevelHistoryScenes.h"

namespace TarvaneBenchmarks {
namespace {

using namespace TarvaneApp;

constexpr std::int64_t minute = 60;
constexpr std::int64_t eightHours = 8 * 3600;

// At ten levels a second, one for each bucket: that is all that a picture sees of more.
const TarvaneTests::Recorder& session(std::int64_t seconds) {
    static std::map<std::int64_t, std::unique_ptr<TarvaneTests::Recorder>> known;
    auto& recorder = known[seconds];
    if (!recorder) {
        recorder = TarvaneTests::concert(static_cast<double>(seconds), 102.0, 0.1);
    }
    return *recorder;
}

void fastHistory(benchmark::State& state) {
    LevelHistoryView view = TarvaneTests::historyOf(session(state.range(3)));
    LevelHistoryRaster raster(Theme::panelBackground);
    for (auto _ : state) {
        ++view.revision;
        benchmark::DoNotOptimize(raster.image(view, drawingSize(state), drawingScale(state)));
    }
}

void plainHistory(benchmark::State& state) {
    const LevelHistoryView view = TarvaneTests::historyOf(session(state.range(3)));
    QImage image = drawingTarget(state);
    for (auto _ : state) {
        image.fill(Theme::panelBackground);
        QPainter painter(&image);
        paint(painter, view, drawingSize(state));
    }
}

const bool isRegistered = [] {
    compareDrawing({.name = "history",
                    .fast = fastHistory,
                    .plain = plainHistory,
                    .cases = {{900, 300, 1, minute, 0.0},
                              {1900, 600, 1, minute, 0.0},
                              {1900, 600, 2, minute, 0.0},
                              {900, 300, 1, eightHours, 0.0},
                              {1900, 600, 1, eightHours, 0.0},
                              {1900, 600, 2, eightHours, 0.0}}});
    return true;
}();

}  // namespace
}  // namespace TarvaneBenchmarks
