#include "Displays/Readouts/ReadoutPlate.h"

#include <QPainter>

#include "Displays/PixelGrid.h"
#include "Displays/Theme.h"

namespace TarvaneApp {

namespace {

constexpr double cornerRadius = 10.0;
constexpr double marginAcross = 16.0;
constexpr double marginUpDown = 12.0;

}  // namespace

QRectF ReadoutPlate::rect(const QSize& view) {
    return QRectF(QPointF(), view).adjusted(marginAcross, 0.0, -marginAcross, -marginUpDown);
}

QRectF ReadoutPlate::rectAtTop(const QSize& view) {
    return rect(view).adjusted(0.0, marginUpDown, 0.0, 0.0);
}

void ReadoutPlate::paint(QPainter& painter, const QRectF& plate, const QRectF& dirty) {
    painter.setRenderHint(QPainter::Antialiasing);
    if (plate.adjusted(cornerRadius, cornerRadius, -cornerRadius, -cornerRadius).contains(dirty)) {
        painter.fillRect(dirty, Theme::panelBackground);
        return;
    }
    painter.fillRect(dirty, Theme::background);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Theme::panelBackground);
    painter.drawRoundedRect(PixelGrid(painter).snapped(plate), cornerRadius, cornerRadius);
}

}  // namespace TarvaneApp
