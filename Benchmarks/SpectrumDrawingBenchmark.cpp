// What one picture of the spectrum costs: line, bars, holds, grid and labels, new levels in each
// frame, by the fast raster and by the plain drawing, in process CPU time. At the end a table
// sets each beside the plain drawing of the same run, and beside the figure to beat.

#include <benchmark/benchmark.h>

#include <QImage>
#include <QPainter>

#include "Displays/Spectrum/SpectrumDrawing.h"
#include "Displays/Spectrum/SpectrumRaster.h"
#include "DrawingCost.h"
#include "Support/SpectrumScenes.h"

namespace TarvaneBenchmarks {
namespace {

using namespace TarvaneApp;
using TarvaneKit::OctaveFraction;

constexpr int frameCount = 8;

std::vector<SpectrumView> frames(const benchmark::State& state) {
    std::vector<SpectrumView> all;
    for (std::uint32_t seed = 1; seed <= frameCount; ++seed) {
        all.push_back(TarvaneTests::ordinarySpectrum(
            state.range(3) > 31 ? OctaveFraction::fortyEighthOctave : OctaveFraction::thirdOctave,
            seed));
    }
    return all;
}

void fastSpectrum(benchmark::State& state) {
    const std::vector<SpectrumView> views = frames(state);
    SpectrumRaster raster(Theme::panelBackground);
    raster.image(views[0], drawingSize(state), drawingScale(state));  // what stands still
    std::size_t frame = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            raster.image(views[frame++ % frameCount], drawingSize(state), drawingScale(state)));
    }
}

void plainSpectrum(benchmark::State& state) {
    const std::vector<SpectrumView> views = frames(state);
    QImage image = drawingTarget(state);
    std::size_t frame = 0;
    for (auto _ : state) {
        image.fill(Theme::panelBackground);
        QPainter painter(&image);
        paint(painter, views[frame++ % frameCount], drawingSize(state));
    }
}

const bool isRegistered = [] {
    compareDrawing({.name = "spectrum",
                    .fast = fastSpectrum,
                    .plain = plainSpectrum,
                    .cases = {{900, 300, 1, 31, 0.44},
                              {1900, 600, 1, 31, 1.7},
                              {1900, 600, 2, 31, 7.5},
                              {900, 300, 1, 485, 0.49},
                              {1900, 600, 1, 485, 1.8},
                              {1900, 600, 2, 485, 7.2}}});
    return true;
}();

}  // namespace
}  // namespace TarvaneBenchmarks
