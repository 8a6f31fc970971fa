#include "Displays/TraceColumns.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "Displays/PixelBlend.h"

namespace TarvaneApp {

namespace {

constexpr float infinity = std::numeric_limits<float>::infinity();

// How far the widest stroke reaches to either side, in cuts.
constexpr int margin = 64;

// Shares of rows as a running sum: where a stretch begins, its share of that row is added there
// and the rest to the next row; where it ends, the same is subtracted.
class RunningShares {
  public:
    RunningShares(std::vector<float>& shares, TraceColumns::Rows rows)
        : shares_(shares), rows_(rows) {
        std::fill(shares.begin() + rows.first, shares.begin() + rows.end + 2, 0.0F);
    }
    void begin(float y) { add(y, 1.0F / TraceColumns::cutsPerColumn); }
    void end(float y) { add(y, -1.0F / TraceColumns::cutsPerColumn); }
    void sum() {
        float running = 0.0F;
        for (int row = rows_.first; row < rows_.end; ++row) {
            running += shares_[static_cast<std::size_t>(row)];
            shares_[static_cast<std::size_t>(row)] = std::clamp(running, 0.0F, 1.0F);
        }
    }

  private:
    void add(float y, float amount) {
        const auto row = static_cast<std::size_t>(y);
        const float inNext = (y - static_cast<float>(row)) * amount;
        shares_[row] += amount - inNext;
        shares_[row + 1] += inNext;
    }

