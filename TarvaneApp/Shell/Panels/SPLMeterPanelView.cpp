#include "Panels/SPLMeterPanelView.h"

#include <QVBoxLayout>

#include "MeterEngine.h"
#include "MetricControlBar.h"
#include "Readouts/LiveClockReadoutView.h"
#include "Readouts/LiveSPLReadoutView.h"

namespace TarvaneApp {

SPLMeterPanelView::SPLMeterPanelView(MeterEngine& engine, QWidget* parent) : QWidget(parent) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    auto* controls = new MetricControlBar(engine, std::nullopt, this);
    column->addWidget(controls);
    auto* readout = new LiveSPLReadoutView(engine, engine.splMeterChannelID(), this);
    column->addWidget(readout, 1);
    auto* clock = new LiveClockReadoutView(this);
    clock->hide();
    column->addWidget(clock, 1);
    follow(engine.splMeterChannelID, this,
           [&engine, readout] { readout->setChannelID(engine.splMeterChannelID()); });
    follow(engine.splReadoutShowsClock, this, [&engine, controls, readout, clock] {
        const bool showsClock = engine.splReadoutShowsClock();
        controls->setVisible(!showsClock);
        readout->setVisible(!showsClock);
        clock->setVisible(showsClock);
    });
}

}  // namespace TarvaneApp
