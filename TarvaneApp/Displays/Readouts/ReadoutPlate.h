// The rounded plate behind a readout, and the window's background around it.
#pragma once

#include <QRectF>
#include <QSize>

class QPainter;

namespace TarvaneApp::ReadoutPlate {

/// Its place in a view of that size: under controls, or with a margin above where there are none.
QRectF rect(const QSize& view);
QRectF rectAtTop(const QSize& view);

/// Background and plate, as far as they touch `dirty`.
void paint(QPainter& painter, const QRectF& plate, const QRectF& dirty);

}  // namespace TarvaneApp::ReadoutPlate
