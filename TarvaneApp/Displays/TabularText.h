// Numbers whose digits all stand in cells of one width, whatever the face: a changing number
// then neither moves nor shakes what stands beside it. The other characters keep their widths.
#pragma once

#include <QFont>
#include <QPointF>
#include <QString>

class QPainter;

namespace TarvaneApp::TabularText {

/// Logical pixels.
double width(const QString& text, const QFont& font);

/// Draws in the painter's pen; `baseline` is the left end of the base line.
void draw(QPainter& painter, const QPointF& baseline, const QString& text, const QFont& font);

}  // namespace TarvaneApp::TabularText
