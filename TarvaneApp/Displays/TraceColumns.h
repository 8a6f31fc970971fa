// Traces cut into pixel columns, and how much of each pixel their stroke and the area under them
// cover.
//
// A trace is the graph of a function of x, so that a round stroke of half width h, cut along a
// vertical line at x, is one stretch: from the least f(u) - sqrt(h² - (u-x)²) to the greatest
// f(u) + sqrt(h² - (u-x)²) over all u within h of x. A few such cuts in each column, averaged,
// are the antialiased stroke, at a cost that doesn't depend on the number of points.
//
// Coordinates are device pixels. Reused from frame to frame, so that nothing is allocated.
#pragma once

#include <QImage>
#include <QPointF>
#include <span>
#include <vector>

#include "Displays/PixelRows.h"

namespace TarvaneApp {

class TraceColumns {
  public:
    static constexpr int cutsPerColumn = 4;

    using Rows = PixelRows;

    /// Starts over, on a picture of that size.
    void start(int columns, int rows);
    /// A line through the points, or softened as by `smoothedPath`; x never decreases. Several
    /// lines over the same columns count as one.
    void addStraight(std::span<const QPointF> points);
    void addSmoothed(std::span<const QPointF> points);
    /// Computes the stroke of what was added.
    void stroke(double halfWidth);
    /// Blends the stroke into the picture, which is opaque; the colour is premultiplied.
    void blendStroke(QImage& picture, QRgb color);

    /// Writes the shares of the stroke, at their rows; none is visible outside of those returned.
    Rows strokeCoverage(int column, std::vector<float>& shares) const;
    /// The same of the area under the trace. From the end of those returned on it covers all.
    Rows areaCoverage(int column, std::vector<float>& shares) const;

    /// The rows of both without the shares: from where on the stroke may be seen until where;
    /// and from where on the area covers something until where it covers all.
    Rows strokeRows(int column) const;
    Rows areaRows(int column) const;

  private:
    float areaEdge(int place) const;
    void addPiece(const QPointF& from, const QPointF& control, const QPointF& to);
    void addCut(double position, double y);

    int rows_ = 0;
    int cuts_ = 0;
    // The curve within each cut, with margins for the dilation; empty where least > greatest.
    std::vector<float> least_;
    std::vector<float> greatest_;
    // The stroke along each cut.
    std::vector<float> top_;
    std::vector<float> bottom_;
    std::vector<float> shares_;  // scratch
};

}  // namespace TarvaneApp
