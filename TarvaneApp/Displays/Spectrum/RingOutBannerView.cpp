#include "Displays/Spectrum/RingOutBannerView.h"

#include <QFontMetricsF>
#include <QPainter>
#include <cmath>

#include "Displays/Plate.h"
#include "Displays/TabularText.h"

namespace TarvaneApp {

namespace {

constexpr double graphMargin = 10.0;
constexpr double paddingAcross = 14.0;
constexpr double radius = 8.0;
constexpr double plateOpacity = 0.95;
constexpr double heldOpacity = 0.55;

QFont frequencyFont(const Typeface& typeface) {
    return typeface.roundedFont(Theme::Text::banner, QFont::Bold);
}

QFont noteFont(const Typeface& typeface) {
    return typeface.systemFont(Theme::Text::title, QFont::DemiBold);
}

double widthOf(const QFont& font, const QString& text) {
    return std::ceil(TabularText::width(text, font));
}

}  // namespace

QString RingOutBannerView::frequencyText() const {
    if (!alert) {
        return {};
    }
    const double hz = alert->frequencyHz;
    return hz < 1000.0 ? QString::number(hz, 'f', 0) + QStringLiteral("Hz")
                       : QString::number(hz / 1000.0, 'f', 2) + QStringLiteral("kHz");
}

QString RingOutBannerView::noteText() const {
    return alert ? QString::fromStdString(alert->note.name) : QString();
}

QString RingOutBannerView::centsText() const {
    if (!alert) {
        return {};
    }
    const auto cents = static_cast<int>(std::lround(alert->note.centsOffset));
    return (cents >= 0 ? QStringLiteral("+") : QString()) + QString::number(cents) + u'¢';
}

QString RingOutBannerView::spokenText() const {
    return alert ? frequencyText() + u' ' + noteText() + u' ' + centsText() : QString();
}

QRectF RingOutBannerView::rect(const QSizeF& graph, const Typeface& typeface) const {
    if (!alert) {
        return {};
    }
    const double width = widthOf(frequencyFont(typeface), frequencyText()) + Theme::Space::row +
                         widthOf(noteFont(typeface), noteText()) + Theme::Space::label +
                         widthOf(noteFont(typeface), centsText()) + 2.0 * paddingAcross;
    const double height =
        std::ceil(QFontMetricsF(frequencyFont(typeface)).height()) + 2.0 * Theme::Space::row;
    return {graph.width() - graphMargin - width, graphMargin, width, height};
}

void RingOutBannerView::paint(QPainter& painter, const QSizeF& graph,
                              const Typeface& typeface) const {
    if (!alert) {
        return;
    }
    const QRectF plate = rect(graph, typeface);
    painter.save();
    painter.setOpacity(presence * (isLive ? 1.0 : heldOpacity));
    paintPlate(painter, plate, radius, Theme::faded(Theme::panelBackground, plateOpacity));

    const QFontMetricsF metrics(frequencyFont(typeface));
    const double baseline = plate.top() + Theme::Space::row + metrics.ascent();
    double x = plate.left() + paddingAcross;
    const auto draw = [&](const QFont& font, const QColor& color, const QString& text, double gap) {
        painter.setPen(color);
        TabularText::draw(painter, QPointF(x, baseline), text, font);
        x += widthOf(font, text) + gap;
    };
    draw(frequencyFont(typeface), Theme::ringAlert, frequencyText(), Theme::Space::row);
    draw(noteFont(typeface), Theme::primaryText, noteText(), Theme::Space::label);
    draw(noteFont(typeface), Theme::axisText, centsText(), 0.0);
    painter.restore();
}

}  // namespace TarvaneApp
