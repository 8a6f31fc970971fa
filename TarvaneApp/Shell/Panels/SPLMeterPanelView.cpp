#include "Panels/SPLMeterPanelView.h"

#include <QVBoxLayout>

#include "MeterEngine.h"
#include "MetricControlBar.h"
#include "Readouts/LiveSPLReadoutView.h"

namespace TarvaneApp {

namespace {

constexpr int heightAboveOthers = 230;

}  // namespace

SPLMeterPanelView::SPLMeterPanelView(MeterEngine& engine,
                                     const std::optional<TarvaneKit::UUID>& fixedChannelID,
                                     QWidget* parent)
    : QWidget(parent) {
    const auto channelID = [&engine, fixedChannelID] {
        return fixedChannelID.value_or(engine.splMeterChannelID());
    };
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(new MetricControlBar(engine, fixedChannelID, this));
    auto* readout = new LiveSPLReadoutView(engine, channelID(), this);
    column->addWidget(readout, 1);
    follow(engine.splMeterChannelID, this,
           [readout, channelID] { readout->setChannelID(channelID()); });
}

QSize SPLMeterPanelView::sizeHint() const {
    return {QWidget::sizeHint().width(), heightAboveOthers};
}

}  // namespace TarvaneApp
