#include "Displays/Spectrum/SpectrumRaster.h"

#include <QLinearGradient>
#include <QPainter>
#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <utility>

#include "Displays/PixelBlend.h"
#include "Displays/Spectrum/SpectrumDrawing.h"
#include "Displays/Spectrum/SpectrumGeometry.h"

namespace TarvaneApp {

using PixelBlend::fullWeight;
using PixelBlend::over;
using PixelBlend::premultiplied;
using TarvaneKit::OctaveBand;

namespace {

// Still columns are made for bars of this many weights; narrow bars cover parts of a column.
constexpr std::uint32_t weightSteps = 64;
constexpr std::uint32_t weightStep = fullWeight / weightSteps;

std::size_t slot(int index) {
    return static_cast<std::size_t>(index);
}

}  // namespace

SpectrumRaster::SpectrumRaster(const QColor& ground, Typeface typeface)
    : ground_(ground), typeface_(std::move(typeface)) {}

const QImage& SpectrumRaster::image(const SpectrumView& view, const QSizeF& size,
                                    double pixelRatio) {
    columns_ = qRound(size.width() * pixelRatio);
    rows_ = qRound(size.height() * pixelRatio);
    if (columns_ < 1 || rows_ < 1) {
        gridKey_.reset();
        image_ = QImage();
        renewedArea_ = QRect();
        return image_;
    }
    isAllAnew_ = false;
    prepareGrid(view, size, pixelRatio);
    prepareFill(view.traceColor);
    prepareBars(view);
    prepareCurve(view);
    prepareLabels(view);
    placeMoving(view);
    findRenewed();

    const auto rowsOf = [this](int tile) { return renewed_.ofTile(tile); };
    tiles_.draw(image_, image_.rect(), rowsOf, [&](int column, Rows rows, QRgb* pixels) {
        composeColumn(view, column, rows, pixels);
    });
    for (const BandLine& line : bandLines_) {
        blendBandLine(line);
    }
    for (std::size_t i = 0; i < overlays_.size(); ++i) {
        overlays_[i].blendStroke(image_, premultiplied(view.overlays[i].color));
    }
    curve_.blendInto(image_, rowsOf);
    if (view.activeRingAlert) {
        QPainter painter(&image_);
        drawRingAlertMarker(painter, view, size);
    }
    labels_.blendInto(image_, rowsOf);
    return image_;
}

// --- what stands still

QImage SpectrumRaster::layer(QImage::Format format) const {
    QImage picture(columns_, rows_, format);
    picture.setDevicePixelRatio(gridKey_->pixelRatio);
    picture.fill(format == QImage::Format_RGB32 ? ground_ : QColor(Qt::transparent));
    return picture;
}

void SpectrumRaster::prepareGrid(const SpectrumView& view, const QSizeF& size, double pixelRatio) {
    const GridKey key{.size = size,
                      .pixelRatio = pixelRatio,
                      .scale = view.scale,
                      .floorDB = view.spectrogramFloorDB,
                      .ceilingDB = view.spectrogramCeilingDB,
                      .minHz = view.minHz,
                      .maxHz = view.maxHz};
    if (gridKey_ == key) {
        return;
    }
    const bool isSameShape = gridKey_ && gridKey_->size == size &&
                             gridKey_->pixelRatio == pixelRatio && gridKey_->minHz == view.minHz &&
                             gridKey_->maxHz == view.maxHz;
    gridKey_ = key;
    isAllAnew_ = true;
    ++layersDrawn_;
    if (!isSameShape) {
        image_ = layer(QImage::Format_RGB32);
        fillColor_.reset();
        bands_.clear();
        bars_.clear();
        linePositions_.clear();
        strokeShares_.resize(slot(rows_ + 2));
        areaShares_.resize(slot(rows_ + 2));
    }
    curveKey_.reset();
    stillColumns_.clear();

    QImage ground = layer(QImage::Format_RGB32);
    {
        QPainter painter(&ground);
        drawRules(painter, view, size);
    }
    takeGroundColumns(ground);
}

// A banner that comes and goes moves labels and leaves the grid as it is.
void SpectrumRaster::prepareLabels(const SpectrumView& view) {
    if (labelsCovered_ == view.covered) {
        return;
    }
    labelsCovered_ = view.covered;
    isAllAnew_ = true;
    QImage labels = layer(QImage::Format_ARGB32_Premultiplied);
    {
        QPainter painter(&labels);
        drawLabels(painter, view, gridKey_->size, typeface_);
    }
    labels_ = SparseLayer(labels);
}

// The grid consists of very few different rows (between rules, on a rule, on dashes), and so of
// very few different columns: two are the same where they agree in one row of each kind.
void SpectrumRaster::takeGroundColumns(const QImage& ground) {
    const auto row = [&](int y) { return reinterpret_cast<const QRgb*>(ground.constScanLine(y)); };
    std::vector<const QRgb*> kinds;
    std::vector<std::size_t> kindOfRow;
    for (int y = 0; y < rows_; ++y) {
        if (y == 0 || !std::equal(row(y), row(y) + columns_, row(y - 1))) {
            kinds.push_back(row(y));
        }
        kindOfRow.push_back(kinds.size() - 1);
    }
    std::map<std::vector<QRgb>, int> known;
    groundColumns_.clear();
    groundOfColumn_.clear();
    std::vector<QRgb> signature(kinds.size());
    for (int x = 0; x < columns_; ++x) {
        std::ranges::transform(kinds, signature.begin(), [x](const QRgb* kind) { return kind[x]; });
        const auto [entry, isNew] = known.try_emplace(signature, static_cast<int>(known.size()));
        if (isNew) {
            std::vector<QRgb>& column = groundColumns_.emplace_back();
            for (const std::size_t kind : kindOfRow) {
                column.push_back(signature[kind]);
            }
        }
        groundOfColumn_.push_back(entry->second);
    }
}

void SpectrumRaster::prepareFill(const QColor& traceColor) {
    if (fillColor_ == traceColor) {
        return;
    }
    fillColor_ = traceColor;
    isAllAnew_ = true;
    stillColumns_.clear();
    QImage column(1, rows_, QImage::Format_ARGB32_Premultiplied);
    column.fill(Qt::transparent);
    QPainter painter(&column);
    painter.fillRect(
        column.rect(),
        Theme::spectrumFillGradient(traceColor, gridKey_->size.height() * gridKey_->pixelRatio));
    painter.end();
    fill_.resize(slot(rows_));
    for (int y = 0; y < rows_; ++y) {
        fill_[slot(y)] = *reinterpret_cast<const QRgb*>(column.constScanLine(y));
    }
}

std::vector<SpectrumRaster::BarPlace> SpectrumRaster::barPlaces(
    const SpectrumView& view, const std::vector<OctaveBand>& bands) const {
    const FrequencyAxis axis = view.frequencyAxis();
    const double ratio = gridKey_->pixelRatio;
    std::vector<BarPlace> places;
    places.reserve(bands.size());
    for (const OctaveBand& band : bands) {
        const QRectF bar = sharpened(bandBar(view, axis, band, view.axisBottomDB(), gridKey_->size),
                                     PixelGrid(ratio));
        places.push_back(
            {static_cast<float>(bar.left() * ratio), static_cast<float>(bar.right() * ratio)});
    }
    return places;
}

void SpectrumRaster::prepareBars(const SpectrumView& view) {
    if (bands_ == view.bands && firstShare_.size() == slot(columns_ + 1)) {
        return;
    }
    bands_ = view.bands;
    isAllAnew_ = true;
    bars_ = barPlaces(view, bands_);
    std::vector<std::vector<BarShare>> byColumn(slot(columns_));
    for (std::size_t i = 0; i < bars_.size(); ++i) {
        const int first = std::max(static_cast<int>(bars_[i].left), 0);
        for (int x = first; x < columns_ && static_cast<float>(x) < bars_[i].right; ++x) {
            const float covered = std::min(bars_[i].right, static_cast<float>(x + 1)) -
                                  std::max(bars_[i].left, static_cast<float>(x));
            const std::uint32_t weight =
                static_cast<std::uint32_t>(std::lround(covered * weightSteps)) * weightStep;
            if (weight > 0) {
                byColumn[slot(x)].push_back({static_cast<int>(i), weight});
            }
        }
    }
    firstShare_.assign(1, 0);
    shares_.clear();
    for (const auto& column : byColumn) {
        shares_.insert(shares_.end(), column.begin(), column.end());
        firstShare_.push_back(static_cast<int>(shares_.size()));
    }
}

void SpectrumRaster::prepareCurve(const SpectrumView& view) {
    if (curveKey_ && curveKey_->curve == view.targetCurve &&
        curveKey_->referenceDB == view.targetCurveReferenceDB) {
        return;
    }
    curveKey_ = {.curve = view.targetCurve, .referenceDB = view.targetCurveReferenceDB};
    labelsCovered_.reset();  // the curve's name is one of them
    isAllAnew_ = true;
    ++layersDrawn_;
    QImage picture = layer(QImage::Format_ARGB32_Premultiplied);
    {
        QPainter painter(&picture);
        drawTargetCurve(painter, view, gridKey_->size);
    }
    curve_ = SparseLayer(picture);
}

const QRgb* SpectrumRaster::stillColumn(int ground, bool hasArea, std::uint32_t weight) {
    if (stillColumns_.empty()) {
        stillColumns_.resize(groundColumns_.size() * 2 * (weightSteps + 1));
    }
    if (!hasArea && weight == 0) {
        return groundColumns_[slot(ground)].data();
    }
    const std::size_t index =
        (slot(ground) * 2 + (hasArea ? 1 : 0)) * (weightSteps + 1) + weight / weightStep;
    std::vector<QRgb>& column = stillColumns_[index];
    if (column.empty()) {
        column = groundColumns_[slot(ground)];
        for (std::size_t y = 0; y < column.size(); ++y) {
            if (hasArea) {
                column[y] = over(column[y], fill_[y], fullWeight);
            }
            column[y] = over(column[y], fill_[y], weight);
        }
    }
    return column.data();
}

// --- what moves

const std::vector<double>& SpectrumRaster::linePositions(const SpectrumView& view,
                                                         double sampleRate) {
    const auto known = std::ranges::find_if(linePositions_, [&](const LinePositions& positions) {
        return positions.sampleRate == sampleRate && positions.fftSize == view.fftSize;
    });
    if (known != linePositions_.end()) {
        return known->x;
    }
    const FrequencyAxis axis = view.frequencyAxis();
    std::vector<double> x;
    for (int line = 0; line < view.fftSize; ++line) {
        const double frequencyHz = sampleRate * line / view.fftSize;
        if (frequencyHz > view.maxHz) {
            break;
        }
        x.push_back(axis.x(frequencyHz, gridKey_->size.width() * gridKey_->pixelRatio));
    }
    return linePositions_
        .emplace_back(
            LinePositions{.sampleRate = sampleRate, .fftSize = view.fftSize, .x = std::move(x)})
        .x;
}

void SpectrumRaster::placeTrace(TraceColumns& trace, const SpectrumView& view,
                                const std::vector<double>& levelsDB, double sampleRate,
                                double offsetDB, double width) {
    const std::vector<double>& x = linePositions(view, sampleRate);
    const std::size_t count = std::min(x.size(), levelsDB.size());
    const double height = gridKey_->size.height() * gridKey_->pixelRatio;
    points_.clear();
    for (std::size_t line = 0; line < count; ++line) {
        if (sampleRate * static_cast<double>(line) / view.fftSize >= view.minHz) {
            points_.emplace_back(x[line], view.y(levelsDB[line] - offsetDB, height));
        }
    }
    trace.start(columns_, rows_);
    trace.addSmoothed(points_);
    trace.stroke(width * gridKey_->pixelRatio / 2.0);
}

void SpectrumRaster::barTops(const SpectrumView& view, const std::vector<double>& levelsDB,
                             double offsetDB, std::vector<float>& tops) const {
    const double height = gridKey_->size.height() * gridKey_->pixelRatio;
    tops.resize(levelsDB.size());
    for (std::size_t i = 0; i < levelsDB.size(); ++i) {
        tops[i] = static_cast<float>(view.y(levelsDB[i] - offsetDB, height));
    }
}

void SpectrumRaster::placeMoving(const SpectrumView& view) {
    const Contents contents{.line = view.showsLine() && !view.lineSpectrumDB.empty(),
                            .hold = view.showsLine() && view.showPeakHold &&
                                    view.linePeakHoldDB.size() == view.lineSpectrumDB.size(),
                            .bars = view.showsBands() && match(view.bands, view.bandLevelsDB),
                            .ring = view.activeRingAlert.has_value()};
    isAllAnew_ = isAllAnew_ || contents != contents_ || contents.ring;
    contents_ = contents;
    if (contents.line) {
        placeTrace(line_, view, view.lineSpectrumDB, view.sampleRate, view.levelOffsetDB,
                   SpectrumStroke::line);
    }
    if (contents.hold) {
        placeTrace(hold_, view, view.linePeakHoldDB, view.sampleRate, view.levelOffsetDB,
                   SpectrumStroke::linePeakHold);
    }
    bandLines_.clear();
    if (contents.bars) {
        barTops(view, view.bandLevelsDB, view.levelOffsetDB, barTops_);
        placeBandLines(bars_, barTops_, SpectrumStroke::bandCap, view.traceColor);
    }
    if (view.showsBands() && view.showPeakHold && match(view.bands, view.bandPeakHoldDB)) {
        barTops(view, view.bandPeakHoldDB, view.levelOffsetDB, lineTops_);
        placeBandLines(bars_, lineTops_, SpectrumStroke::bandPeakHold, view.peakColor);
    }
    overlays_.resize(view.showsLine() ? view.overlays.size() : 0);
    for (std::size_t i = 0; i < view.overlays.size(); ++i) {
        const SpectrumOverlay& overlay = view.overlays[i];
        if (view.showsLine()) {
            placeTrace(overlays_[i], view, overlay.lineSpectrumDB, overlay.sampleRate,
                       overlay.levelOffsetDB, SpectrumStroke::overlay);
        } else if (match(overlay.bands, overlay.bandLevelsDB)) {
            barTops(view, overlay.bandLevelsDB, overlay.levelOffsetDB, lineTops_);
            placeBandLines(barPlaces(view, overlay.bands), lineTops_, SpectrumStroke::bandPeakHold,
                           overlay.color);
        }
    }
}

void SpectrumRaster::placeBandLines(const std::vector<BarPlace>& places,
                                    const std::vector<float>& tops, double thickness,
                                    const QColor& color) {
    const double height = thickness * gridKey_->pixelRatio;
    const QRgb pixel = premultiplied(color);
    for (std::size_t i = 0; i < places.size(); ++i) {
        bandLines_.push_back({QRectF(QPointF(places[i].left, tops[i] - height / 2.0),
                                     QPointF(places[i].right, tops[i] + height / 2.0)),
                              pixel});
    }
}

void SpectrumRaster::findRenewed() {
    renewed_.start(columns_, rows_, isAllAnew_);
    if (contents_.line) {
        renewStroke(line_);
        for (int column = 0; column < columns_; ++column) {
            renewed_.add(column, column + 1, line_.areaRows(column));
        }
    }
    if (contents_.hold) {
        renewStroke(hold_);
    }
    if (contents_.bars) {
        for (std::size_t i = 0; i < bars_.size(); ++i) {
            const int top = static_cast<int>(barTops_[i]);
            renewed_.add(static_cast<int>(bars_[i].left),
                         static_cast<int>(std::ceil(bars_[i].right)),
                         {std::min(top, rows_), std::min(top + 1, rows_)});
        }
    }
    for (const BandLine& line : bandLines_) {
        const QRect pixels = line.rect.toAlignedRect() & image_.rect();
        if (!pixels.isEmpty()) {
            renewed_.add(pixels.left(), pixels.left() + pixels.width(),
                         {pixels.top(), pixels.top() + pixels.height()});
        }
    }
    for (const TraceColumns& overlay : overlays_) {
        renewStroke(overlay);
    }
    renewedArea_ = renewed_.bounds();
}

void SpectrumRaster::renewStroke(const TraceColumns& trace) {
    for (int column = 0; column < columns_; ++column) {
        const Rows rows = trace.strokeRows(column);
        if (!rows.isEmpty()) {
            renewed_.add(column, column + 1, rows);
        }
    }
}

void SpectrumRaster::composeColumn(const SpectrumView& view, int column, Rows rows, QRgb* pixels) {
    std::array<Rows, 2> blended{};
    const int areaFrom = composeArea(view, column, rows, pixels, blended[0]);
    if (contents_.hold) {
        const Rows stroke = hold_.strokeCoverage(column, strokeShares_);
        const QRgb color = premultiplied(view.peakColor);
        for (int y = stroke.first; y < stroke.end; ++y) {
            pixels[y] = over(pixels[y], color, PixelBlend::weight(strokeShares_[slot(y)]));
        }
        blended[1] = stroke;
    }
    if (contents_.bars) {
        composeBars(column, rows, pixels, areaFrom, blended);
    }
}

// Ground, area and line. Returns the row from which on the area covers all.
int SpectrumRaster::composeArea(const SpectrumView& view, int column, Rows rows, QRgb* pixels,
                                Rows& blended) {
    const int ground = groundOfColumn_[slot(column)];
    const QRgb* bare = stillColumn(ground, false, 0);
    if (!contents_.line) {
        std::copy(bare + rows.first, bare + rows.end, pixels + rows.first);
        return rows_;
    }
    const Rows stroke = line_.strokeCoverage(column, strokeShares_);
    const Rows area = line_.areaCoverage(column, areaShares_);
    const QRgb* covered = stillColumn(ground, true, 0);
    std::copy(bare + rows.first, bare + area.end, pixels + rows.first);
    std::copy(covered + area.end, covered + rows.end, pixels + area.end);
    for (int y = area.first; y < area.end; ++y) {
        pixels[y] = over(pixels[y], fill_[slot(y)], PixelBlend::weight(areaShares_[slot(y)]));
    }
    const QRgb color = premultiplied(view.traceColor);
    for (int y = stroke.first; y < stroke.end; ++y) {
        pixels[y] = over(pixels[y], color, PixelBlend::weight(strokeShares_[slot(y)]));
    }
    blended = stroke;
    if (!area.isEmpty()) {
        blended.first = stroke.isEmpty() ? area.first : std::min(stroke.first, area.first);
        blended.end = std::max(stroke.end, area.end);
    }
    return area.end;
}

void SpectrumRaster::composeBars(int column, Rows rows, QRgb* pixels, int areaFrom,
                                 std::span<const Rows> blended) {
    const int first = firstShare_[slot(column)];
    const int end = firstShare_[slot(column) + 1];
    for (int index = first; index < end; ++index) {
        const BarShare& share = shares_[slot(index)];
        const float top = barTops_[slot(share.bar)];
        int y = static_cast<int>(top);
        if (y >= rows_) {
            continue;
        }
        const auto blend = [&](int until) {
            for (; y < until; ++y) {
                pixels[y] = over(pixels[y], fill_[slot(y)], share.weight);
            }
        };
        const float inTopRow = static_cast<float>(y + 1) - top;
        pixels[y] = over(pixels[y], fill_[slot(y)],
                         PixelBlend::weight(inTopRow * static_cast<float>(share.weight) /
                                            static_cast<float>(fullWeight)));
        ++y;
        if (end - first > 1) {
            blend(rows.end);
            continue;
        }
        // Copied where nothing but ground and area lies under the bar.
        while (y < rows.end) {
            int clearUntil = rows.end;
            int blendedUntil = y;
            for (const Rows& drawn : blended) {
                if (drawn.contains(y)) {
                    blendedUntil = std::max(blendedUntil, drawn.end);
                } else if (drawn.first > y && !drawn.isEmpty()) {
                    clearUntil = std::min(clearUntil, drawn.first);
                }
            }
            if (blendedUntil > y) {
                blend(blendedUntil);
            } else {
                copyBarColumn(column, pixels, {y, clearUntil}, areaFrom, share.weight);
                y = clearUntil;
            }
        }
    }
}

void SpectrumRaster::copyBarColumn(int column, QRgb* pixels, Rows rows, int areaFrom,
                                   std::uint32_t weight) {
    const int ground = groundOfColumn_[slot(column)];
    const int border = std::clamp(areaFrom, rows.first, rows.end);
    if (rows.first < border) {
        const QRgb* still = stillColumn(ground, false, weight);
        std::copy(still + rows.first, still + border, pixels + rows.first);
    }
    if (border < rows.end) {
        const QRgb* still = stillColumn(ground, true, weight);
        std::copy(still + border, still + rows.end, pixels + border);
    }
}

void SpectrumRaster::blendBandLine(const BandLine& line) {
    const QRectF& rect = line.rect;
    const auto covered = [](double start, double end, int cell) {
        return std::min(end, cell + 1.0) - std::max(start, static_cast<double>(cell));
    };
    const int left = std::max(static_cast<int>(std::floor(rect.left())), 0);
    const int right = std::min(static_cast<int>(std::ceil(rect.right())), columns_);
    const int top = std::max(static_cast<int>(std::floor(rect.top())), 0);
    const int bottom = std::min(static_cast<int>(std::ceil(rect.bottom())), rows_);
    for (int y = top; y < bottom; ++y) {
        auto* row = reinterpret_cast<QRgb*>(image_.scanLine(y));
        const double share = covered(rect.top(), rect.bottom(), y);
        for (int x = left; x < right; ++x) {
            row[x] = over(row[x], line.color,
                          PixelBlend::weight(share * covered(rect.left(), rect.right(), x)));
        }
    }
}

}  // namespace TarvaneApp
