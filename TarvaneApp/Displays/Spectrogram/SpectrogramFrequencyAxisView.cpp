#include "Displays/Spectrogram/SpectrogramFrequencyAxisView.h"

#include <QFontMetricsF>
#include <QPainter>
#include <algorithm>

#include "Displays/FrequencyAxis.h"
#include "Displays/TabularText.h"

namespace TarvaneApp {

namespace {

constexpr double endInset = 12.0;

QFont labelFont(const Typeface& typeface) {
    return typeface.systemFont(Theme::Text::tick, QFont::Medium);
}

}  // namespace

std::vector<SpectrogramFrequencyAxisView::Label> SpectrogramFrequencyAxisView::labels(
    double width, const Typeface& typeface) const {
    const QFont font = labelFont(typeface);
    const FrequencyAxis axis(minHz, maxHz);
    std::vector<Label> labels;
    for (const double frequencyHz : FrequencyAxis::byImportance) {
        const double x =
            std::clamp(axis.x(frequencyHz, width), endInset, std::max(width - endInset, endInset));
        const QString text = FrequencyAxis::label(frequencyHz);
        const double textWidth = TabularText::width(text, font);
        const QRectF rect(x - textWidth / 2.0, 0.0, textWidth, height);
        const QRectF withGap = rect.adjusted(-Theme::Space::label, 0.0, Theme::Space::label, 0.0);
        if (std::ranges::none_of(
                labels, [&](const Label& other) { return other.rect.intersects(withGap); })) {
            labels.push_back({text, rect});
        }
    }
    return labels;
}

void paint(QPainter& painter, const SpectrogramFrequencyAxisView& view, double width,
           const Typeface& typeface) {
    const QFont font = labelFont(typeface);
    const double baseline =
        (SpectrogramFrequencyAxisView::height + QFontMetricsF(font).capHeight()) / 2.0;
    painter.setPen(Theme::axisText);
    for (const SpectrogramFrequencyAxisView::Label& label : view.labels(width, typeface)) {
        TabularText::draw(painter, QPointF(label.rect.left(), baseline), label.text, font);
    }
}

}  // namespace TarvaneApp
