// A line of plain text in the windows' own colours.
#pragma once

#include <QColor>
#include <QString>

class QLabel;
class QWidget;

namespace TarvaneApp {

/// `size` in logical pixels.
QLabel* makeTextLabel(const QString& text, double size, const QColor& color, QWidget* parent);

/// The same look for an existing label.
void styleTextLabel(QLabel& label, double size, const QColor& color);

}  // namespace TarvaneApp
