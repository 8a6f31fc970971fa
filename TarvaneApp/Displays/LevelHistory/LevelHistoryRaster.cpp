#include "Displays/LevelHistory/LevelHistoryRaster.h"

#include <QPainter>
#include <algorithm>
#include <iterator>

#include "Displays/LevelHistory/LevelHistoryDrawing.h"
#include "Displays/PixelBlend.h"

namespace TarvaneApp {

using PixelBlend::fullWeight;
using PixelBlend::over;
using PixelBlend::premultiplied;

namespace {

std::size_t at(int index) {
    return static_cast<std::size_t>(index);
}

}  // namespace

LevelHistoryRaster::LevelHistoryRaster(const QColor& ground, Typeface typeface)
    : ground_(ground), typeface_(std::move(typeface)) {}

const QImage& LevelHistoryRaster::image(const LevelHistoryView& view, const QSizeF& size,
                                        double pixelRatio) {
    const QSize pixels(qRound(size.width() * pixelRatio), qRound(size.height() * pixelRatio));
    LevelHistoryView withoutHover = view;
    withoutHover.hover = {};
    const bool isSameShape = image_.size() == pixels && size_ == size;
    if (isSameShape && view_ == withoutHover && picturesDrawn_ > 0) {
        return image_;
    }
    if (!isSameShape) {
        image_ = pixels.isEmpty() ? QImage() : QImage(pixels, QImage::Format_RGB32);
        image_.setDevicePixelRatio(pixelRatio);
        size_ = size;
    }
    view_ = std::move(withoutHover);
    geometry_ = layout(view, size);
    ++picturesDrawn_;
    if (image_.isNull()) {
        return image_;
    }
    image_.fill(ground_);
    {
        QPainter painter(&image_);
        drawGrid(painter, view, geometry_, typeface_);
    }
    drawColumns(view);
    drawLines(view);
    QPainter painter(&image_);
    drawMarks(painter, view, geometry_, typeface_);
    return image_;
}

void LevelHistoryRaster::drawColumns(const LevelHistoryView& view) {
    const double ratio = image_.devicePixelRatio();
    const QRectF exact(geometry_.plot.topLeft() * ratio, geometry_.plot.size() * ratio);
    const QRect plot = exact.toAlignedRect() & image_.rect();
    takeGrounds(plot);
    stillColumns_.clear();
    columns_.clear();
    columnAt_.assign(at(plot.width()), -1);
    for (const LevelHistoryColumn& column : historyColumns(view, geometry_, ratio)) {
        const QColor color = Theme::color(column.color);
        const int left = std::max(qRound(column.left * ratio) - plot.left(), 0);
        const int right = std::min(qRound(column.right * ratio) - plot.left(), plot.width());
        for (int x = left; x < right; ++x) {
            columnAt_[at(x)] = static_cast<int>(columns_.size());
        }
        columns_.push_back({.top = column.top * ratio - plot.top(),
                            .bandBottom = column.bottom * ratio - plot.top(),
                            .foot = premultiplied(Theme::faded(color, LevelHistoryOpacity::foot)),
                            .band = premultiplied(Theme::faded(color, LevelHistoryOpacity::band))});
    }
    const auto rows = at(plot.height());
    tiles_.draw(image_, plot, [&](int x, QRgb* pixels) {
        const int ground = groundOfColumn_[at(x - plot.left())];
        const int column = columnAt_[at(x - plot.left())];
        if (column < 0) {
            std::ranges::copy(grounds_[at(ground)], pixels);
        } else {
            compose(ground, columns_[at(column)], exact.bottom() - plot.top(), {pixels, rows});
        }
    });
}

// Under the columns lies the grid, which has two different columns in the plot: on a vertical line
// and beside it. A row between two horizontal lines shows which is which.
void LevelHistoryRaster::takeGrounds(const QRect& plot) {
    grounds_.clear();
    groundOfColumn_.clear();
    const int hairline = std::max(qRound(image_.devicePixelRatio()), 1);
    const int row = std::min(plot.top() + 2 * hairline, plot.bottom());
    const auto* across = reinterpret_cast<const QRgb*>(image_.constScanLine(row));
    std::map<QRgb, int> kinds;
    for (int x = plot.left(); x <= plot.right(); ++x) {
        const auto [kind, isNew] = kinds.try_emplace(across[x], static_cast<int>(grounds_.size()));
        groundOfColumn_.push_back(kind->second);
        if (isNew) {
            std::vector<QRgb>& column = grounds_.emplace_back();
            for (int y = plot.top(); y <= plot.bottom(); ++y) {
                column.push_back(reinterpret_cast<const QRgb*>(image_.constScanLine(y))[x]);
            }
        }
    }
}

const QRgb* LevelHistoryRaster::stillColumn(int ground, const Column& column, Part part) {
    std::vector<QRgb>& pixels = stillColumns_[{ground, part, column.band}];
    if (pixels.empty()) {
        pixels = grounds_[at(ground)];
        for (QRgb& pixel : pixels) {
            pixel = over(pixel, column.foot, fullWeight);
            if (part == Part::band) {
                pixel = over(pixel, column.band, fullWeight);
            }
        }
    }
    return pixels.data();
}

void LevelHistoryRaster::compose(int ground, const Column& column, double plotHeight,
                                 std::span<QRgb> pixels) {
    const int rows = static_cast<int>(pixels.size());
    const auto rowOf = [&](double y) { return std::clamp(static_cast<int>(y), 0, rows - 1); };
    const int topRow = rowOf(column.top);
    const int bandRow = rowOf(column.bandBottom);
    const std::vector<QRgb>& bare = grounds_[at(ground)];
    const QRgb* foot = stillColumn(ground, column, Part::foot);
    std::copy_n(bare.data(), topRow + 1, pixels.data());
    if (bandRow > topRow) {
        const QRgb* band = stillColumn(ground, column, Part::band);
        std::copy(band + topRow + 1, band + bandRow, pixels.data() + topRow + 1);
    }
    std::copy(foot + bandRow + 1, foot + rows, pixels.data() + bandRow + 1);

    // Where an edge lies within a row.
    const auto covered = [](double start, double end, int row) {
        return PixelBlend::weight(std::clamp(
            std::min(end, row + 1.0) - std::max(start, static_cast<double>(row)), 0.0, 1.0));
    };
    const auto blend = [&](int row) {
        QRgb& pixel = pixels[at(row)];
        pixel = over(bare[at(row)], column.foot, covered(column.top, plotHeight, row));
        pixel = over(pixel, column.band, covered(column.top, column.bandBottom, row));
    };
    blend(topRow);
    blend(bandRow);
    blend(rows - 1);
}

void LevelHistoryRaster::drawLines(const LevelHistoryView& view) {
    const double ratio = image_.devicePixelRatio();
    std::vector<QPointF> points;
    for (const LevelHistoryLine& line : historyLines(view, geometry_)) {
        trace_.start(image_.width(), image_.height());
        for (const std::vector<QPointF>& part : line.parts) {
            points.clear();
            std::ranges::transform(part, std::back_inserter(points),
                                   [&](const QPointF& point) { return point * ratio; });
            trace_.addStraight(points);
        }
        trace_.stroke(line.width * ratio / 2.0);
        trace_.blendStroke(image_, premultiplied(line.color));
    }
}

}  // namespace TarvaneApp
