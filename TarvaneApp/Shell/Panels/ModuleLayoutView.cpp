#include "Shell/Panels/ModuleLayoutView.h"

#include <QVBoxLayout>
#include <memory>

#include "Shell/Controls/BareLayout.h"
#include "Shell/Controls/Divider.h"
#include "Shell/Panels/GraphArea.h"
#include "Shell/Panels/LevelHistoryPanelView.h"
#include "Shell/Panels/ModuleArrangementLink.h"
#include "Shell/Panels/SPLMeterPanelView.h"

namespace TarvaneApp {

namespace {

// Limits a module to its own height, or lets it fill the window.
void limitHeight(QWidget& module, bool leavesTheRest) {
    module.setMaximumHeight(leavesTheRest ? module.sizeHint().height() : QWIDGETSIZE_MAX);
}

}  // namespace

ModuleLayoutView::ModuleLayoutView(MeterEngine& engine, ModuleArrangementLink& arrangement,
                                   const std::optional<TarvaneKit::UUID>& fixedChannelID,
                                   QWidget* parent)
    : QWidget(parent),
      arrangement_(arrangement),
      column_(layOutColumn(this, 0)),
      meter_(new SPLMeterPanelView(engine, fixedChannelID, this)),
      meterDivider_(makeDivider(this)),
      history_(new LevelHistoryPanelView(engine, fixedChannelID, this)),
      historyDivider_(makeDivider(this)),
      graphs_(new GraphArea(engine, arrangement, fixedChannelID, this)) {
    connect(&arrangement, &ModuleArrangementLink::changed, this, [this] { arrange(); });
    arrange();
}

void ModuleLayoutView::resizeEvent(QResizeEvent*) {
    arrange();
}

ModuleArrangement ModuleLayoutView::fittingArrangement() const {
    ModuleArrangement shown = arrangement_.arrangement();
    const auto leastHeight = [&shown, this] {
        const auto of = [](const QWidget* module, bool isShown) {
            return isShown ? module->minimumSizeHint().height() : 0;
        };
        return of(meter_, shown.showsSPLMeter) + of(history_, shown.showsLevelHistory) +
               of(graphs_, shown.showsGraphs());
    };
    if ((shown.showsSPLMeter || shown.showsLevelHistory) && leastHeight() > height()) {
        shown.showsRTA = shown.showsSpectrogram = false;
    }
    if (shown.showsSPLMeter && leastHeight() > height()) {
        shown.showsLevelHistory = false;
    }
    return shown;
}

void ModuleLayoutView::arrange() {
    const ModuleArrangement shown = fittingArrangement();
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
