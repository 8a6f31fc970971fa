#include "Shell/Controls/Divider.h"

#include <QWidget>

#include "Displays/Theme.h"

namespace TarvaneApp {

namespace {

constexpr int groupDividerHeight = 10;

QWidget* makeFilled(QWidget* parent, const QColor& color) {
    auto* filled = new QWidget(parent);
    filled->setAutoFillBackground(true);
    QPalette palette = filled->palette();
    palette.setColor(QPalette::Window, color);
    filled->setPalette(palette);
    return filled;
}

}  // namespace

QWidget* makeDivider(QWidget* parent) {
    QWidget* divider = makeFilled(parent, Theme::gridLine);
    divider->setFixedHeight(1);
    return divider;
}

QWidget* makeGroupDivider(QWidget* parent) {
    QWidget* divider = makeFilled(parent, Theme::gridLineStrong);
    divider->setFixedSize(1, groupDividerHeight);
    return divider;
}

}  // namespace TarvaneApp
