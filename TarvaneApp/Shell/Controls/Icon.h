// The program's own symbols: one-coloured SVG drawings, tinted and sharp at every scale.
#pragma once

#include <QColor>
#include <QIcon>
#include <QRectF>
#include <QString>

class QPainter;

namespace TarvaneApp::Icon {

/// Draws the symbol in one colour into `rect`, at the painter's own resolution. An unknown name
/// stops the program.
void paint(QPainter& painter, const QString& name, const QRectF& rect, const QColor& color);

/// For the toolkit's own controls: `size` in logical pixels, made for up to scale 3.
QIcon tinted(const QString& name, int size, const QColor& color);

/// The program's icon, in its own colours.
QIcon application();

}  // namespace TarvaneApp::Icon
