#include "Panels/ModuleLayoutView.h"

#include <QVBoxLayout>
#include <memory>

#include "Divider.h"
#include "LiveFollow.h"
#include "MeterEngine.h"
#include "Panels/GraphArea.h"
#include "Panels/LevelHistoryPanelView.h"
#include "Panels/SPLMeterPanelView.h"

namespace TarvaneApp {

namespace {

// The meter's height where graphs take the rest of the window.
constexpr int meterHeightWithGraphs = 230;
constexpr int historyHeightWithGraphs = 170;

// That height, or with 0 as much as there is.
void limitHeight(QWidget& module, int height) {
    module.setMinimumHeight(height);
    module.setMaximumHeight(height > 0 ? height : QWIDGETSIZE_MAX);
}

}  // namespace

ModuleLayoutView::ModuleLayoutView(MeterEngine& engine, QWidget* parent)
    : QWidget(parent),
      engine_(engine),
      column_(new QVBoxLayout(this)),
      meter_(new SPLMeterPanelView(engine, this)),
      meterDivider_(makeDivider(this)),
      history_(new LevelHistoryPanelView(engine, this)),
      historyDivider_(makeDivider(this)),
      graphs_(new GraphArea(engine, this)) {
    column_->setContentsMargins(0, 0, 0, 0);
    column_->setSpacing(0);
    followAll(
        this, [this] { arrange(); }, engine.splMeterPlacement, engine.rtaPlacement,
        engine.spectrogramPlacement, engine.levelHistoryPlacement, engine.levelHistoryPosition);
}

void ModuleLayoutView::arrange() {
    const bool showsMeter = engine_.splMeterPlacement() == ModulePlacement::mainWindow;
    const bool showsGraphs = engine_.mainWindowShowsGraphArea();
    const bool showsHistory = engine_.levelHistoryPlacement() == ModulePlacement::mainWindow;
    const bool isHistoryBelow = engine_.levelHistoryPosition() == LevelHistoryPosition::belowGraphs;
    meter_->setVisible(showsMeter);
    meterDivider_->setVisible(showsMeter && (showsGraphs || showsHistory));
    history_->setVisible(showsHistory);
    historyDivider_->setVisible(showsHistory && showsGraphs);
    graphs_->setVisible(showsGraphs);
    limitHeight(*meter_, showsGraphs || showsHistory ? meterHeightWithGraphs : 0);
    limitHeight(*history_, showsGraphs ? historyHeightWithGraphs : 0);

    while (const auto item = std::unique_ptr<QLayoutItem>(column_->takeAt(0))) {
    }
    column_->addWidget(meter_);
    column_->addWidget(meterDivider_);
    if (isHistoryBelow) {
        column_->addWidget(graphs_, 1);
        column_->addWidget(historyDivider_);
        column_->addWidget(history_, showsGraphs ? 0 : 1);
    } else {
        column_->addWidget(history_, showsGraphs ? 0 : 1);
        column_->addWidget(historyDivider_);
        column_->addWidget(graphs_, 1);
    }
}

}  // namespace TarvaneApp
