#include "Panels/ModuleLayoutView.h"

#include <QVBoxLayout>
#include <memory>

#include "Divider.h"
#include "Panels/GraphArea.h"
#include "Panels/LevelHistoryPanelView.h"
#include "Panels/ModuleArrangementLink.h"
#include "Panels/SPLMeterPanelView.h"

namespace TarvaneApp {

namespace {

// Its own height and no more, or as much as there is.
void limitHeight(QWidget& module, bool leavesTheRest) {
    module.setMaximumHeight(leavesTheRest ? module.sizeHint().height() : QWIDGETSIZE_MAX);
}

}  // namespace

ModuleLayoutView::ModuleLayoutView(MeterEngine& engine, ModuleArrangementLink& arrangement,
                                   const std::optional<TarvaneKit::UUID>& fixedChannelID,
                                   QWidget* parent)
    : QWidget(parent),
      arrangement_(arrangement),
      column_(new QVBoxLayout(this)),
      meter_(new SPLMeterPanelView(engine, fixedChannelID, this)),
      meterDivider_(makeDivider(this)),
      history_(new LevelHistoryPanelView(engine, fixedChannelID, this)),
      historyDivider_(makeDivider(this)),
      graphs_(new GraphArea(engine, arrangement, fixedChannelID, this)) {
    column_->setContentsMargins(0, 0, 0, 0);
    column_->setSpacing(0);
    connect(&arrangement, &ModuleArrangementLink::changed, this, [this] { arrange(); });
    arrange();
}

void ModuleLayoutView::arrange() {
    const ModuleArrangement shown = arrangement_.arrangement();
    const bool showsGraphs = shown.showsGraphs();
    const bool isHistoryBelow = shown.levelHistoryPosition == LevelHistoryPosition::belowGraphs;
    meter_->setVisible(shown.showsSPLMeter);
    meterDivider_->setVisible(shown.showsSPLMeter && (showsGraphs || shown.showsLevelHistory));
    history_->setVisible(shown.showsLevelHistory);
    historyDivider_->setVisible(shown.showsLevelHistory && showsGraphs);
    graphs_->setVisible(showsGraphs);
    limitHeight(*meter_, showsGraphs || shown.showsLevelHistory);
    limitHeight(*history_, showsGraphs);

    while (const std::unique_ptr<QLayoutItem> item{column_->takeAt(0)}) {
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
