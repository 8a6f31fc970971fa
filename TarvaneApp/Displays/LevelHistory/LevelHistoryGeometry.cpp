#include "Displays/LevelHistory/LevelHistoryGeometry.h"

#include <algorithm>

#include "Displays/PixelGrid.h"
#include "Displays/Theme.h"

namespace TarvaneApp {

namespace {

constexpr double secondaryOpacity = 0.75;
constexpr double secondaryWidth = 1.0;
constexpr double overlayWidth = 1.5;

std::vector<std::vector<QPointF>> lineParts(const LevelHistoryTraces::Envelope& envelope,
                                            const LevelHistoryGeometry& geometry) {
    std::vector<std::vector<QPointF>> parts;
    bool isOpen = false;
    for (std::size_t i = 0; i < envelope.size(); ++i) {
        if (!envelope[i]) {
            isOpen = false;
            continue;
        }
        if (!isOpen) {
            parts.emplace_back();
            isOpen = true;
        }
        const double fraction =
            (static_cast<double>(i) + 0.5) / static_cast<double>(envelope.size());
        parts.back().emplace_back(
            geometry.plot.left() + fraction * geometry.plot.width(),
            LevelHistoryView::y(envelope[i]->maxDB, geometry.axis, geometry.plot));
    }
    return parts;
}

}  // namespace

LevelHistoryGeometry layout(const LevelHistoryView& view, const QSizeF& size) {
    LevelHistoryGeometry geometry;
    geometry.plot = view.plot(size);
    geometry.range = view.range();
    geometry.traces = LevelHistoryTraces::read(view, geometry.plot.width());
    geometry.axis = view.yRange(geometry.traces);
    return geometry;
}

std::vector<LevelHistoryColumn> historyColumns(const LevelHistoryView& view,
                                               const LevelHistoryGeometry& geometry,
                                               double pixelRatio) {
    const PixelGrid grid(pixelRatio);
    const QRectF& plot = geometry.plot;
    const LevelHistoryTraces::Envelope& envelope = geometry.traces.primary;
    const double width = plot.width() / static_cast<double>(envelope.size());
    std::vector<LevelHistoryColumn> columns;
    columns.reserve(envelope.size());
    for (std::size_t i = 0; i < envelope.size(); ++i) {
        if (!envelope[i]) {
            continue;
        }
        const double left = plot.left() + static_cast<double>(i) * width;
        const double top = LevelHistoryView::y(envelope[i]->maxDB, geometry.axis, plot);
        const double bottom = LevelHistoryView::y(envelope[i]->minDB, geometry.axis, plot);
        columns.push_back({.left = grid.snapped(left),
                           .right = grid.snapped(left + width),
                           .top = top,
                           .bottom = top + std::max(bottom - top, 1.0),
                           .color = view.columnColor(envelope[i]->maxDB)});
    }
    return columns;
}

std::vector<LevelHistoryLine> historyLines(const LevelHistoryView& view,
                                           const LevelHistoryGeometry& geometry) {
    std::vector<LevelHistoryLine> lines;
    if (view.secondaryMetricIndex) {
        lines.push_back({.parts = lineParts(geometry.traces.secondary, geometry),
                         .color = Theme::faded(Theme::primaryText, secondaryOpacity),
                         .width = secondaryWidth});
    }
    for (std::size_t i = 0; i < geometry.traces.overlays.size(); ++i) {
        lines.push_back({.parts = lineParts(geometry.traces.overlays[i], geometry),
                         .color = Theme::color(view.overlays[i].color),
                         .width = overlayWidth});
    }
    return lines;
}

}  // namespace TarvaneApp
