#include "Displays/Spectrogram/SpectrogramStatusBadge.h"
#include "Displays/Plate.h"

#include <QFontMetricsF>
#include <QPainter>
#include <algorithm>

namespace TarvaneApp {

namespace {

constexpr double cornerInset = Theme::Space::related;  // from the plot's corner
constexpr double marginAcross = Theme::Space::related;
constexpr double marginUpDown = 3.0;
constexpr double plateOpacity = 0.85;

QFont badgeFont(const Typeface& typeface) {
    return typeface.monospacedFont(Theme::Text::tick, QFont::DemiBold);
}

}  // namespace

QString SpectrogramStatusBadge::text() const {
    return isLive ? QStringLiteral("LIVE") : QStringLiteral("HISTORY · double-click to resume");
}

QRectF SpectrogramStatusBadge::rect(const QSizeF& plot, const Typeface& typeface) const {
    const QFontMetricsF metrics(badgeFont(typeface));
    const double width = std::min(metrics.horizontalAdvance(text()) + 2.0 * marginAcross,
                                  std::max(plot.width() - 2.0 * cornerInset, 0.0));
    return {plot.width() - cornerInset - width, cornerInset, width,
            metrics.height() + 2.0 * marginUpDown};
}

void SpectrogramStatusBadge::paint(QPainter& painter, const QSizeF& plot,
                                   const Typeface& typeface) const {
    const QFont font = badgeFont(typeface);
    const QFontMetricsF metrics(font);
    const QRectF plate = rect(plot, typeface);
    paintPlate(painter, plate, Theme::Radius::plate,
               Theme::faded(Theme::panelBackground, plateOpacity));
    painter.setFont(font);
    painter.setPen(isLive ? Theme::color(TarvaneKit::SignalColors::green) : Theme::axisText);
    painter.drawText(
        QPointF(plate.left() + marginAcross, plate.top() + marginUpDown + metrics.ascent()),
        metrics.elidedText(text(), Qt::ElideRight, plate.width() - 2.0 * marginAcross));
}

}  // namespace TarvaneApp
