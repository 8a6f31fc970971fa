#include "Controls/TextLabel.h"

#include <QLabel>

#include "Theme.h"

namespace TarvaneApp {

QLabel* makeTextLabel(const QString& text, double size, const QColor& color, QWidget* parent) {
    auto* label = new QLabel(parent);
    label->setTextFormat(Qt::PlainText);
    label->setText(text);
    label->setFont(Typeface::installed().systemFont(size));
    QPalette palette = label->palette();
    palette.setColor(QPalette::WindowText, color);
    label->setPalette(palette);
    return label;
}

}  // namespace TarvaneApp
