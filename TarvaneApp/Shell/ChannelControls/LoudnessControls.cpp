#include "Shell/ChannelControls/LoudnessControls.h"

#include <QHBoxLayout>
#include <QLabel>

#include "Displays/RawText.h"
#include "Displays/Readouts/ReadoutText.h"
#include "Displays/Theme.h"
#include "Engine/MeterSettings.h"
#include "Shell/Controls/BareLayout.h"
#include "Shell/Controls/EnumChoice.h"
#include "Shell/Controls/MenuButton.h"
#include "Shell/Controls/TextLabel.h"

namespace TarvaneApp {

using TarvaneKit::LoudnessMetric;

namespace {

constexpr int readoutWidth = 110;

}  // namespace

LoudnessControls::LoudnessControls(MeterSettings& settings, QWidget* parent)
    : QWidget(parent),
      settings_(settings),
      label_(
          makeTextLabel(QStringLiteral("Loudness"), Theme::Text::caption, Theme::axisText, this)),
      readout_(new MenuButton(QStringLiteral("Loudness"), this)),
      target_(new MenuButton(QStringLiteral("Loudness target"), this)) {
    auto* row = layOutRow(this, Theme::Space::row);
    row->addWidget(label_);
    readout_->setMinimumWidth(readoutWidth);
    readout_->setToolTip(
        QStringLiteral("Momentary (400 ms), Short-Term (3 s) or Integrated (since reset)"));
    row->addWidget(readout_);
    target_->letShrink();
    target_->setToolTip(QStringLiteral("Edit targets in Preferences > Loudness"));
    row->addWidget(target_);
    follow(settings.loudnessReadout, this, [this] { showReadout(); });
    follow(settings.loudnessTarget, this, [this] { showTarget(); });
}

void LoudnessControls::setNarrow(bool narrow) {
    if (narrow == isNarrow_) {
        return;
    }
    isNarrow_ = narrow;
    label_->setVisible(!narrow);
    readout_->setMinimumWidth(narrow ? 0 : readoutWidth);
    readout_->setTight(narrow);
    target_->setTight(narrow);
    layout()->setSpacing(narrow ? Theme::Space::related : Theme::Space::row);
}

int LoudnessControls::ordinaryWidth() const {
    return label_->sizeHint().width() + readoutWidth + target_->ordinaryWidth() +
           2 * Theme::Space::row;
}

void LoudnessControls::showReadout() {
    readout_->setItems(EnumChoice<LoudnessMetric>::items(
        settings_.loudnessReadout(),
        [this](LoudnessMetric metric) { settings_.loudnessReadout.set(metric); }, shortLabel));
}

// A custom target is listed while it is set; choosing it changes nothing.
void LoudnessControls::showTarget() {
    std::vector<MenuButton::Item> items;
    for (const LoudnessTarget& preset : LoudnessTarget::presets()) {
        items.push_back({.text = utf8Text(preset.name),
                         .isCurrent = preset == settings_.loudnessTarget(),
                         .action = [this, &preset] { settings_.loudnessTarget.set(preset); },
                         .dot = std::nullopt});
    }
    if (settings_.loudnessTarget().isCustom()) {
        items.push_back({.text = utf8Text(settings_.loudnessTarget().menuName()),
                         .isCurrent = true,
                         .action = [] {},
                         .dot = std::nullopt});
    }
    target_->setItems(std::move(items));
}

}  // namespace TarvaneApp
