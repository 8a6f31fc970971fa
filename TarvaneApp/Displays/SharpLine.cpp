#include "Displays/SharpLine.h"

#include <QPainter>

#include "Displays/PixelGrid.h"

namespace TarvaneApp {

void paintHorizontalLine(QPainter& painter, double y, const QRectF& plot, const QColor& color) {
    const PixelGrid grid(painter);
    painter.fillRect(QRectF(plot.left(), grid.lineStart(y, 1.0, plot.top(), plot.bottom()),
                            plot.width(), grid.lineWidth(1.0)),
                     color);
}

void paintVerticalLine(QPainter& painter, double x, const QRectF& plot, const QColor& color,
                       double thickness) {
    const PixelGrid grid(painter);
    painter.fillRect(QRectF(grid.lineStart(x, thickness, plot.left(), plot.right()), plot.top(),
                            grid.lineWidth(thickness), plot.height()),
                     color);
}

}  // namespace TarvaneApp
