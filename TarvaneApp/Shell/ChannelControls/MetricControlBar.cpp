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

int MetricControlBar::spacingOf(Fit fit) {
    switch (fit) {
        case Fit::roomy:
            return Theme::Space::group;
        case Fit::close:
            return Theme::Space::section;
        case Fit::menus:
            break;
    }
    return Theme::Space::related;
}

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

bool MetricControlBar::picksChannel() const {
    return channelPicker_ != nullptr && !channelPicker_->isHidden();
}

// Of the row with buttons, the channel's name whole.
int MetricControlBar::widthOf(Fit fit) const {
    const int spacing = spacingOf(fit);
    const int controls = engine_.readoutUnit(channelID()) == ReadoutUnit::lufs
                             ? loudnessControls_->ordinaryWidth()
                             : splControls_->widthWith(spacing);
    const int picker = picksChannel() ? channelPicker_->ordinaryWidth() + spacing : 0;
    return 2 * Theme::Space::panel + picker + unitPicker_->ordinaryWidth() + divider_->width() +
           2 * spacing + controls;
}

MetricControlBar::Fit MetricControlBar::fit() const {
    return width() >= widthOf(Fit::roomy)   ? Fit::roomy
           : width() >= widthOf(Fit::close) ? Fit::close
                                            : Fit::menus;
}

// Nothing is set twice: a change requests another layout, which comes back here.
void MetricControlBar::arrange() {
    const bool isLoudness = engine_.readoutUnit(channelID()) == ReadoutUnit::lufs;
    const Fit fitting = fit();
    const bool isNarrow = fitting == Fit::menus;
    const int spacing = spacingOf(fitting);
    if (row_->spacing() != spacing) {
        row_->setSpacing(spacing);
    }
    if (!isNarrow) {
        splControls_->setSpacing(spacing);
    }
    loudnessControls_->setNarrow(isNarrow);
    unitPicker_->setTight(isNarrow);
    divider_->setVisible(!isNarrow);
    splControls_->setVisible(!isLoudness && !isNarrow);
    splMenus_->setVisible(!isLoudness && isNarrow);
    loudnessControls_->setVisible(isLoudness);
    if (picksChannel()) {
        channelPicker_->setTight(isNarrow);
        limitChannelName();
    }
}

// The name gives way ahead of the menus in the row; beside the buttons there is room for all of it.
void MetricControlBar::limitChannelName() {
    int others = 0;
    for (const QWidget* widget :
         {static_cast<QWidget*>(unitPicker_), static_cast<QWidget*>(splMenus_),
          static_cast<QWidget*>(loudnessControls_)}) {
        others += widget->isHidden() ? 0 : widget->sizeHint().width() + row_->spacing();
    }
    const int widest = channelPicker_->widthIn(width() - 2 * Theme::Space::panel - others);
    if (channelPicker_->maximumWidth() != widest) {
        channelPicker_->setMaximumWidth(widest);
    }
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
