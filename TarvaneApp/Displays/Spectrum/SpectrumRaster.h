// The fast drawing of the spectrum into a picture, for windows that show it sixty times a second.
// It looks like the plain drawing of SpectrumView at a fraction of its cost:
//
// - What stands still (grid, rules, target curve, labels) is drawn once by the plain drawing:
//   the grid as the few different pixel columns that it consists of, the rest as sparse layers.
// - Above and below what moves the picture stays as it is: only the rows between are drawn anew.
// - What moves is drawn by pixel column. A column is ground, area, bar or both over long
//   stretches, which are copied from columns made once; only the rows about a trace are blended.
//
// One raster per view, kept from frame to frame with all its storage. Main thread.
#pragma once

#include <QImage>
#include <QRectF>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "Displays/ColumnTiles.h"
#include "Displays/Spectrum/RenewedRows.h"
#include "Displays/Spectrum/SparseLayer.h"
#include "Displays/Spectrum/SpectrumView.h"
#include "Displays/TraceColumns.h"

namespace TarvaneApp {

class SpectrumRaster {
  public:
    /// `ground` is the background's colour.
    explicit SpectrumRaster(const QColor& ground, Typeface typeface = Typeface::installed());

    /// The graph without its readout, in RGB32 with `pixelRatio` device pixels per logical one.
    /// Valid until the next call. Null for a size without pixels.
    const QImage& image(const SpectrumView& view, const QSizeF& size, double pixelRatio);
    /// That of the last call.
    const QImage& image() const { return image_; }
    /// What may look different in it than in the one before; in device pixels.
    const QRect& renewed() const { return renewedArea_; }

    /// How often the still parts were drawn.
    int layersDrawn() const { return layersDrawn_; }

  private:
    // What the still parts depend on.
    struct GridKey {
        QSizeF size;
        double pixelRatio;
        RTAScale scale;
        std::optional<double> floorDB;
        std::optional<double> ceilingDB;
        double minHz;
        double maxHz;
        bool operator==(const GridKey&) const = default;
    };
    struct CurveKey {
        std::optional<TarvaneKit::TargetCurve> curve;
        double referenceDB;
    };
    struct BarPlace {
        float left;  // device pixels
        float right;
    };
    // A bar's share of a column's width, at most PixelBlend::fullWeight.
    struct BarShare {
        int bar;
        std::uint32_t weight;
    };
    // A cap, a held level or another channel's level, across a band.
    struct BandLine {
        QRectF rect;  // device pixels
        QRgb color;
    };
    using Rows = PixelRows;
    // What moves at all.
    struct Contents {
        bool line = false;
        bool hold = false;
        bool bars = false;
        bool ring = false;
        bool operator==(const Contents&) const = default;
    };

    void prepareGrid(const SpectrumView& view, const QSizeF& size, double pixelRatio);
    void prepareLabels(const SpectrumView& view);
    void prepareFill(const QColor& traceColor);
    void prepareBars(const SpectrumView& view);
    void prepareCurve(const SpectrumView& view);
    void takeGroundColumns(const QImage& ground);
    QImage layer(QImage::Format format) const;

    std::vector<BarPlace> barPlaces(const SpectrumView& view,
                                    const std::vector<TarvaneKit::OctaveBand>& bands) const;
    void barTops(const SpectrumView& view, const std::vector<double>& levelsDB, double offsetDB,
                 std::vector<float>& tops) const;
    void placeTrace(TraceColumns& trace, const SpectrumView& view,
                    const std::vector<double>& levelsDB, double sampleRate, double offsetDB,
                    double width);
    const std::vector<double>& linePositions(const SpectrumView& view, double sampleRate);

    void placeMoving(const SpectrumView& view);
    void placeBandLines(const std::vector<BarPlace>& places, const std::vector<float>& tops,
                        double thickness, const QColor& color);
    void findRenewed();
    void renewStroke(const TraceColumns& trace);

    void composeColumn(const SpectrumView& view, int column, Rows rows, QRgb* pixels);
    int composeArea(const SpectrumView& view, int column, Rows rows, QRgb* pixels, Rows& blended);
    void composeBars(int column, Rows rows, QRgb* pixels, int areaFrom,
                     std::span<const Rows> blended);
    void copyBarColumn(int column, QRgb* pixels, Rows rows, int areaFrom, std::uint32_t weight);
    /// A column of ground, with or without the area over it, under a bar of that weight.
    const QRgb* stillColumn(int ground, bool hasArea, std::uint32_t weight);

    void blendBandLine(const BandLine& line);

    const QColor ground_;
    const Typeface typeface_;
    QImage image_;
    int columns_ = 0;
    int rows_ = 0;
    int layersDrawn_ = 0;

    std::optional<GridKey> gridKey_;
    std::vector<std::vector<QRgb>> groundColumns_;
    std::vector<int> groundOfColumn_;
    std::optional<QRectF> labelsCovered_;  // what covered some of them when they were drawn
    SparseLayer labels_;

    std::optional<QColor> fillColor_;
    std::vector<QRgb> fill_;  // the gradient, premultiplied, by row
    std::vector<std::vector<QRgb>> stillColumns_;

    std::optional<CurveKey> curveKey_;
    SparseLayer curve_;

    std::vector<TarvaneKit::OctaveBand> bands_;
    std::vector<BarPlace> bars_;
    std::vector<int> firstShare_;  // by column, in `shares_`; one more than there are columns
    std::vector<BarShare> shares_;

    struct LinePositions {
        double sampleRate;
        int fftSize;
        std::vector<double> x;  // device pixels
    };
    std::vector<LinePositions> linePositions_;  // by sample rate

    // Reused from frame to frame.
    std::vector<QPointF> points_;
    TraceColumns line_;
    TraceColumns hold_;
    std::vector<TraceColumns> overlays_;
    Contents contents_;
    std::vector<float> barTops_;
    std::vector<float> lineTops_;
    std::vector<BandLine> bandLines_;  // in the order in which they are drawn
    std::vector<float> strokeShares_;
    std::vector<float> areaShares_;
    ColumnTiles tiles_;
    bool isAllAnew_ = true;
    RenewedRows renewed_;
    QRect renewedArea_;
};

}  // namespace TarvaneApp
