#include "Shell/Panels/ModuleLayoutView.h"

#include <QVBoxLayout>
#include <algorithm>
#include <cmath>
#include <memory>

#include "Shell/Controls/BareLayout.h"
#include "Shell/Controls/Divider.h"
#include "Shell/Panels/GraphArea.h"
#include "Shell/Panels/LevelHistoryPanelView.h"
#include "Shell/Panels/ModuleArrangementLink.h"
#include "Shell/Panels/PanelResizeHandle.h"
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
      meterHandle_(new PanelResizeHandle(
          {.begin = [this] { meterHeightAtPress_ = meter_->height(); },
           .moveBy =
               [this](double pixels) {
                   const int meter =
                       withinReach(meterHeightAtPress_ + pixels, fittingArrangement());
                   setMeterShare(static_cast<double>(meter) / std::max(height(), 1));
               },
           .reset = [this] { setMeterShare(std::nullopt); }},
          this)),
      history_(new LevelHistoryPanelView(engine, fixedChannelID, this)),
      historyDivider_(makeDivider(this)),
      graphs_(new GraphArea(engine, arrangement, fixedChannelID, this)) {
    meterHandle_->setAccessibleName(QStringLiteral("Divider under the SPL meter"));
    meterHandle_->setFixedHeight(SplitGeometry::handleThickness);
    connect(&arrangement, &ModuleArrangementLink::changed, this, [this] { arrange(); });
    arrange();
}

void ModuleLayoutView::resizeEvent(QResizeEvent*) {
    arrange();
}

void ModuleLayoutView::setMeterShare(std::optional<double> share) {
    if (share != meterShare_) {
        meterShare_ = share;
        arrange();
        Q_EMIT meterShareChanged();
    }
}

int ModuleLayoutView::leastHeight(const ModuleArrangement& shown) const {
    const auto of = [](const QWidget* module, bool isShown) {
        return isShown ? module->minimumSizeHint().height() : 0;
    };
    const bool hasHandle = shown.showsSPLMeter && (shown.showsLevelHistory || shown.showsGraphs());
    return of(meter_, shown.showsSPLMeter) + (hasHandle ? SplitGeometry::handleThickness : 0) +
           of(history_, shown.showsLevelHistory) + of(graphs_, shown.showsGraphs());
}

int ModuleLayoutView::withinReach(double meterHeight, const ModuleArrangement& shown) const {
    const int least = meter_->minimumSizeHint().height();
    const int most = std::max(height() - (leastHeight(shown) - least), least);
    return std::clamp(static_cast<int>(std::lround(meterHeight)), least, most);
}

ModuleArrangement ModuleLayoutView::fittingArrangement() const {
    ModuleArrangement shown = arrangement_.arrangement();
    if ((shown.showsSPLMeter || shown.showsLevelHistory) && leastHeight(shown) > height()) {
        shown.showsRTA = shown.showsSpectrogram = false;
    }
    if (shown.showsSPLMeter && leastHeight(shown) > height()) {
        shown.showsLevelHistory = false;
    }
    return shown;
}

void ModuleLayoutView::arrange() {
    const ModuleArrangement shown = fittingArrangement();
    const bool showsGraphs = shown.showsGraphs();
    const bool isHistoryBelow = shown.levelHistoryPosition == LevelHistoryPosition::belowGraphs;
    meter_->setVisible(shown.showsSPLMeter);
    meterHandle_->setVisible(shown.showsSPLMeter && (showsGraphs || shown.showsLevelHistory));
    meter_->setPreferredHeight(meterShare_ ? withinReach(*meterShare_ * height(), shown)
                                           : SPLMeterPanelView::heightAboveOthers(height()));
    history_->setVisible(shown.showsLevelHistory);
    historyDivider_->setVisible(shown.showsLevelHistory && showsGraphs);
    graphs_->setVisible(showsGraphs);
    limitHeight(*meter_, showsGraphs || shown.showsLevelHistory);
    limitHeight(*history_, showsGraphs);

    while (const std::unique_ptr<QLayoutItem> item{column_->takeAt(0)}) {
    }
    column_->addWidget(meter_);
    column_->addWidget(meterHandle_);
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
