// The rounded plate that a readout stands on, with the window's ground about it.
#pragma once

#include <QRectF>
#include <QSize>

class QPainter;

namespace TarvaneApp::ReadoutPlate {

/// Its place in a view of that size: under controls, or with a margin where it is the first.
QRectF rect(const QSize& view);
QRectF rectAtTop(const QSize& view);

/// Ground and plate, as far as they touch `dirty`.
void paint(QPainter& painter, const QRectF& plate, const QRectF& dirty);

}  // namespace TarvaneApp::ReadoutPlate
