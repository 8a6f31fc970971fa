#include "Displays/Plate.h"

#include <QPainter>

#include "Displays/Theme.h"

namespace TarvaneApp {

void paintPlate(QPainter& painter, const QRectF& rect, double radius, const QColor& color) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawRoundedRect(rect, radius, radius);
}

void paintRaisedPanel(QPainter& painter, const QRectF& rect) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Theme::gridLineStrong);
    painter.setBrush(Theme::panelBackground);
    painter.drawRoundedRect(rect.adjusted(0.5, 0.5, -0.5, -0.5), Theme::Radius::panel,
                            Theme::Radius::panel);
}

}  // namespace TarvaneApp
