#include "Displays/LevelHistory/LevelHistoryDrawing.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>

#include "Displays/LevelHistory/LevelHistoryHover.h"
#include "Support/GoldenImage.h"
#include "Support/GraphPictures.h"
#include "Support/LevelHistoryScenes.h"
#include "Support/PinnedTypeface.h"

namespace TarvaneApp {
namespace LevelHistoryDrawingTests {

using TarvaneTests::constant;
using TarvaneTests::GoldenImage;
using TarvaneTests::historyOf;
using TarvaneTests::newSession;
using TarvaneTests::overlayOf;
using TarvaneTests::record;

const Typeface& pinned = TarvaneTests::pinnedTypeface();

QImage drawn(const LevelHistoryView& view, const QSize& size, double scale = 1.0) {
    QImage image = TarvaneTests::graphPicture(view, size, scale);
    QPainter painter(&image);
    drawHover(painter, view, layout(view, QSizeF(size)), QSizeF(size), pinned);
    return image;
}

TEST(LevelHistoryDrawing, marksStandAtTheExtremesWithinTheRange) {
    const auto recorder = newSession();
    record(*recorder, 0.0, 100.0,
           [](double elapsed) { return elapsed > 50.0 && elapsed < 50.5 ? 95.0 : 80.0; });
    const LevelHistoryView view = historyOf(*recorder);
    const QImage with = drawn(view, {1048, 300});
    LevelHistoryView page = view;
    page.isInteractive = false;
    const QImage without = drawn(page, {1048, 300});
    const LevelHistoryGeometry geometry = layout(view, {1048.0, 300.0});
    const QPoint tip(540,
                     static_cast<int>(LevelHistoryView::y(95.0, geometry.axis, geometry.plot)));
    EXPECT_NE(with.pixel(tip - QPoint(0, 8)), without.pixel(tip - QPoint(0, 8)));
    LevelHistoryView late = view;
    late.viewport.custom = {.span = 20.0, .end = std::nullopt};
    LevelHistoryView latePage = late;
    latePage.isInteractive = false;
    EXPECT_EQ(drawn(late, {1048, 300}), drawn(latePage, {1048, 300}));
}

TEST(LevelHistoryDrawing, lostAudioHasAStrokeAtItsTimeOnPagesToo) {
    const auto recorder = newSession();
    record(*recorder, 0.0, 100.0, constant(80.0));
    LevelHistoryView view = historyOf(*recorder);
    view.isInteractive = false;
    const QImage without = drawn(view, {1048, 300});
    const std::vector<LostAudio> lost{{.elapsed = 25.0, .seconds = 0.1},
                                      {.elapsed = 250.0, .seconds = 0.1}};
    view.lostAudio = &lost;
    const QImage with = drawn(view, {1048, 300});
    const LevelHistoryGeometry geometry = layout(view, {1048.0, 300.0});
    const QRectF stroke(LevelHistoryView::x(25.0, geometry.range, geometry.plot) - 2.0,
                        geometry.plot.bottom() - 9.0, 4.0, 10.0);
    for (int y = 0; y < with.height(); ++y) {
        for (int x = 0; x < with.width(); ++x) {
            EXPECT_TRUE(with.pixel(x, y) == without.pixel(x, y) || stroke.contains(x, y))
                << x << ", " << y;
        }
    }
    const QPoint middle = stroke.center().toPoint();
    EXPECT_EQ(with.pixelColor(middle), QColor(Theme::peakHold.rgb()));
}

TEST(LevelHistoryDrawing, anEmptyRecorderAsksForAStart) {
    const auto recorder = newSession();
    const QImage empty = drawn(historyOf(*recorder), {900, 300});
    record(*recorder, 0.0, 0.02, constant(-240.0));  // no value yet
    EXPECT_EQ(drawn(historyOf(*recorder), {900, 300}), empty);
    record(*recorder, 0.02, 0.2, constant(80.0));
    EXPECT_GT(GoldenImage::differingPixels(drawn(historyOf(*recorder), {900, 300}), empty),
              GoldenImage::tolerance);
}

struct Golden {
    const char* name;
    LevelHistoryView view;
    QSize size;
};

TEST(LevelHistoryDrawing, looksAsItsGoldenImages) {
    const auto none = newSession();
    const auto start = TarvaneTests::concert(3.0);
    const auto show = TarvaneTests::concert(600.0);
    const auto quieter = TarvaneTests::concert(600.0, 88.0);
    const auto loudness = TarvaneTests::concert(300.0, -18.0);
    const auto paused = newSession();
    record(*paused, 0.0, 60.0, TarvaneTests::Concert(98.0));
    record(*paused, 100.0, 150.0, TarvaneTests::Concert(104.0));
    const auto pausedToo = newSession();
    record(*pausedToo, 0.0, 60.0, constant(70.0));
    record(*pausedToo, 100.0, 150.0, constant(75.0));
    const auto steady = newSession();
    record(*steady, 0.0, 30.0, constant(94.0));
    // Four hours from near silence to far beyond any sound.
    const auto extreme = newSession();
    record(
        *extreme, 0.0, 14400.0, [](double elapsed) { return -190.0 + elapsed / 14400.0 * 390.0; },
        1.0);

    LevelHistoryView overlays = historyOf(*show);
    overlays.secondaryMetricIndex = 1;
    overlays.overlays = {overlayOf(*quieter, {0.35, 0.65, 1.0, 1.0})};
    LevelHistoryView lufs = historyOf(*loudness);
    lufs.unitLabel = QStringLiteral("LUFS");
    lufs.fixedDBRange = {.lowest = -60.0, .highest = 0.0};
    lufs.secondaryMetricIndex = 1;
    lufs.trafficLight = TarvaneKit::TrafficLightConfig::defaultDBFS();
    LevelHistoryView gap = historyOf(*paused);
    gap.overlays = {overlayOf(*pausedToo, {0.35, 0.65, 1.0, 1.0})};
    LevelHistoryView hovered = historyOf(*show);
    hovered.viewport.custom = {.span = 60.0, .end = 330.0};
    hovered.hover.xPosition = 300.0;
    LevelHistoryView digital = historyOf(*show);
    digital.displayOffsetDB = 124.3;
    digital.unitLabel = QStringLiteral("dBFS");
    LevelHistoryView page = historyOf(*show);
    page.isInteractive = false;
    const QSize ordinary(600, 220);
    const std::vector<Golden> goldens{{"empty", historyOf(*none), ordinary},
                                      {"started", historyOf(*start), ordinary},
                                      {"session", historyOf(*show), ordinary},
                                      {"overlays", overlays, ordinary},
                                      {"lufs", lufs, ordinary},
                                      {"gap", gap, ordinary},
                                      {"hover", hovered, ordinary},
                                      {"dbfs", digital, ordinary},
                                      {"steady", historyOf(*steady), ordinary},
                                      {"page", page, ordinary},
                                      {"extreme", historyOf(*extreme), ordinary},
                                      {"narrow", overlays, {240, 120}},
                                      {"huge", overlays, {1900, 600}}};
    for (const Golden& golden : goldens) {
        for (const int scale : {1, 2}) {
            const QString name =
                QStringLiteral("history-%1@%2x").arg(QLatin1String(golden.name)).arg(scale);
            EXPECT_TRUE(GoldenImage::matches(name, drawn(golden.view, golden.size, scale)));
        }
    }
}

TEST(LevelHistoryDrawing, aMissingMarkUnitOrLineIsMoreThanAGoldenImageTolerates) {
    const auto show = TarvaneTests::concert(120.0);
    LevelHistoryView view = historyOf(*show);
    view.secondaryMetricIndex = 1;
    const QSize size(240, 120);
    const QImage whole = drawn(view, size);
    LevelHistoryView other = view;
    other.isInteractive = false;
    EXPECT_GT(GoldenImage::differingPixels(whole, drawn(other, size)), GoldenImage::tolerance);
    other = view;
    other.unitLabel.clear();
    EXPECT_GT(GoldenImage::differingPixels(whole, drawn(other, size)), GoldenImage::tolerance);
    other = view;
    other.secondaryMetricIndex.reset();
    EXPECT_GT(GoldenImage::differingPixels(whole, drawn(other, size)), GoldenImage::tolerance);
}

}  // namespace LevelHistoryDrawingTests
}  // namespace TarvaneApp
