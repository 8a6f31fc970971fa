#include "Shell/ChannelControls/MetricControlBar.h"

#include <QEvent>
#include <QHBoxLayout>

#include "Displays/Theme.h"
#include "Engine/MeterEngine.h"
#include "Settings/Observable.h"
#include "Shell/ChannelControls/ChannelPickerMenu.h"
#include "Shell/ChannelControls/LoudnessControls.h"
#include "Shell/ChannelControls/ReadoutUnitPicker.h"
#include "Shell/ChannelControls/SPLControlMenus.h"
#include "Shell/ChannelControls/SPLControls.h"
#include "Shell/Controls/Divider.h"

namespace TarvaneApp {

namespace {

constexpr int narrowestWidth = 320;

}  // namespace

MetricControlBar::MetricControlBar(MeterEngine& engine,
                                   std::optional<TarvaneKit::UUID> fixedChannelID, QWidget* parent)
    : QWidget(parent),
      engine_(engine),
      fixedChannelID_(fixedChannelID),
      row_(new QHBoxLayout(this)),
      unitPicker_(new ReadoutUnitPicker(engine, channelID(), this)),
      divider_(makeGroupDivider(this)),
      splControls_(new SPLControls(engine, channelID(), this)),
      splMenus_(new SPLControlMenus(engine, channelID(), this)),
      loudnessControls_(new LoudnessControls(engine, this)) {
    row_->setContentsMargins(Theme::Margins::row);
    if (!fixedChannelID_) {
        channelPicker_ = new ChannelPickerMenu(engine, engine.splMeterChannelID, this);
        channelPicker_->letShrink();
        row_->addWidget(channelPicker_);
    }
    row_->addWidget(unitPicker_);
    row_->addWidget(divider_);
    row_->addWidget(splControls_);
    row_->addWidget(splMenus_);
    row_->addWidget(loudnessControls_);
    row_->addStretch(1);
    followChannels(engine.channelChanges(), this, [this] { channelChanged(); });
    follow(engine.splMeterChannelID, this, [this] { channelChanged(); });
}

TarvaneKit::UUID MetricControlBar::channelID() const {
    return engine_.resolvedChannelID(fixedChannelID_.value_or(engine_.splMeterChannelID()));
}

void MetricControlBar::channelChanged() {
    unitPicker_->setChannelID(channelID());
    splControls_->setChannelID(channelID());
    splMenus_->setChannelID(channelID());
    arrange();
}

// The width of the whole row, where there is room for it.
int MetricControlBar::ordinaryWidth() const {
    const int controls = engine_.readoutUnit(channelID()) == ReadoutUnit::lufs
                             ? loudnessControls_->ordinaryWidth()
                             : splControls_->sizeHint().width();
    const int pickers = channelPicker_ != nullptr && !channelPicker_->isHidden()
                            ? channelPicker_->sizeHint().width() + Theme::Space::group
                            : 0;
    return 2 * Theme::Space::panel + pickers + unitPicker_->sizeHint().width() + divider_->width() +
           2 * Theme::Space::group + controls;
}

// Nothing is set twice: a change requests another layout, which comes back here.
void MetricControlBar::arrange() {
    const bool isLoudness = engine_.readoutUnit(channelID()) == ReadoutUnit::lufs;
    const bool isNarrow = width() < ordinaryWidth();
    const int spacing = isNarrow ? Theme::Space::row : Theme::Space::group;
    if (row_->spacing() != spacing) {
        row_->setSpacing(spacing);
    }
    loudnessControls_->setNarrow(isNarrow);
    divider_->setVisible(!isNarrow);
    splControls_->setVisible(!isLoudness && !isNarrow);
    splMenus_->setVisible(!isLoudness && isNarrow);
    loudnessControls_->setVisible(isLoudness);
}

QSize MetricControlBar::minimumSizeHint() const {
    return {narrowestWidth, QWidget::minimumSizeHint().height()};
}

// A control's width has changed.
bool MetricControlBar::event(QEvent* event) {
    const bool handled = QWidget::event(event);
    if (event->type() == QEvent::LayoutRequest) {
        arrange();
    }
    return handled;
}

void MetricControlBar::resizeEvent(QResizeEvent*) {
    arrange();
}

}  // namespace TarvaneApp
