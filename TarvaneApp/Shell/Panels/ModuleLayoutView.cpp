#include "Panels/ModuleLayoutView.h"

#include <QVBoxLayout>

#include "Divider.h"
#include "LiveFollow.h"
#include "MeterEngine.h"
#include "Panels/GraphArea.h"
#include "Panels/SPLMeterPanelView.h"

namespace TarvaneApp {

namespace {

// The meter's height where graphs take the rest of the window.
constexpr int meterHeightWithGraphs = 230;
constexpr int unlimited = QWIDGETSIZE_MAX;

}  // namespace

ModuleLayoutView::ModuleLayoutView(MeterEngine& engine, QWidget* parent)
    : QWidget(parent),
      engine_(engine),
      column_(new QVBoxLayout(this)),
      meter_(new SPLMeterPanelView(engine, this)),
      divider_(makeDivider(this)),
      graphs_(new GraphArea(engine, this)) {
    column_->setContentsMargins(0, 0, 0, 0);
    column_->setSpacing(0);
    column_->addWidget(meter_);
    column_->addWidget(divider_);
    column_->addWidget(graphs_, 1);
    followAll(
        this, [this] { arrange(); }, engine.splMeterPlacement, engine.rtaPlacement,
        engine.spectrogramPlacement);
}

void ModuleLayoutView::arrange() {
    const bool showsMeter = engine_.splMeterPlacement() == ModulePlacement::mainWindow;
    const bool showsGraphs = engine_.mainWindowShowsGraphArea();
    meter_->setVisible(showsMeter);
    graphs_->setVisible(showsGraphs);
    divider_->setVisible(showsMeter && showsGraphs);
    meter_->setMaximumHeight(showsGraphs ? meterHeightWithGraphs : unlimited);
    meter_->setMinimumHeight(showsGraphs ? meterHeightWithGraphs : 0);
}

}  // namespace TarvaneApp
