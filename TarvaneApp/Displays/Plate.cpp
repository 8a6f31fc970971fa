#include "Displays/Plate.h"

#include <QPainter>

namespace TarvaneApp {

void paintPlate(QPainter& painter, const QRectF& rect, double radius, const QColor& color) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawRoundedRect(rect, radius, radius);
}

}  // namespace TarvaneApp
