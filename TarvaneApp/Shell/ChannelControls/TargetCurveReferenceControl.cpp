#include "Shell/ChannelControls/TargetCurveReferenceControl.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QSignalBlocker>
#include <QSlider>
#include <cmath>

#include "Displays/Theme.h"
#include "Engine/MeterEngine.h"
#include "Settings/Observable.h"
#include "Shell/Controls/BareLayout.h"
#include "Shell/Controls/TextLabel.h"

namespace TarvaneApp {

namespace {

constexpr int valueWidth = 70;

// A channel's level in one unit, and its range.
struct Reference {
    double ChannelDisplaySettings::*level;
    int lowest;
    int highest;
    const char* unit;
};
constexpr Reference inSPL{&ChannelDisplaySettings::targetCurveReferenceDB, 40, 120, "dB SPL"};
constexpr Reference inDBFS{&ChannelDisplaySettings::targetCurveReferenceDBFS, -80, 0, "dBFS"};

const Reference& reference(RTAScale scale) {
    return scale == RTAScale::dbfs ? inDBFS : inSPL;
}

}  // namespace

TargetCurveReferenceControl::TargetCurveReferenceControl(MeterEngine& engine,
                                                         const TarvaneKit::UUID& channelID,
                                                         QWidget* parent)
    : QWidget(parent),
      engine_(engine),
      channelID_(channelID),
      slider_(new QSlider(Qt::Horizontal, this)),
      value_(makeTextLabel({}, Theme::Text::caption, Theme::axisText, this)) {
    setToolTip(
        QStringLiteral("Where the target curve's 0 dB sits — set separately for the SPL and dBFS "
                       "readouts"));
    slider_->setAccessibleName(QStringLiteral("Target curve level"));
    value_->setFixedWidth(valueWidth);
    value_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    auto* row = layOutRow(this, Theme::Space::related);
    row->addWidget(slider_, 1);
    row->addWidget(value_);
    connect(slider_, &QSlider::valueChanged, this, &TargetCurveReferenceControl::setLevel);
    followChannels(
        engine.channelChanges(), this,
        [this](const TarvaneKit::UUID& id) { return id == channelID_; }, [this] { showLevel(); });
}

void TargetCurveReferenceControl::setChannelID(const TarvaneKit::UUID& channelID) {
    channelID_ = channelID;
    showLevel();
}

void TargetCurveReferenceControl::showLevel() {
    const Reference& shown = reference(engine_.rtaScale(channelID_));
    const long level = std::lround(engine_.display(channelID_).*shown.level);
    const QSignalBlocker quiet(slider_);
    slider_->setRange(shown.lowest, shown.highest);
    slider_->setValue(static_cast<int>(level));
    const QString text = QString::number(level) + u' ' + QLatin1String(shown.unit);
    value_->setText(text);
    slider_->setAccessibleDescription(text);
}

void TargetCurveReferenceControl::setLevel(int level) {
    const Reference& shown = reference(engine_.rtaScale(channelID_));
    engine_.updateDisplay(channelID_,
                          [&](ChannelDisplaySettings& display) { display.*shown.level = level; });
}

}  // namespace TarvaneApp