    std::vector<float>& shares_;
    TraceColumns::Rows rows_;
};

TraceColumns::Rows rowsOf(float least, float greatest, int rows) {
    if (!(least <= greatest)) {
        return {};
    }
    const auto first = static_cast<int>(least);
    return {std::min(first, rows),
            std::clamp(static_cast<int>(std::ceil(greatest)), std::min(first + 1, rows), rows)};
}

}  // namespace

void TraceColumns::start(int columns, int rows) {
    rows_ = rows;
    cuts_ = columns * cutsPerColumn;
    const auto length = static_cast<std::size_t>(cuts_) + 2U * margin;
    least_.assign(length, infinity);
    greatest_.assign(length, -infinity);
}

void TraceColumns::addStraight(std::span<const QPointF> points) {
    for (std::size_t i = 1; i < points.size(); ++i) {
        addPiece(points[i - 1], (points[i - 1] + points[i]) / 2.0, points[i]);
        addCut(points[i].x() * cutsPerColumn, points[i].y());
    }
}

void TraceColumns::addSmoothed(std::span<const QPointF> points) {
    if (points.empty()) {
        return;
    }
    QPointF from = points.front();
    for (std::size_t i = 1; i + 1 < points.size(); ++i) {
        const QPointF to = (points[i] + points[i + 1]) / 2.0;
        addPiece(from, points[i], to);
        from = to;
    }
    addPiece(from, (from + points.back()) / 2.0, points.back());
}

void TraceColumns::addCut(double position, double y) {
    const auto cut = static_cast<int>(position);
    if (position >= 0.0 && cut < cuts_) {
        const int place = cut + margin;
        const auto index = static_cast<std::size_t>(place);
        least_[index] = std::min(least_[index], static_cast<float>(y));
        greatest_[index] = std::max(greatest_[index], static_cast<float>(y));
    }
}

// A quadratic piece, x never falling. The curve is taken in the middle of each cut, and where it
// turns, so that no peak is lost between two cuts.
void TraceColumns::addPiece(const QPointF& from, const QPointF& control, const QPointF& to) {
    const double start = from.x() * cutsPerColumn;
    const double end = to.x() * cutsPerColumn;
    const double firstCut = std::max(std::ceil(start - 0.5), 0.0);
    const double lastCut = std::min(end - 0.5, cuts_ - 1.0);
    const bool turns = (control.y() < from.y()) == (control.y() < to.y());
    if (turns) {
        const QPointF turn = (from + 2.0 * control + to) / 4.0;
        addCut(turn.x() * cutsPerColumn, turn.y());
    }
    // x(t) = start + b·t + a·t², solved for t in the form that works for a = 0, too.
    const double b = 2.0 * (control.x() * cutsPerColumn - start);
    const double a = end - start - b;
    for (double cut = firstCut; cut <= lastCut; cut += 1.0) {
        const double distance = cut + 0.5 - start;
        const double root = b + std::sqrt(std::max(b * b + 4.0 * a * distance, 0.0));
        const double t = root > 0.0 ? std::clamp(2.0 * distance / root, 0.0, 1.0) : 1.0;
        const double u = 1.0 - t;
        addCut(cut + 0.5, u * u * from.y() + 2.0 * u * t * control.y() + t * t * to.y());
    }
}

void TraceColumns::stroke(double halfWidth) {
    const auto count = static_cast<std::size_t>(cuts_);
    top_.assign(count, infinity);
    bottom_.assign(count, -infinity);
    const int reach = std::min(static_cast<int>(halfWidth * cutsPerColumn), margin);
    const auto limit = static_cast<float>(rows_);
    for (int shift = -reach; shift <= reach; ++shift) {
        const double distance = static_cast<double>(shift) / cutsPerColumn;
        const auto height =
            static_cast<float>(std::sqrt(halfWidth * halfWidth - distance * distance));
        const float* least = least_.data() + margin + shift;
        const float* greatest = greatest_.data() + margin + shift;
        for (std::size_t i = 0; i < count; ++i) {
            top_[i] = std::min(top_[i], least[i] - height);
            bottom_[i] = std::max(bottom_[i], greatest[i] + height);
        }
    }
    for (std::size_t i = 0; i < count; ++i) {
        top_[i] = top_[i] > 0.0F ? top_[i] : 0.0F;
        bottom_[i] = bottom_[i] < limit ? bottom_[i] : limit;
    }
}

void TraceColumns::blendStroke(QImage& picture, QRgb color) {
    const auto stride = picture.bytesPerLine() / static_cast<qsizetype>(sizeof(QRgb));
    auto* pixels = reinterpret_cast<QRgb*>(picture.bits());
    shares_.resize(static_cast<std::size_t>(rows_) + 2U);
    for (int x = 0; x < cuts_ / cutsPerColumn; ++x) {
        const Rows rows = strokeCoverage(x, shares_);
        for (int y = rows.first; y < rows.end; ++y) {
            QRgb& pixel = pixels[y * stride + x];
            pixel = PixelBlend::over(pixel, color,
                                     PixelBlend::weight(shares_[static_cast<std::size_t>(y)]));
        }
    }
}

TraceColumns::Rows TraceColumns::strokeRows(int column) const {
    const int place = column * cutsPerColumn;
    const float* top = top_.data() + static_cast<std::size_t>(place);
    const float* bottom = bottom_.data() + static_cast<std::size_t>(place);
    return rowsOf(*std::min_element(top, top + cutsPerColumn),
                  *std::max_element(bottom, bottom + cutsPerColumn), rows_);
}

TraceColumns::Rows TraceColumns::strokeCoverage(int column, std::vector<float>& shares) const {
    const Rows rows = strokeRows(column);
    if (rows.isEmpty()) {
        return rows;
    }
    const int place = column * cutsPerColumn;
    const float* top = top_.data() + static_cast<std::size_t>(place);
    const float* bottom = bottom_.data() + static_cast<std::size_t>(place);
    RunningShares running(shares, rows);
    for (int cut = 0; cut < cutsPerColumn; ++cut) {
        if (top[cut] < bottom[cut]) {
            running.begin(top[cut]);
            running.end(bottom[cut]);
        }
    }
    running.sum();
    return rows;
}

// Infinite in a cut that the trace doesn't reach.
float TraceColumns::areaEdge(int place) const {
    const float least = least_[static_cast<std::size_t>(place)];
    const float greatest = greatest_[static_cast<std::size_t>(place)];
    return least <= greatest
               ? std::clamp((least + greatest) / 2.0F, 0.0F, static_cast<float>(rows_))
               : infinity;
}

TraceColumns::Rows TraceColumns::areaRows(int column) const {
    const int place = column * cutsPerColumn + margin;
    float highest = infinity;
    float lowest = -infinity;
    for (int cut = 0; cut < cutsPerColumn; ++cut) {
        const float edge = areaEdge(place + cut);
        highest = std::min(highest, edge);
        lowest = std::max(lowest, edge);
    }
    if (highest == infinity) {
        return {.first = rows_, .end = rows_};
    }
    const Rows rows = rowsOf(highest, std::min(lowest, static_cast<float>(rows_)), rows_);
    return {.first = rows.first, .end = lowest == infinity ? rows_ : rows.end};
}

TraceColumns::Rows TraceColumns::areaCoverage(int column, std::vector<float>& shares) const {
    const Rows rows = areaRows(column);
    if (rows.isEmpty()) {
        return rows;
    }
    const int place = column * cutsPerColumn + margin;
    RunningShares running(shares, rows);
    for (int cut = 0; cut < cutsPerColumn; ++cut) {
        const float edge = areaEdge(place + cut);
        if (edge != infinity) {
            running.begin(edge);
        }
    }
    running.sum();
    return rows;
}

}  // namespace TarvaneApp
