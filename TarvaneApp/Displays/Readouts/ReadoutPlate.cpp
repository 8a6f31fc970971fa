#include "Displays/Readouts/ReadoutPlate.h"

#include <QPainter>

#include "Displays/PixelGrid.h"
#include "Displays/Plate.h"
#include "Displays/Theme.h"

namespace TarvaneApp {

QRectF ReadoutPlate::rect(const QSize& view) {
    return QRectF(QPointF(), view)
        .adjusted(Theme::Space::panel, 0.0, -Theme::Space::panel, -Theme::Space::section);
}

QRectF ReadoutPlate::rectAtTop(const QSize& view) {
    return rect(view).adjusted(0.0, Theme::Space::section, 0.0, 0.0);
}

void ReadoutPlate::paint(QPainter& painter, const QRectF& plate, const QRectF& dirty) {
    constexpr double radius = Theme::Radius::panel;
    painter.setRenderHint(QPainter::Antialiasing);
    if (plate.adjusted(radius, radius, -radius, -radius).contains(dirty)) {
        painter.fillRect(dirty, Theme::panelBackground);
        return;
    }
    painter.fillRect(dirty, Theme::background);
    paintPlate(painter, PixelGrid(painter).snapped(plate), radius, Theme::panelBackground);
}

}  // namespace TarvaneApp
