#include "Shell/Controls/ControlRow.h"

#include <QHBoxLayout>
#include <QWidget>

#include "Displays/Theme.h"

namespace TarvaneApp {

namespace {

constexpr int dividerHeight = 10;

}  // namespace

QHBoxLayout* ControlRow::make(QWidget* holder, int spacing) {
    auto* row = new QHBoxLayout(holder);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(spacing);
    return row;
}

QWidget* ControlRow::makeDivider(QWidget* parent) {
    auto* divider = new QWidget(parent);
    divider->setFixedSize(1, dividerHeight);
    divider->setAutoFillBackground(true);
    QPalette palette = divider->palette();
    palette.setColor(QPalette::Window, Theme::gridLineStrong);
    divider->setPalette(palette);
    return divider;
}

}  // namespace TarvaneApp
