#include "Shell/Panels/RTAPanelView.h"

#include <QLabel>
#include <QLayout>

#include "Displays/Theme.h"
#include "Engine/MeterEngine.h"
#include "LiveDisplays/LiveSpectrumView.h"
#include "Settings/Observable.h"
#include "Shell/ChannelControls/ChannelPickerMenu.h"
#include "Shell/ChannelControls/RTAOptionsView.h"
#include "Shell/ChannelControls/ReadoutUnitPicker.h"
#include "Shell/Controls/EnumChoice.h"
#include "Shell/Controls/IconButton.h"
#include "Shell/Controls/MenuButton.h"
#include "Shell/Controls/TextLabel.h"
#include "Shell/Panels/PanelFrame.h"
#include "Shell/Panels/PanelHeader.h"
#include "Shell/Panels/PanelMaximizeToggleButton.h"
#include "Shell/Panels/RTAOverlayMenu.h"

namespace TarvaneApp {

using TarvaneKit::TimeWeighting;
using TarvaneKit::UUID;

namespace {

constexpr int averagingWidth = 90;

}  // namespace

RTAPanelView::RTAPanelView(MeterEngine& engine, const std::optional<UUID>& fixedChannelID,
                           ModuleArrangementLink* arrangement, QWidget* parent)
    : QWidget(parent),
      engine_(engine),
      fixedChannelID_(fixedChannelID),
      graph_(new LiveSpectrumView(engine, channelID(), this)),
      averaging_(new MenuButton(QStringLiteral("Averaging"), this)),
      unitPicker_(new ReadoutUnitPicker(engine, channelID(), this)),
      overlayMenu_(new RTAOverlayMenu(engine, channelID(), this)),
      optionsButton_(new IconButton(Theme::Symbol::options, this)),
      optionsPopover_(*optionsButton_, [this](QWidget* popover) {
          return new RTAOptionsView(engine_, channelID(), popover);
      }) {
    optionsButton_->setSymbol(QStringLiteral("slider.horizontal.3"), Theme::axisText);
    unitPicker_->setName(QStringLiteral("RTA readout unit"));
    optionsButton_->setHelp(
        QStringLiteral("RTA options"),
        QStringLiteral("RTA options for this channel: color, view, band resolution, peak hold, "
                       "target curve, ring-out alerts"));
    auto* header = new PanelHeader(QStringLiteral("Real-Time Analyzer"), this);
    if (!fixedChannelID_) {
        auto* picker = new ChannelPickerMenu(engine, engine.rtaChannelID, header);
        picker->setName(QStringLiteral("RTA channel"));
        picker->letShrink();
        header->row().addWidget(picker);
    }
    header->row().addWidget(overlayMenu_);
    header->row().addStretch(1);
    averaging_->setFixedWidth(averagingWidth);
    auto* averagingLabel =
        makeTextLabel(QStringLiteral("Averaging"), Theme::Text::caption, Theme::axisText, header);
    averagingLabel->setContentsMargins(0, 0, Theme::Space::related, 0);
    auto* averagingRow = new QHBoxLayout;
    averagingRow->setSpacing(0);
    averagingRow->addWidget(averagingLabel);
    averagingRow->addWidget(averaging_);
    header->row().addLayout(averagingRow);
    header->row().addWidget(unitPicker_);
    std::vector<QWidget*> icons{optionsButton_};
    if (arrangement != nullptr) {
        icons.push_back(new PanelMaximizeToggleButton(*arrangement, PanelLayout::rtaOnly, header));
    }
    header->addIcons(icons);
    header->setExpendable({averagingLabel});
    header->orderTabs(*graph_);

    framePanel(this, header, graph_, Theme::Space::row);

    followAll(
        this, [this] { channelChanged(); }, engine.rtaChannelID, engine.rtaOverlayChannelIDs);
    followChannels(engine.channelChanges(), this, [this] { channelChanged(); });
    follow(engine.rtaTimeWeighting, this, [this] { showAveraging(); });
}

UUID RTAPanelView::channelID() const {
    return engine_.resolvedChannelID(fixedChannelID_.value_or(engine_.rtaChannelID()));
}

void RTAPanelView::setBottomMargin(int pixels) {
    layout()->setContentsMargins(0, 0, 0, pixels);
}

void RTAPanelView::channelChanged() {
    graph_->setChannelID(channelID());
    graph_->setOverlayIDs(engine_.rtaOverlayChannelIDs());
    unitPicker_->setChannelID(channelID());
    overlayMenu_->setBaseChannelID(channelID());
}

void RTAPanelView::showAveraging() {
    averaging_->setItems(EnumChoice<TimeWeighting>::items(
        engine_.rtaTimeWeighting(),
        [this](TimeWeighting weighting) { engine_.rtaTimeWeighting.set(weighting); }));
}

}  // namespace TarvaneApp
