#include "Displays/Spectrogram/SpectrogramView.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

#include "Displays/SharpLine.h"
#include "Displays/Theme.h"
#include "Records/SpectrogramColorRamp.h"

namespace TarvaneApp {

namespace ColorRamp = SpectrogramColorRamp;

namespace {

constexpr double smallestSliceHeight = 0.01;
constexpr double mostRows = 1e6;  // of whatever time span: more than any history holds
constexpr double ruleOpacity = 0.5;

int byte(double channel) {
    // In this order what is no number is black.
    return static_cast<int>(std::lround(std::min(std::max(0.0, channel), 1.0) * 255.0));
}

QRgb opaque(const TarvaneKit::RGBAColor& color) {
    return qRgb(byte(color.red), byte(color.green), byte(color.blue));
}

}  // namespace

int SpectrogramView::rows() const {
    const double rows = std::round(rowsPerSecond * timeSpanSeconds /
                                   std::max(sliceHeightMultiplier, smallestSliceHeight));
    return static_cast<int>(std::min(std::max(1.0, rows), mostRows));
}

SpectrogramView::VisibleRows SpectrogramView::visibleRows() const {
    const int offset = std::min(std::max(history.count() - rows(), 0), scrollState.rowOffset);
    const int end = history.count() - offset;
    return {.first = std::max(end - rows(), 0), .end = end, .isLive = offset == 0};
}

QRgb SpectrogramView::colorForT(double t, const std::vector<SpectrogramColorStop>& stops) {
    return opaque(ColorRamp::colorAt(t, ColorRamp::sorted(stops)));
}

SpectrogramRasterCache::LUT SpectrogramView::colorLUT(
    const std::vector<SpectrogramColorStop>& stops) {
    const std::vector<SpectrogramColorStop> inOrder = ColorRamp::sorted(stops);
    SpectrogramRasterCache::LUT lut{};
    for (std::size_t i = 0; i < lut.size(); ++i) {
        lut[i] = opaque(ColorRamp::colorAt(static_cast<double>(i) / 255.0, inOrder));
    }
    return lut;
}

void paint(QPainter& painter, const SpectrogramView& view, SpectrogramRasterCache& raster,
           const QSizeF& size) {
    painter.fillRect(QRectF(QPointF(), size), Theme::background);
    const SpectrogramView::VisibleRows visible = view.visibleRows();
    const QImage image = raster.image(
        view.history.slice(visible.first, visible.end), view.rowsAdded, visible.isLive,
        static_cast<int>(view.frequencies.size()), view.floorDB, view.ceilingDB, view.colorStops);
    if (!image.isNull()) {
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawImage(QRectF(QPointF(), size), image);
    }
    paintFrequencyRules(painter, view, size);
}

void paintFrequencyRules(QPainter& painter, const SpectrogramView& view, const QSizeF& size) {
    const FrequencyAxis axis = view.frequencyAxis();
    for (const double frequencyHz : FrequencyAxis::gridLines) {
        paintVerticalLine(painter, axis.x(frequencyHz, size.width()), QRectF(QPointF(), size),
                          Theme::faded(Theme::gridLine, ruleOpacity));
    }
}

}  // namespace TarvaneApp
