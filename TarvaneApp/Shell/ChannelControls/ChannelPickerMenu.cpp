#include "Shell/ChannelControls/ChannelPickerMenu.h"

#include "Displays/Theme.h"
#include "Engine/MeterEngine.h"
#include "Settings/Observable.h"

namespace TarvaneApp {

ChannelPickerMenu::ChannelPickerMenu(MeterEngine& engine, Setting<TarvaneKit::UUID>& selection,
                                     QWidget* parent)
    : MenuButton(QStringLiteral("Channel"), parent), engine_(engine), selection_(selection) {
    setToolTip(QStringLiteral("Channel shown here"));
    followChannels(engine.channelChanges(), this, [this] { showChoices(); });
    follow(selection, this, [this] { showChoices(); });
}

void ChannelPickerMenu::showChoices() {
    const auto channels = engine_.activeChannelInfos();
    const TarvaneKit::UUID current = engine_.resolvedChannelID(selection_());
    std::vector<Item> items;
    for (const ChannelInfo& channel : channels) {
        items.push_back({.text = QString::fromStdString(channel.name),
                         .isCurrent = channel.id == current,
                         .action = [this, id = channel.id] { selection_.set(id); },
                         .dot = Theme::color(channel.color)});
    }
    setItems(std::move(items));
    setVisible(channels.size() > 1);
}

}  // namespace TarvaneApp
