#include "Shell/Panels/SPLMeterPanelView.h"

#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

#include "Engine/MeterEngine.h"
#include "LiveDisplays/LiveClockReadoutView.h"
#include "LiveDisplays/LiveSPLReadoutView.h"
#include "Shell/ChannelControls/MetricControlBar.h"
#include "Shell/Controls/BareLayout.h"

namespace TarvaneApp {

namespace {

constexpr int leastHeight = 190;
constexpr int greatestHeight = 420;
constexpr double shareOfWindow = 0.28;

}  // namespace

SPLMeterPanelView::SPLMeterPanelView(MeterEngine& engine,
                                     const std::optional<TarvaneKit::UUID>& fixedChannelID,
                                     QWidget* parent)
    : QWidget(parent), preferredHeight_(leastHeight) {
    const auto channelID = [&engine, fixedChannelID] {
        return fixedChannelID.value_or(engine.splMeterChannelID());
    };
    auto* column = layOutColumn(this, 0);
    auto* controls = new MetricControlBar(engine, fixedChannelID, this);
    column->addWidget(controls);
    auto* readout = new LiveSPLReadoutView(engine, channelID(), this);
    column->addWidget(readout, 1);
    auto* clock = new LiveClockReadoutView(this);
    clock->hide();
    column->addWidget(clock, 1);
    follow(engine.splMeterChannelID, this,
           [readout, channelID] { readout->setChannelID(channelID()); });
    follow(engine.splReadoutShowsClock, this, [&engine, controls, readout, clock] {
        const bool showsClock = engine.splReadoutShowsClock();
        controls->setVisible(!showsClock);
        readout->setVisible(!showsClock);
        clock->setVisible(showsClock);
    });
}

int SPLMeterPanelView::heightAboveOthers(int windowHeight) {
    const double share = shareOfWindow * windowHeight;
    return std::clamp(static_cast<int>(std::lround(share)), leastHeight, greatestHeight);
}

void SPLMeterPanelView::setPreferredHeight(int height) {
    if (height != preferredHeight_) {
        preferredHeight_ = height;
        updateGeometry();
    }
}

QSize SPLMeterPanelView::sizeHint() const {
    return {QWidget::sizeHint().width(), preferredHeight_};
}

QSize SPLMeterPanelView::minimumSizeHint() const {
    return {QWidget::minimumSizeHint().width(), leastHeight};
}

}  // namespace TarvaneApp
