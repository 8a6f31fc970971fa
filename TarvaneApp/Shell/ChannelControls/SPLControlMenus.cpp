#include "Shell/ChannelControls/SPLControlMenus.h"

#include <QHBoxLayout>

#include "Displays/Theme.h"
#include "Engine/MeterEngine.h"
#include "Settings/Observable.h"
#include "Shell/ChannelControls/LeqPresets.h"
#include "Shell/Controls/BareLayout.h"
#include "Shell/Controls/ElidedLabel.h"
#include "Shell/Controls/EnumChoice.h"
#include "Shell/Controls/MenuButton.h"

namespace TarvaneApp {

using TarvaneKit::UUID;

SPLControlMenus::SPLControlMenus(MeterEngine& engine, const UUID& channelID, QWidget* parent)
    : QWidget(parent),
      engine_(engine),
      channelID_(channelID),
      mode_(new MenuButton(QStringLiteral("Metric"), this)),
      weighting_(new MenuButton(QStringLiteral("Weighting"), this)),
      timeWeighting_(new MenuButton(QStringLiteral("Time weighting"), this)),
      leqNote_(new ElidedLabel(Theme::Text::caption, Theme::axisText, this)) {
    auto* row = layOutRow(this, Theme::Space::related);
    for (MenuButton* menu : {mode_, weighting_, timeWeighting_}) {
        menu->setTight(true);
        row->addWidget(menu);
    }
    row->addWidget(leqNote_, 1);
    followChannels(
        engine.channelChanges(), this, [this](const UUID& id) { return id == channelID_; },
        [this] { showDisplay(); });
}

void SPLControlMenus::setChannelID(const UUID& channelID) {
    channelID_ = channelID;
    showDisplay();
}

template <class E>
void SPLControlMenus::offer(MenuButton& menu, E ChannelDisplaySettings::*field) {
    const E current = engine_.display(channelID_).*field;
    menu.setItems(EnumChoice<E>::items(current, [this, field](E value) {
        engine_.updateDisplay(channelID_, [field, value](ChannelDisplaySettings& display) {
            display.*field = value;
        });
    }));
}

void SPLControlMenus::showDisplay() {
    const MetricMode mode = engine_.display(channelID_).metricMode;
    offer(*mode_, &ChannelDisplaySettings::metricMode);
    offer(*weighting_, mode == MetricMode::peak ? &ChannelDisplaySettings::peakWeighting
                                                : &ChannelDisplaySettings::splWeighting);
    offer(*timeWeighting_, &ChannelDisplaySettings::splTimeWeighting);
    weighting_->setVisible(mode != MetricMode::leq);
    timeWeighting_->setVisible(mode == MetricMode::spl);
    leqNote_->setVisible(mode == MetricMode::leq);
    leqNote_->setText(leqDescription(engine_.leqWeighting(), engine_.leqIntegrationSeconds()));
}

}  // namespace TarvaneApp
