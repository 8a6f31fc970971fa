// Logical coordinates moved onto whole device pixels, so that edges and hairlines are sharp at
// every scale of the screen.
#pragma once

#include <QPaintDevice>
#include <QPainter>
#include <QRectF>
#include <algorithm>
#include <cmath>

namespace TarvaneApp {

class PixelGrid {
  public:
    /// `scale` is device pixels per logical pixel.
    explicit PixelGrid(double scale) : scale_(scale) {}
    explicit PixelGrid(const QPainter& painter)
        : PixelGrid(painter.device()->devicePixelRatioF()) {}

    double snapped(double coordinate) const { return std::round(coordinate * scale_) / scale_; }
    QRectF snapped(const QRectF& rect) const {
        return {QPointF(snapped(rect.left()), snapped(rect.top())),
                QPointF(snapped(rect.right()), snapped(rect.bottom()))};
    }
    /// The width of a line of about `width` logical pixels: whole device pixels, at least one.
    double lineWidth(double width) const {
        return std::max(std::round(width * scale_), 1.0) / scale_;
    }
    /// Where a line of that width, centred at a coordinate, begins, so that it lies between `from`
    /// and `to` in full.
    double lineStart(double coordinate, double width, double from, double to) const {
        const double thickness = lineWidth(width);
        return snapped(
            std::clamp(coordinate - thickness / 2.0, from, std::max(to - thickness, from)));
    }

  private:
    double scale_;
};

}  // namespace TarvaneApp
