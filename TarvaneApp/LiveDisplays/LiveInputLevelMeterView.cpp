#include "LiveDisplays/LiveInputLevelMeterView.h"

#include <QPaintEvent>
#include <QPainter>
#include <utility>

#include "Displays/Theme.h"
#include "Engine/MeterChannel.h"
#include "Engine/MeterEngine.h"

namespace TarvaneApp {

namespace {

constexpr QSize naturalSize(240, 18);

}  // namespace

LiveInputLevelMeterView::LiveInputLevelMeterView(MeterEngine& engine,
                                                 const TarvaneKit::UUID& channelID, QWidget* parent)
    : QWidget(parent),
      engine_(engine),
      channelID_(channelID),
      binding_(*this, [this] { refresh(); }) {
    installDisplayAccessibility();
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    followAll(
        this, [this] { binding_.schedule(); }, engine.isRunning, engine.isPaused);
}

QSize LiveInputLevelMeterView::sizeHint() const {
    return naturalSize;
}

// Into a channel that is off, or whose source is gone, nothing comes.
InputLevelMeterView LiveInputLevelMeterView::viewOfNow() const {
    const MeterChannel& channel = engine_.meterChannel(channelID_);
    const auto info = engine_.channelInfo(channelID_);
    if (!engine_.isRunning()) {
        return {};
    }
    if (!channel.hasProcessor() || !info || !info->isEnabled) {
        return {.isMetering = true, .levelDBFS = {}, .heldDBFS = {}, .isClipping = false};
    }
    return {.isMetering = true,
            .levelDBFS = channel.live.inputPeakDBFS,
            .heldDBFS = channel.live.inputPeakHoldDBFS,
            .isClipping = channel.live.inputClipState == TarvaneKit::InputClipState::active};
}

void LiveInputLevelMeterView::refresh() {
    if (!isVisible()) {
        return;
    }
    const InputLevelMeterView before = std::exchange(view_, viewOfNow());
    if (before.isMetering != view_.isMetering) {
        geometry_ = TarvaneApp::layout(view_, rect());
    }
    update(changedArea(before, view_, geometry_, rect(), devicePixelRatioF()));
}

void LiveInputLevelMeterView::showEvent(QShowEvent*) {
    binding_.bind(engine_, {channelID_});
    view_ = viewOfNow();
    geometry_ = TarvaneApp::layout(view_, rect());
}

void LiveInputLevelMeterView::hideEvent(QHideEvent*) {
    binding_.bind(engine_, {});
}

void LiveInputLevelMeterView::resizeEvent(QResizeEvent*) {
    geometry_ = TarvaneApp::layout(view_, rect());
}

void LiveInputLevelMeterView::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    paint(painter, view_, geometry_, event->region());
}

std::vector<SpokenPart> LiveInputLevelMeterView::spokenParts() const {
    const bool isNumber = view_.isMetering && view_.levelDBFS && !view_.isClipping;
    return {{QStringLiteral("Input level"),
             isNumber ? view_.text() + QStringLiteral(" dBFS") : view_.text(), rect()}};
}

}  // namespace TarvaneApp
