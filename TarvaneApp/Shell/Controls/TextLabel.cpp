#include "Shell/Controls/TextLabel.h"

#include <QLabel>

#include "Displays/Theme.h"

namespace TarvaneApp {

QLabel* makeTextLabel(const QString& text, double size, const QColor& color, QWidget* parent) {
    auto* label = new QLabel(parent);
    styleTextLabel(*label, size, color);
    label->setText(text);
    return label;
}

void styleTextLabel(QLabel& label, double size, const QColor& color) {
    label.setTextFormat(Qt::PlainText);
    label.setFont(Typeface::installed().systemFont(size));
    QPalette palette = label.palette();
    // Where a label is disabled it is as dim as all that is.
    for (const auto group : {QPalette::Active, QPalette::Inactive}) {
        palette.setColor(group, QPalette::WindowText, color);
    }
    label.setPalette(palette);
}

}  // namespace TarvaneApp
