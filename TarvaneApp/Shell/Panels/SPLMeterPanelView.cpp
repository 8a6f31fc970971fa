#include "Panels/SPLMeterPanelView.h"

#include <QVBoxLayout>

#include "MeterEngine.h"
#include "MetricControlBar.h"
#include "Readouts/LiveSPLReadoutView.h"

namespace TarvaneApp {

SPLMeterPanelView::SPLMeterPanelView(MeterEngine& engine, QWidget* parent) : QWidget(parent) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(new MetricControlBar(engine, std::nullopt, this));
    auto* readout = new LiveSPLReadoutView(engine, engine.splMeterChannelID(), this);
    column->addWidget(readout, 1);
    follow(engine.splMeterChannelID, this,
           [&engine, readout] { readout->setChannelID(engine.splMeterChannelID()); });
}

}  // namespace TarvaneApp
