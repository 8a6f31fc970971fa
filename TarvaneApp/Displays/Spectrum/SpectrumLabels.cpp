#include "Displays/Spectrum/SpectrumLabels.h"

#include <QFontMetricsF>
#include <QPainter>
#include <algorithm>
#include <optional>

#include "Displays/FrequencyAxis.h"
#include "Displays/Plate.h"
#include "Displays/Spectrum/SpectrumView.h"
#include "Displays/TabularText.h"

namespace TarvaneApp {

namespace {

constexpr double labelPlateOpacity = 0.55;
constexpr double coloredPlateOpacity = 0.9;  // over bars of any colour
constexpr double frequencyLabelGap = 3.0;    // between a rule and its label
constexpr double frequencyLabelTop = 10.0;   // above the bottom
constexpr double flippedWidth = 20.0;        // a rule nearer to the right edge has its label inside
constexpr double levelLabelLeft = 4.0;
constexpr double plateMargin = 1.0;
constexpr double lowestLabelShift = -20.0;  // or as much more as clears the frequency labels
constexpr double highestLabelShift = 2.0;
constexpr double labelShift = -6.0;
constexpr double floorCeilingGap = 4.0;  // to the right edge
constexpr double floorCeilingShift = -15.0;
constexpr double largestNameShare = 0.4;
constexpr double furtherIn = 64.0;  // beside the label of the ceiling

QFont spectrumLabelFont(const Typeface& typeface) {
    return typeface.systemFont(Theme::Text::tick, QFont::Medium);
}

QString levelLabel(double levelDB) {
    const int level = static_cast<int>(levelDB);
    return (level >= 1 ? QStringLiteral("+") : QString()) + QString::number(level);
}

// Places labels one after another, each only where it is clear of those before it.
class LabelPlacer {
  public:
    LabelPlacer(const QSizeF& size, const Typeface& typeface)
        : bounds_(QPointF(), size),
          font_(spectrumLabelFont(typeface)),
          height_(QFontMetricsF(font_).height()),
          ascent_(QFontMetricsF(font_).ascent()) {}

    // The top of a label just above the bottom row.
    double topOverBottomRow() const { return lowestTop() - height_ - 3.0; }
    double width(const QString& text) const { return TabularText::width(text, font_); }

    // No label is placed there.
    void take(const QRectF& rect) {
        if (!rect.isEmpty()) {
            taken_.push_back(rect);
        }
    }

    double height() const { return height_; }

    // Baselines stay inside the graph; numbers and capitals have nothing below them.
    bool place(std::vector<SpectrumLabel>& labels, const QString& text, double left, double top,
               const QColor& color = Theme::primaryText) {
        const SpectrumLabel label{
            text, QRectF(left, std::min(top, lowestTop()), width(text), height_), color,
            color == Theme::primaryText ? labelPlateOpacity : coloredPlateOpacity};
        const QRectF ink(label.rect.left(), label.rect.top(), label.rect.width(), ascent_);
        const bool isClear =
            bounds_.contains(ink) && std::ranges::none_of(taken_, [&](const QRectF& other) {
                return other.intersects(label.plate());
            });
        if (isClear) {
            taken_.push_back(label.plate());
            labels.push_back(label);
        }
        return isClear;
    }

  private:
    double lowestTop() const {
        return std::min(bounds_.bottom() - frequencyLabelTop, bounds_.bottom() - 1.0 - ascent_);
    }

