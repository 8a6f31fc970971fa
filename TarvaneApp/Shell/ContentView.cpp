#include "ContentView.h"

#include <QVBoxLayout>

#include "MainToolbar.h"
#include "SPLMeterPanelView.h"
#include "Theme.h"

namespace TarvaneApp {

ContentView::ContentView(MeterEngine& engine, QWidget* parent)
    : QWidget(parent), toolbar_(new MainToolbar(engine, this)) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(toolbar_);
    auto* divider = new QWidget(this);
    divider->setFixedHeight(1);
    divider->setAutoFillBackground(true);
    QPalette palette = divider->palette();
    palette.setColor(QPalette::Window, Theme::gridLine);
    divider->setPalette(palette);
    column->addWidget(divider);
    column->addWidget(new SPLMeterPanelView(engine, this), 1);
}

}  // namespace TarvaneApp
