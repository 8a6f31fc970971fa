// What one picture of the spectrogram costs with one new row in each frame, by the fast raster
// and by the plain drawing, in process CPU time: the painter scales on several threads. The count
// is the number of rows on screen.

#include <benchmark/benchmark.h>

#include <QImage>
#include <QPainter>

#include "Displays/Spectrogram/SpectrogramRaster.h"
#include "Displays/Theme.h"
#include "DrawingCost.h"
#include "Support/SpectrogramScenes.h"

namespace TarvaneBenchmarks {
namespace {

using namespace TarvaneApp;

constexpr int newRows = 64;  // shown in a circle

// A history that grows by a row a frame.
class Running {
  public:
    explicit Running(const benchmark::State& state)
        : rows_(static_cast<int>(state.range(3))),
          history_(TarvaneTests::spectrogramHistory(rows_ + newRows)) {
        view_.rowsAdded = rows_;
        view_.frequencies = TarvaneKit::spectrogramFrequencies();
        view_.timeSpanSeconds = rows_ / view_.rowsPerSecond;
    }

    const SpectrogramView& next() {
        ++view_.rowsAdded;
        const int first = static_cast<int>(view_.rowsAdded % newRows);
        view_.history = SpectrogramRows(history_).slice(first, first + rows_);
        return view_;
    }

  private:
    int rows_;
    TarvaneTests::SpectrogramHistory history_;
    SpectrogramView view_;
};

void fastSpectrogram(benchmark::State& state) {
    Running running(state);
    SpectrogramRaster raster;
    raster.image(running.next(), drawingSize(state), drawingScale(state));  // all rows
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            raster.image(running.next(), drawingSize(state), drawingScale(state)));
    }
}

void plainSpectrogram(benchmark::State& state) {
    Running running(state);
    QImage image = drawingTarget(state);
    SpectrogramRasterCache cache;
    for (auto _ : state) {
        QPainter painter(&image);
        paint(painter, running.next(), cache, drawingSize(state));
    }
}

const bool isRegistered = [] {
    compareDrawing({.name = "spectrogram",
                    .fast = fastSpectrogram,
                    .plain = plainSpectrogram,
                    .cases = {{900, 300, 1, 720, 0.12},
                              {1900, 600, 1, 720, 0.40},
                              {1900, 600, 2, 720, 1.3},
                              {900, 300, 1, 120, 0.0},
                              {1900, 600, 1, 120, 0.0},
                              {1900, 600, 2, 120, 0.0}}});
    return true;
}();

}  // namespace
}  // namespace TarvaneBenchmarks
