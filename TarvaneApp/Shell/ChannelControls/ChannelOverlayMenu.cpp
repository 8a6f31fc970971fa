#include "Shell/ChannelControls/ChannelOverlayMenu.h"

#include <QMenu>
#include <algorithm>

#include "Displays/Theme.h"
#include "Engine/MeterEngine.h"
#include "Settings/Observable.h"
#include "Shell/Controls/MenuItems.h"

namespace TarvaneApp {

using TarvaneKit::UUID;

struct ChannelOverlayMenu::Choice {
    UUID id;
    std::string name;
    bool isOverlaid = false;
};

ChannelOverlayMenu::ChannelOverlayMenu(MeterEngine& engine, Setting<IDs>& overlays,
                                       const QString& help, const UUID& baseChannelID,
                                       QWidget* parent)
    : IconMenuButton(
          Theme::Symbol::header, [this](QMenu& menu) { fill(menu); }, parent),
      engine_(engine),
      overlays_(overlays),
      baseChannelID_(baseChannelID) {
    setHelp(help);
    followChannels(engine.channelChanges(), this, [this] { showState(); });
    follow(overlays, this, [this] { showState(); });
}

void ChannelOverlayMenu::setBaseChannelID(const UUID& id) {
    baseChannelID_ = id;
    showState();
}

// An overlay whose channel was switched off can still be removed.
std::vector<ChannelOverlayMenu::Choice> ChannelOverlayMenu::choices() const {
    const UUID base = engine_.resolvedChannelID(baseChannelID_);
    std::vector<Choice> choices;
    for (const ChannelInfo& channel : engine_.channelInfos()) {
        const bool isOverlaid = std::ranges::find(overlays_(), channel.id) != overlays_().end();
        if (channel.id != base && (channel.isEnabled || isOverlaid)) {
            choices.push_back({channel.id, channel.name, isOverlaid});
        }
    }
    return choices;
}

void ChannelOverlayMenu::fill(QMenu& menu) {
    const UUID base = engine_.resolvedChannelID(baseChannelID_);
    for (const Choice& choice : choices()) {
        QAction* item = menu.addAction(menuText(choice.name));
        if (const auto reason = whyNot(base, choice.id)) {
            item->setText(item->text() + QStringLiteral("  (%1)").arg(*reason));
        }
        item->setCheckable(true);
        item->setChecked(choice.isOverlaid);
        connect(item, &QAction::triggered, this, [this, id = choice.id] { toggle(id); });
    }
}

void ChannelOverlayMenu::toggle(const UUID& id) {
    IDs ids = overlays_();
    if (std::erase(ids, id) == 0) {
        ids.push_back(id);
    }
    overlays_.set(std::move(ids));
}

void ChannelOverlayMenu::showState() {
    const std::vector<Choice> offered = choices();
    setSymbol(QStringLiteral("square.3.layers.3d"),
              std::ranges::any_of(offered, &Choice::isOverlaid) ? Theme::accent : Theme::axisText);
    setVisible(!offered.empty());
}

}  // namespace TarvaneApp
