#include "Shell/Controls/Divider.h"

#include <QWidget>

#include "Displays/Theme.h"

namespace TarvaneApp {

QWidget* makeDivider(QWidget* parent) {
    auto* divider = new QWidget(parent);
    divider->setFixedHeight(1);
    divider->setAutoFillBackground(true);
    QPalette palette = divider->palette();
    palette.setColor(QPalette::Window, Theme::gridLine);
    divider->setPalette(palette);
    return divider;
}

}  // namespace TarvaneApp
