// What one picture of the sound level readout costs: the whole of it, and what changes sixty
// times a second (value, peak and bar), on an image as a window's backing store is one.

#include <benchmark/benchmark.h>

#include <QImage>
#include <QPainter>

#include "Displays/Readouts/LevelBarView.h"
#include "Displays/Readouts/SPLReadoutView.h"

namespace {

using namespace TarvaneApp;

struct Scene {
    SPLReadoutView readout;
    LevelBarView bar;
    SPLReadoutGeometry geometry;
    LevelBarGeometry barGeometry;
    QRectF barRect;
    QImage image;
};

Scene makeScene(const benchmark::State& state) {
    const QSize size(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
    const double scale = static_cast<double>(state.range(2));
    Scene scene{.readout = {.valueDB = 94.0,
                            .metricLabel = QStringLiteral("SPL A Fast"),
                            .color = TarvaneKit::SignalColors::yellow,
                            .isCalibrated = true,
                            .showsDBFS = false,
                            .leqElapsedFraction = std::nullopt,
                            .minValueDB = 61.3,
                            .maxValueDB = 102.8,
                            .clipState = TarvaneKit::InputClipState::none,
                            .sideValuesDB = {},
                            .offersReset = true},
                .bar = {.valueDB = 95.0,
                        .markerDB = 99.0,
                        .range = {60.0, 120.0},
                        .color = TarvaneKit::SignalColors::green,
                        .unitLabel = QStringLiteral("PEAK dB SPL"),
                        .targetBand = std::nullopt,
                        .legend = QStringLiteral("LINE PEAK HOLD")},
                .geometry = {},
                .barGeometry = {},
                .barRect = QRectF(16, size.height() - 60.0, size.width() - 32.0, 44.0),
                .image = QImage(size * scale, QImage::Format_RGB32)};
    scene.image.setDevicePixelRatio(scale);
    scene.image.fill(Theme::panelBackground);
    scene.geometry = layout(scene.readout, QSizeF(size.width(), size.height() - 60.0));
    scene.barGeometry = layout(scene.bar, scene.barRect);
    return scene;
}

void drawRegion(Scene& scene, const QRegion& region) {
    QPainter painter(&scene.image);
    painter.setClipRegion(region);
    painter.fillRect(region.boundingRect(), Theme::panelBackground);
    paint(painter, scene.readout, scene.geometry, region);
    paint(painter, scene.bar, scene.barGeometry, region);
}

void wholeReadout(benchmark::State& state) {
    Scene scene = makeScene(state);
    for (auto _ : state) {
        drawRegion(scene, QRect(0, 0, scene.image.width(), scene.image.height()));
    }
}

void meteringReadout(benchmark::State& state) {
    Scene scene = makeScene(state);
    int frame = 0;
    for (auto _ : state) {
        SPLReadoutView next = scene.readout;
        LevelBarView nextBar = scene.bar;
        next.valueDB = 90.0 + 0.1 * (++frame % 100);
        nextBar.valueDB = next.valueDB;
        QRegion region = changedArea(scene.readout, next, scene.geometry);
        region += changedArea(scene.bar, nextBar, scene.barGeometry, scene.barRect,
                              scene.image.devicePixelRatio());
        scene.readout = std::move(next);
        scene.bar = std::move(nextBar);
        drawRegion(scene, region);
    }
}

#define TARVANE_SIZES                   \
    Args({900, 300, 1})                 \
        ->Args({1900, 600, 1})          \
        ->Args({1900, 600, 2})          \
        ->Unit(benchmark::kMillisecond) \
        ->MeasureProcessCPUTime()
BENCHMARK(wholeReadout)->TARVANE_SIZES;
BENCHMARK(meteringReadout)->TARVANE_SIZES;

}  // namespace
