#include "Panels/LevelHistoryPanelView.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "Controls/IconButton.h"
#include "Controls/MenuButton.h"
#include "Controls/TextLabel.h"
#include "LevelHistory/LiveLevelHistoryGraph.h"
#include "LiveFollow.h"
#include "MeterEngine.h"
#include "Panels/PanelHeader.h"
#include "Readouts/ReadoutText.h"
#include "Theme.h"

namespace TarvaneApp {

using TarvaneKit::LevelHistoryExtreme;
using TarvaneKit::UUID;

namespace {

constexpr int paddingAcross = 16;
constexpr int paddingBottom = 8;
constexpr int stripHeight = 170;
constexpr int resetIconSize = 12;
// Beside the caption there are the title, three menus' worth of controls and two extremes.
constexpr int roomWithoutCaption = 860;

QString zoomLabel(LevelHistoryZoom zoom) {
    const auto label = TarvaneKit::rawValue(zoom);
    return QString::fromUtf8(label.data(), static_cast<int>(label.size()));
}

QPushButton* makeExtremeButton(QWidget* parent) {
    auto* button = new QPushButton(parent);
    button->setFlat(true);
    button->setFont(Typeface::installed().systemFont(11));
    button->setToolTip(QStringLiteral("Show this moment"));
    button->setFocusPolicy(Qt::TabFocus);
    return button;
}

}  // namespace

LevelHistoryPanelView::LevelHistoryPanelView(MeterEngine& engine,
                                             const std::optional<UUID>& fixedChannelID,
                                             QWidget* parent)
    : QWidget(parent),
      engine_(engine),
      fixedChannelID_(fixedChannelID),
      graph_(new LiveLevelHistoryGraph(engine, channelID(), this)),
      channelMenu_(new MenuButton(QStringLiteral("Channel"), this)),
      caption_(makeTextLabel({}, 11, Theme::axisText, this)),
      maxButton_(makeExtremeButton(this)),
      minButton_(makeExtremeButton(this)),
      resetButton_(new IconButton(resetIconSize, this)),
      zoomMenu_(new MenuButton(QStringLiteral("Time range"), this)) {
    channelMenu_->setToolTip(QStringLiteral("Channel shown here"));
    resetButton_->setSymbol(QStringLiteral("arrow.uturn.backward"), Theme::axisText);
    resetButton_->hide();

    auto* header = new PanelHeader(QStringLiteral("Level History"), this);
    header->row().addWidget(channelMenu_);
    header->row().addWidget(caption_);
    header->row().addStretch(1);
    header->row().addWidget(maxButton_);
    header->row().addWidget(minButton_);
    header->row().addWidget(resetButton_);
    header->row().addWidget(zoomMenu_);

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, paddingBottom);
    column->setSpacing(0);
    column->addWidget(header);
    auto* frame = new QHBoxLayout;
    frame->setContentsMargins(paddingAcross, 0, paddingAcross, 0);
    frame->addWidget(graph_);
    column->addLayout(frame, 1);

    connect(graph_, &LiveLevelHistoryGraph::historyChanged, this, [this] { showExtremes(); });
    connect(graph_, &LiveLevelHistoryGraph::ownRangeChanged, this,
            [this] { resetButton_->setVisible(graph_->hasOwnRange()); });
    connect(resetButton_, &QAbstractButton::clicked, graph_, &LiveLevelHistoryGraph::clearOwnRange);
    const auto jump = [this](bool toMax) {
        const auto extremes = graph_->view().recorder->extremes(graph_->view().metricIndex);
        if (const auto& extreme = toMax ? extremes.max : extremes.min) {
            graph_->showMoment(extreme->elapsed);
        }
    };
    connect(maxButton_, &QAbstractButton::clicked, this, [jump] { jump(true); });
    connect(minButton_, &QAbstractButton::clicked, this, [jump] { jump(false); });
    followAll(
        this, [this] { channelChanged(); }, engine.levelHistoryChannelID, engine.splMeterChannelID,
        engine.levelHistoryOverlayChannelIDs, engine.extraChannels, engine.rtaColor);
    followAll(
        this, [this] { showCaption(); }, engine.metricMode, engine.splWeighting,
        engine.splTimeWeighting, engine.peakWeighting, engine.levelHistoryShowsMomentary,
        engine.mainInputMeasuresLoudness);
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
    showChannels();
    showCaption();
    showExtremes();
}

void LevelHistoryPanelView::showChannels() {
    const auto& chosen = engine_.levelHistoryChannelID();
    std::vector<MenuButton::Item> items;
    items.push_back({.text = QStringLiteral("Follow SPL Meter"),
                     .isCurrent = !chosen,
                     .action = [this] { engine_.levelHistoryChannelID.set(std::nullopt); },
                     .dot = std::nullopt});
    for (const ChannelInfo& channel : engine_.activeChannelInfos()) {
        items.push_back(
            {.text = QString::fromStdString(channel.name),
             .isCurrent = chosen && engine_.resolvedChannelID(*chosen) == channel.id,
             .action = [this, id = channel.id] { engine_.levelHistoryChannelID.set(id); },
             .dot = Theme::color(channel.color)});
    }
    channelMenu_->setVisible(!fixedChannelID_ && items.size() > 2);
    channelMenu_->setItems(std::move(items));
}

void LevelHistoryPanelView::showZoom() {
    std::vector<MenuButton::Item> items;
    for (const LevelHistoryZoom zoom : TarvaneKit::allCases<LevelHistoryZoom>()) {
        items.push_back({.text = zoomLabel(zoom),
                         .isCurrent = zoom == engine_.levelHistoryZoom(),
                         .action =
                             [this, zoom] {
                                 engine_.levelHistoryZoom.set(zoom);
                                 graph_->clearOwnRange();
                             },
                         .dot = std::nullopt});
    }
    zoomMenu_->setItems(std::move(items));
    const QString help = QStringLiteral("Back to %1 (or double-click the graph)")
                             .arg(zoomLabel(engine_.levelHistoryZoom()));
    resetButton_->setToolTip(help);
    resetButton_->setAccessibleName(help);
}

void LevelHistoryPanelView::showExtremes() {
    const LevelHistoryView& view = graph_->view();
    const auto extremes = view.recorder->extremes(view.metricIndex);
    const auto show = [&](QPushButton& button, const char* title,
                          const std::optional<LevelHistoryExtreme>& extreme) {
        const QString name = QString::fromLatin1(title);
        button.setText(extreme ? name + QStringLiteral("  ") + view.extremeLabel(*extreme) : name);
        button.setEnabled(extreme.has_value());
    };
    show(*maxButton_, "MAX", extremes.max);
    show(*minButton_, "MIN", extremes.min);
}

void LevelHistoryPanelView::showCaption() {
    const UUID id = channelID();
    QString caption = displayLabel(engine_.historyMetric(id));
    const auto channel = engine_.channelInfo(id);
    if (channel && channel->measuresLoudness && engine_.levelHistoryShowsMomentary()) {
        caption += QStringLiteral(" + Momentary");
    }
    caption_->setText(caption);
}

void LevelHistoryPanelView::resizeEvent(QResizeEvent* event) {
    caption_->setVisible(width() >= roomWithoutCaption);
    QWidget::resizeEvent(event);
}

}  // namespace TarvaneApp
