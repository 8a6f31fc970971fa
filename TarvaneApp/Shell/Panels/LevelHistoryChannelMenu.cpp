#include "Shell/Panels/LevelHistoryChannelMenu.h"

#include "Displays/Theme.h"
#include "Engine/MeterEngine.h"
#include "Settings/Observable.h"

namespace TarvaneApp {

LevelHistoryChannelMenu::LevelHistoryChannelMenu(MeterEngine& engine, QWidget* parent)
    : MenuButton(QStringLiteral("Level history channel"), parent), engine_(engine) {
    setToolTip(QStringLiteral("Channel shown here"));
    followChannels(engine.channelChanges(), this, [this] { showChoices(); });
    follow(engine.levelHistoryChannelID, this, [this] { showChoices(); });
    follow(engine.splMeterChannelID, this, [this] { showChoices(); });
}

void LevelHistoryChannelMenu::showChoices() {
    const auto& chosen = engine_.levelHistoryChannelID();
    const auto channels = engine_.activeChannelInfos();
    const auto item = [this](const QString& text, const ChannelInfo& shown, bool isCurrent,
                             std::optional<TarvaneKit::UUID> id) {
        return Item{.text = text,
                    .isCurrent = isCurrent,
                    .action = [this, id] { engine_.levelHistoryChannelID.set(id); },
                    .dot = Theme::color(shown.color),
                    .label = QString::fromStdString(shown.name)};
    };
    const ChannelInfo meters =
        engine_.channelInfo(engine_.resolvedChannelID(engine_.splMeterChannelID()))
            .value_or(engine_.mainChannelInfo());
    std::vector<Item> items{
        item(QStringLiteral("Follow SPL Meter"), meters, !chosen, std::nullopt)};
    for (const ChannelInfo& channel : channels) {
        const bool isCurrent = chosen && engine_.resolvedChannelID(*chosen) == channel.id;
        items.push_back(item(QString::fromStdString(channel.name), channel, isCurrent, channel.id));
    }
    setItems(std::move(items));
    setVisible(channels.size() > 1);
}

}  // namespace TarvaneApp
