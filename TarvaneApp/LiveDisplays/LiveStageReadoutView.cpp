#include "LiveDisplays/LiveStageReadoutView.h"

#include <QPaintEvent>
#include <QPainter>
#include <utility>

#include "Displays/RawText.h"
#include "Displays/Readouts/LoudnessReadoutView.h"
#include "Displays/Readouts/ReadoutText.h"
#include "Displays/Theme.h"
#include "Engine/MeterChannel.h"
#include "Engine/MeterEngine.h"

namespace TarvaneApp {

using TarvaneKit::LoudnessReadings;
using TarvaneKit::UUID;

LiveStageReadoutView::LiveStageReadoutView(MeterEngine& engine, const UUID& channelID,
                                           QWidget* parent)
    : QWidget(parent),
      engine_(engine),
      requestedChannelID_(channelID),
      channelID_(engine.resolvedChannelID(channelID)),
      binding_(*this, [this] { refresh(); }) {
    installDisplayAccessibility();
    setAttribute(Qt::WA_OpaquePaintEvent);
    binding_.bind(engine_, {channelID_});
    followChannels(engine.channelChanges(), this, [this] { contextChanged(); });
    refresh();
}

void LiveStageReadoutView::setChannelID(const UUID& channelID) {
    requestedChannelID_ = channelID;
    contextChanged();
}

void LiveStageReadoutView::contextChanged() {
    channelID_ = engine_.resolvedChannelID(requestedChannelID_);
    binding_.bind(engine_, {channelID_});
    binding_.schedule();
}

// A number that stands still because nothing is measured must not pass for a level.
StageReadoutView LiveStageReadoutView::currentView() const {
    const LiveMeterData& live = engine_.meterChannel(channelID_).live;
    const auto info = engine_.channelInfo(channelID_);
    StageReadoutView view;
    if (info && info->measuresLoudness) {
        LoudnessReadoutView loudness;
        loudness.readings = live.loudness.value_or(LoudnessReadings{});
        loudness.headline = engine_.loudnessReadout();
        loudness.target = engine_.loudnessTarget();
        loudness.colors = engine_.loudnessColors();
        view = {.valueDB = loudness.readings[loudness.headline],
                .color = loudness.judgement(loudness.headline),
                .label = loudness.labelText(),
                .widthTemplate = LoudnessReadoutView::widthTemplate(),
                .ordinaryValue = loudness.ordinaryValue()};
    } else {
        const bool isCalibrated = engine_.isCalibrated(channelID_);
        const bool showsDBFS = engine_.display(channelID_).showsDBFS;
        view = {.valueDB = live.currentSPLValueDB - engine_.splReadoutDisplayOffsetDB(channelID_),
                .color = live.trafficLightColor,
                .label = displayLabel(engine_.displayedMetric(channelID_)) +
                         metricSuffix(isCalibrated, showsDBFS),
                .widthTemplate = valueTemplate(isCalibrated, showsDBFS),
                .ordinaryValue = ordinaryValue(isCalibrated, showsDBFS)};
    }
    if (engine_.extraChannels().size() > 0 && info) {
        view.label = utf8Text(info->name) + QStringLiteral(" · ") + view.label;
    }
    if (!engine_.isRunning()) {
        view.label += QStringLiteral(" · not metering");
    } else if (engine_.isPaused()) {
        view.label += QStringLiteral(" · paused");
    }
    return view;
}

void LiveStageReadoutView::refresh() {
    const StageReadoutView before = std::exchange(view_, currentView());
    if (sameShape(before, view_)) {
        update(changedArea(before, view_, frame_));
    } else {
        frame_ = TarvaneApp::layout(view_, QSizeF(size()));
        update();
    }
}

void LiveStageReadoutView::resizeEvent(QResizeEvent*) {
    frame_ = TarvaneApp::layout(view_, QSizeF(size()));
}

void LiveStageReadoutView::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.fillRect(event->rect(), Theme::background);
    paint(painter, view_, frame_, event->region());
}

std::vector<SpokenPart> LiveStageReadoutView::spokenParts() const {
    return {{view_.label, levelText(view_.valueDB), rect()}};
}

}  // namespace TarvaneApp
