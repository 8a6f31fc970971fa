// Numbers whose digits are all set in cells of one width, whatever the typeface: a changing number
// then stays still, and so does what is beside it. Other characters keep their widths.
#pragma once

#include <QFont>
#include <QPointF>
#include <QString>

class QPainter;

namespace TarvaneApp::TabularText {

/// Logical pixels.
double width(const QString& text, const QFont& font);

/// Draws with the painter's pen; `baseline` is the left end of the base line.
void draw(QPainter& painter, const QPointF& baseline, const QString& text, const QFont& font);

}  // namespace TarvaneApp::TabularText
