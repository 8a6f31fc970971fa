#include "Displays/FocusRing.h"

#include <QPainter>

#include "Displays/Theme.h"

namespace TarvaneApp {

namespace {

constexpr double ringWidth = 2.0;

}  // namespace

void paintFocusRing(QPainter& painter, const QRectF& rect, double radius) {
    paintFocusRing(painter, rect, radius, Theme::accent.lighter(130));
}

void paintFocusRing(QPainter& painter, const QRectF& rect, double radius, const QColor& color) {
    constexpr double inset = ringWidth / 2.0;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(color, ringWidth));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(rect.adjusted(inset, inset, -inset, -inset), radius, radius);
    painter.restore();
}

}  // namespace TarvaneApp