    QRectF bounds_;
    QFont font_;
    double height_;
    double ascent_;
    std::vector<QRectF> taken_;
};

void placeFrequencies(LabelPlacer& placer, std::vector<SpectrumLabel>& labels,
                      const SpectrumView& view, const QSizeF& size) {
    const FrequencyAxis axis = view.frequencyAxis();
    for (const double frequencyHz : FrequencyAxis::byImportance) {
        const QString text = FrequencyAxis::label(frequencyHz);
        const double x = axis.x(frequencyHz, size.width());
        const bool isInside = x <= size.width() - flippedWidth;
        placer.place(labels, text,
                     isInside ? x + frequencyLabelGap : x - frequencyLabelGap - placer.width(text),
                     size.height() - frequencyLabelTop);
    }
}

void placeLevels(LabelPlacer& placer, std::vector<SpectrumLabel>& labels, const SpectrumView& view,
                 const QSizeF& size) {
    const std::vector<double> levels = view.levelGridLines();
    const auto place = [&](double levelDB, double shift) {
        placer.place(labels, levelLabel(levelDB), levelLabelLeft,
                     view.y(levelDB, size.height()) + shift);
    };
    // The lowest stands well above its rule, the highest under it. Where they would take the next
    // one's place they are left out.
    const double lowest = std::min(lowestLabelShift, placer.topOverBottomRow() - size.height());
    const double nextBottom =
        view.y(levels[1], size.height()) + labelShift + placer.height() + 2.0 * plateMargin;
    if (size.height() + lowest >= nextBottom) {
        place(levels.front(), lowest);
    }
    if (highestLabelShift + placer.height() + plateMargin <=
        view.y(levels[levels.size() - 2], size.height())) {
        place(levels.back(), highestLabelShift);
    }
    for (std::size_t i = 1; i + 1 < levels.size(); ++i) {
        place(levels[i], labelShift);
    }
}

// Above its line; below it where there is no room above. That of a line close to the bottom row is
// above that.
void placeFloorCeiling(LabelPlacer& placer, std::vector<SpectrumLabel>& labels,
                       const SpectrumView& view, const QSizeF& size) {
    const auto place = [&](const std::optional<double>& levelDB, const QString& text) {
        const auto y = view.ruleY(levelDB, size.height());
        if (!y) {
            return;
        }
        const double left = size.width() - floorCeilingGap - placer.width(text);
        const double overBottomRow = placer.topOverBottomRow();
        if (placer.place(labels, text, left, *y + floorCeilingShift) ||
            placer.place(labels, text, left, *y + floorCeilingGap)) {
            return;
        }
        if (*y + floorCeilingShift >= overBottomRow) {
            placer.place(labels, text, left, overBottomRow);
        }
    };
    place(view.spectrogramCeilingDB, QStringLiteral("CEILING"));
    place(view.spectrogramFloorDB, QStringLiteral("FLOOR"));
}

// Over the curve's right end, under it where there is no room, or further in. A name that would go
// over half of a small graph is left out.
void placeCurve(LabelPlacer& placer, std::vector<SpectrumLabel>& labels, const SpectrumView& view,
                const QSizeF& size) {
    if (!view.targetCurve || view.targetCurve->name.empty() || view.targetCurve->points.empty()) {
        return;
    }
    const QString name = QString::fromStdString(view.targetCurve->name);
    const double width = placer.width(name);
    if (width > largestNameShare * size.width()) {
        return;
    }
    const FrequencyAxis axis = view.frequencyAxis();
    for (const double inset : {floorCeilingGap, furtherIn, 2.0 * furtherIn}) {
        const double left = size.width() - inset - width;
        const auto y = [&](double x) {
            const auto level = view.targetCurve->level(axis.frequencyHz(x, size.width()));
            return view.y(level.value_or(0.0) + view.targetCurveReferenceDB, size.height());
        };
        const double over = std::min(y(left), y(left + width)) + floorCeilingShift;
        const double under = std::max(y(left), y(left + width)) + floorCeilingGap;
        if (placer.place(labels, name, left, over, Theme::targetCurve) ||
            placer.place(labels, name, left, under, Theme::targetCurve)) {
            return;
        }
    }
}

}  // namespace

SpectrumLabels layoutLabels(const SpectrumView& view, const QSizeF& size,
                            const Typeface& typeface) {
    LabelPlacer placer(size, typeface);
    placer.take(view.covered);
    SpectrumLabels labels;
    placeFrequencies(placer, labels.grid, view, size);
    placeLevels(placer, labels.grid, view, size);
    placeFloorCeiling(placer, labels.floorCeiling, view, size);
    placeCurve(placer, labels.curve, view, size);
    return labels;
}

void paintLabels(QPainter& painter, const std::vector<SpectrumLabel>& labels,
                 const Typeface& typeface) {
    const QFont font = spectrumLabelFont(typeface);
    const double ascent = QFontMetricsF(font).ascent();
    for (const SpectrumLabel& label : labels) {
        paintPlate(painter, label.plate(), Theme::Radius::label,
                   Theme::faded(Theme::background, label.plateOpacity));
        painter.setPen(label.color);
        TabularText::draw(painter, QPointF(label.rect.left(), label.rect.top() + ascent),
                          label.text, font);
    }
}

}  // namespace TarvaneApp
