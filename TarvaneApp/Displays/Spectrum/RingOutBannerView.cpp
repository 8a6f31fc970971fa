#include "Displays/Spectrum/RingOutBannerView.h"

#include <QFontMetricsF>
#include <QPainter>
#include <cmath>

#include "Displays/PixelGrid.h"
#include "Displays/Plate.h"
#include "Displays/TabularText.h"

namespace TarvaneApp {

namespace {

constexpr double graphMargin = 10.0;
constexpr double paddingAcross = 14.0;
constexpr double radius = 8.0;
constexpr double livePlateOpacity = 0.95;
// Nothing of the graph is legible through it.
constexpr double heldPlateOpacity = 0.93;
// What is large stays 3:1 above its plate.
constexpr double heldTextOpacity = 0.8;

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
    const QRectF right(graph.width() - graphMargin - width, graphMargin, width, height);
    const QRectF left(graphMargin, graphMargin, width, height);
    const double ring = axis.x(alert->frequencyHz, graph.width());
    const auto covers = [ring](const QRectF& plate) {
        return plate.left() <= ring && ring <= plate.right();
    };
    return covers(right) && !covers(left) ? left : right;
}

void RingOutBannerView::paint(QPainter& painter, const QSizeF& graph,
                              const Typeface& typeface) const {
    if (!alert) {
        return;
    }
    const QRectF plate = rect(graph, typeface);
    painter.save();
    painter.setOpacity(presence);
    paintPlate(painter, plate, radius,
               Theme::faded(Theme::panelBackground, isLive ? livePlateOpacity : heldPlateOpacity));
    const double textOpacity = isLive ? 1.0 : heldTextOpacity;
    const PixelGrid grid(painter);
    const double hairline = grid.lineWidth(1.0);
    const double inset = hairline / 2.0;
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(Theme::faded(Theme::ringAlert, textOpacity), hairline));
    painter.drawRoundedRect(grid.snapped(plate).adjusted(inset, inset, -inset, -inset), radius,
                            radius);

    const QFontMetricsF metrics(frequencyFont(typeface));
    const double baseline = plate.top() + Theme::Space::row + metrics.ascent();
    double x = plate.left() + paddingAcross;
    const auto draw = [&](const QFont& font, const QColor& color, const QString& text, double gap) {
        painter.setPen(color);
        TabularText::draw(painter, QPointF(x, baseline), text, font);
        x += widthOf(font, text) + gap;
    };
    draw(frequencyFont(typeface), Theme::faded(Theme::ringAlert, textOpacity), frequencyText(),
         Theme::Space::row);
    draw(noteFont(typeface), Theme::faded(Theme::primaryText, textOpacity), noteText(),
         Theme::Space::label);
    // Already as quiet as a small text can be.
    draw(noteFont(typeface), Theme::axisText, centsText(), 0.0);
    painter.restore();
}

}  // namespace TarvaneApp
