#include "ContentView.h"

#include <QVBoxLayout>

#include "Divider.h"
#include "MainToolbar.h"
#include "Panels/MainWindowArrangement.h"
#include "Panels/ModuleLayoutView.h"

namespace TarvaneApp {

ContentView::ContentView(MeterEngine& engine, QWidget* parent)
    : QWidget(parent), toolbar_(new MainToolbar(engine, this)) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(toolbar_);
    column->addWidget(makeDivider(this));
    auto* arrangement = new MainWindowArrangement(engine, this);
    column->addWidget(new ModuleLayoutView(engine, *arrangement, std::nullopt, this), 1);
}

}  // namespace TarvaneApp
