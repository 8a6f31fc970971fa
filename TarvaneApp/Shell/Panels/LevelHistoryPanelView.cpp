#include "Shell/Panels/LevelHistoryPanelView.h"

#include <QCheckBox>
#include <QLabel>
#include <QSignalBlocker>

#include "Displays/RawText.h"
#include "Displays/Readouts/ReadoutText.h"
#include "Displays/Theme.h"
#include "Engine/MeterEngine.h"
#include "LiveDisplays/LiveLevelHistoryGraph.h"
#include "Settings/Observable.h"
#include "Shell/Controls/EnumChoice.h"
#include "Shell/Controls/IconButton.h"
#include "Shell/Controls/MenuButton.h"
#include "Shell/Controls/TextLabel.h"
#include "Shell/Panels/ExportButton.h"
#include "Shell/Panels/LevelHistoryChannelMenu.h"
#include "Shell/Panels/LevelHistoryExtremesSummary.h"
#include "Shell/Panels/LevelHistoryOverlayMenu.h"
#include "Shell/Panels/PanelFrame.h"
#include "Shell/Panels/PanelHeader.h"

namespace TarvaneApp {

using TarvaneKit::UUID;

namespace {

constexpr int stripHeight = 170;

}  // namespace

LevelHistoryPanelView::LevelHistoryPanelView(MeterEngine& engine,
                                             const std::optional<UUID>& fixedChannelID,
                                             QWidget* parent)
    : QWidget(parent),
      engine_(engine),
      fixedChannelID_(fixedChannelID),
      graph_(new LiveLevelHistoryGraph(engine, channelID(), this)),
      overlayMenu_(new LevelHistoryOverlayMenu(engine, channelID(), this)),
      caption_(makeTextLabel({}, Theme::Text::caption, Theme::axisText, this)),
      momentary_(new QCheckBox(QStringLiteral("Momentary"), this)),
      resetButton_(new IconButton(Theme::Symbol::header, this)),
      zoomMenu_(new MenuButton(QStringLiteral("Time range"), this)) {
    momentary_->setFont(Typeface::installed().systemFont(Theme::Text::caption));
    momentary_->setToolTip(
        QStringLiteral("Draw Momentary loudness (400 ms) over the Short-Term history"));
    resetButton_->setSymbol(QStringLiteral("arrow.uturn.backward"), Theme::axisText);
    resetButton_->hide();

    auto* header = new PanelHeader(QStringLiteral("Level History"), this);
    if (!fixedChannelID_) {
        auto* channelMenu = new LevelHistoryChannelMenu(engine, header);
        channelMenu->letShrink();
        header->row().addWidget(channelMenu);
    }
    header->row().addWidget(overlayMenu_);
    header->row().addWidget(caption_);
    header->row().addWidget(momentary_);
    header->row().addStretch(1);
    auto* extremes = new LevelHistoryExtremesSummary(*graph_, header);
    header->row().addWidget(extremes);
    header->row().addWidget(resetButton_);
    header->row().addWidget(zoomMenu_);
    header->addIcons({new ExportButton(header)});
    header->setExpendable({caption_, extremes});
    header->orderTabs(*graph_);

    framePanel(this, header, graph_, Theme::Space::row);

    connect(graph_, &LiveLevelHistoryGraph::ownRangeChanged, this,
            [this] { resetButton_->setVisible(graph_->hasOwnRange()); });
    connect(resetButton_, &QAbstractButton::clicked, graph_, &LiveLevelHistoryGraph::clearOwnRange);
    connect(momentary_, &QCheckBox::toggled, this,
            [this](bool on) { engine_.levelHistoryShowsMomentary.set(on); });
    followAll(
        this, [this] { channelChanged(); }, engine.levelHistoryChannelID, engine.splMeterChannelID,
        engine.levelHistoryOverlayChannelIDs);
    followChannels(engine.channelChanges(), this, [this] { channelChanged(); });
    follow(engine.levelHistoryZoom, this, [this] { showZoom(); });
}

UUID LevelHistoryPanelView::channelID() const {
    return engine_.resolvedChannelID(fixedChannelID_.value_or(
        engine_.levelHistoryChannelID().value_or(engine_.splMeterChannelID())));
}

QSize LevelHistoryPanelView::sizeHint() const {
    return {QWidget::sizeHint().width(), stripHeight};
}

void LevelHistoryPanelView::channelChanged() {
    graph_->setChannelID(channelID());
    graph_->setOverlayIDs(engine_.levelHistoryOverlayChannelIDs());
    overlayMenu_->setBaseChannelID(channelID());
    showMetric();
}

void LevelHistoryPanelView::showZoom() {
    zoomMenu_->setItems(EnumChoice<LevelHistoryZoom>::items(engine_.levelHistoryZoom(),
                                                            [this](LevelHistoryZoom zoom) {
                                                                engine_.levelHistoryZoom.set(zoom);
                                                                graph_->clearOwnRange();
                                                            }));
    resetButton_->setHelp(QStringLiteral("Back to %1 (or double-click the graph)")
                              .arg(rawText(engine_.levelHistoryZoom())));
}

void LevelHistoryPanelView::showMetric() {
    const auto channel = engine_.channelInfo(channelID());
    const bool isLoudness = channel && channel->measuresLoudness;
    const bool showsMomentary = isLoudness && engine_.levelHistoryShowsMomentary();
    caption_->setText(displayLabel(engine_.historyMetric(channelID())) +
                      (showsMomentary ? QStringLiteral(" + Momentary") : QString()));
    const QSignalBlocker quiet(momentary_);
    momentary_->setChecked(engine_.levelHistoryShowsMomentary());
    momentary_->setVisible(isLoudness);
}

}  // namespace TarvaneApp
