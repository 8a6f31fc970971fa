#include "Shell/Preferences/ReferenceToneControl.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

#include "Displays/Theme.h"
#include "Engine/MeterChannel.h"
#include "Engine/MeterEngine.h"
#include "Metering/TransformSizes.h"
#include "Shell/Controls/BareLayout.h"
#include "Shell/Controls/TextLabel.h"
#include "Shell/Forms/FormSection.h"
#include "Shell/Forms/FormWarning.h"
#include "Shell/Preferences/SignedDB.h"

namespace TarvaneApp {

using TarvaneKit::ReferenceTone;
using TarvaneKit::SPLMetric;
using TarvaneKit::TimeWeighting;
using TarvaneKit::Weighting;

namespace {

// A number that changes more often can't be read.
constexpr double shownSeconds = 0.25;

// After a calibration the fast level moves to where it belongs: up to within a tenth of a decibel
// in four times its 125 ms, and down by 34.7 dB a second (IEC 61672-1, 5.8).
constexpr double riseSeconds = 0.5;
constexpr double fallDBPerSecond = 34.7;

// As fine as the level history is at its finest.
constexpr double columnSeconds = 0.1;

void tell(QLabel& label, const QString& text) {
    label.setText(text);
    label.setVisible(!text.isEmpty());
}

Weighting meterWeighting(const ChannelDisplaySettings& display, Weighting leqWeighting) {
    switch (display.metricMode) {
        case MetricMode::spl:
            return display.splWeighting;
        case MetricMode::peak:
            return display.peakWeighting;
        case MetricMode::leq:
            break;
    }
    return leqWeighting;
}

}  // namespace

ReferenceToneControl::ReferenceToneControl(MeterEngine& engine, const TarvaneKit::UUID& channelID,
                                           std::function<std::optional<double>()> knownSPL,
                                           QWidget* parent)
    : QWidget(parent),
      engine_(engine),
      channelID_(channelID),
      knownSPL_(std::move(knownSPL)),
      button_(makeFormButton(
          QStringLiteral("Calibrate"), [this] { calibrate(); }, this)),
      preview_(makeTextLabel({}, Theme::Text::body, Theme::primaryText, this)),
      doubts_(makeWarning(this)),
      failure_(makeWarning(this)),
      binding_(*this, [this] { listen(); }) {
    preview_->setWordWrap(true);
    auto* column = layOutColumn(this, Theme::Space::related);
    column->addWidget(preview_);
    column->addWidget(button_);
    column->addWidget(failure_);
    column->addWidget(doubts_);
    failure_->hide();
    followAll(
        this, [this] { refresh(); }, engine.isRunning, engine.isPaused);
}

void ReferenceToneControl::showEvent(QShowEvent*) {
    binding_.bind(engine_, {channelID_});
    demand_.update(engine_, {channelID_}, ChannelDemand::rta);
    refresh();
}

void ReferenceToneControl::hideEvent(QHideEvent*) {
    binding_.bind(engine_, {});
    demand_.clear();
}

void ReferenceToneControl::listen() {
    const double now = engine_.meterChannel(channelID_).levelHistory().duration();
    if (std::abs(now - shownAt_) >= shownSeconds) {
        refresh();
    }
}

void ReferenceToneControl::refresh() {
    if (!isVisible()) {
        return;
    }
    shownAt_ = engine_.meterChannel(channelID_).levelHistory().duration();
    const auto levelDBFS = engine_.uncalibratedLevelDBFS(channelID_);
    const auto knownSPL = knownSPL_();
    button_->setEnabled(levelDBFS && knownSPL);
    if (!levelDBFS) {
        preview_->setText(QStringLiteral("Start metering and play the tone."));
    } else if (!knownSPL) {
        preview_->setText(QStringLiteral("%1 dBFS").arg(*levelDBFS, 0, 'f', 1));
    } else {
        preview_->setText(QStringLiteral("%1 dBFS → offset %2")
                              .arg(*levelDBFS, 0, 'f', 1)
                              .arg(signedDB(*knownSPL - *levelDBFS)));
    }
    tell(*doubts_, levelDBFS ? referenceToneDoubts(heardTone()).join(u'\n') : QString());
}

void ReferenceToneControl::calibrate() {
    if (const auto knownSPL = knownSPL_()) {
        tell(*failure_,
             QString::fromStdString(
                 engine_.calibrateReference(*knownSPL, channelID_).value_or(std::string())));
    }
    refresh();
}

HeardTone ReferenceToneControl::heardTone() {
    const MeterChannel& channel = engine_.meterChannel(channelID_);
    const ChannelDisplaySettings display = engine_.display(channelID_);
    return {
        .tone = {.spreadDB = levelSpreadDB(),
                 .frequencyHz = ReferenceTone::strongestToneHz(
                     channel.live.lineSpectrumDB, channel.sampleRate, TransformSizes::spectrum)},
        .metric = display.metricMode,
        .weighting = meterWeighting(display, engine_.leqWeighting()),
        .isClipping = channel.live.inputClipState == TarvaneKit::InputClipState::active};
}

// Of the fast level, whatever the meter shows: a slow one or an average hides what moves.
double ReferenceToneControl::levelSpreadDB() {
    const auto& history = engine_.meterChannel(channelID_).levelHistory();
    const auto channel = engine_.channelInfo(channelID_);
    const auto metric = history.index(
        SPLMetric::spl(engine_.display(channelID_).splWeighting, TimeWeighting::fast));
    if (!channel || !metric) {
        return 0.0;
    }
    if (channel->calibration.broadbandOffsetDB() != offsetDB_) {
        const double fallDB = offsetDB_ - channel->calibration.broadbandOffsetDB();
        offsetDB_ = channel->calibration.broadbandOffsetDB();
        settledAt_ = history.duration() + riseSeconds + std::max(fallDB, 0.0) / fallDBPerSecond;
    }
    const double end = history.duration();
    const double begin =
        std::max({end - ReferenceTone::observedSeconds, std::min(settledAt_, end), 0.0});
    const int columns = static_cast<int>(std::ceil((end - begin) / columnSeconds));
    if (columns < 1) {
        return 0.0;
    }
    float lowest = INFINITY;
    float highest = -INFINITY;
    for (const auto& column : history.envelope(*metric, begin, end, columns)) {
        if (column) {
            lowest = std::min(lowest, column->min);
            highest = std::max(highest, column->max);
        }
    }
    return highest >= lowest ? static_cast<double>(highest - lowest) : 0.0;
}

}  // namespace TarvaneApp
