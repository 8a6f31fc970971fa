#include "Shell/ChannelControls/LoudnessControls.h"

#include <QHBoxLayout>
#include <QLabel>

#include "Displays/Readouts/ReadoutText.h"
#include "Displays/Theme.h"
#include "Engine/MeterEngine.h"
#include "Shell/Controls/ControlRow.h"
#include "Shell/Controls/MenuButton.h"
#include "Shell/Controls/TextLabel.h"

namespace TarvaneApp {

using TarvaneKit::LoudnessMetric;

namespace {

constexpr int readoutWidth = 110;

QString text(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

}  // namespace

LoudnessControls::LoudnessControls(MeterEngine& engine, QWidget* parent)
    : QWidget(parent),
      engine_(engine),
      label_(
          makeTextLabel(QStringLiteral("Loudness"), Theme::Text::caption, Theme::axisText, this)),
      readout_(new MenuButton(QStringLiteral("Loudness"), this)),
      target_(new MenuButton(QStringLiteral("Loudness target"), this)) {
    auto* row = ControlRow::make(this, Theme::Space::row);
    row->addWidget(label_);
    readout_->setFixedWidth(readoutWidth);
    readout_->setToolTip(
        QStringLiteral("Momentary (400 ms), Short-Term (3 s) or Integrated (since reset)"));
    row->addWidget(readout_);
    target_->letShrink();
    target_->setToolTip(QStringLiteral("Edit targets in Preferences > Loudness"));
    row->addWidget(target_);
    follow(engine.loudnessReadout, this, [this] { showReadout(); });
    follow(engine.loudnessTarget, this, [this] { showTarget(); });
}

void LoudnessControls::setNarrow(bool narrow) {
    label_->setVisible(!narrow);
}

int LoudnessControls::ordinaryWidth() const {
    return sizeHint().width() +
           (label_->isHidden() ? label_->sizeHint().width() + Theme::Space::row : 0);
}

void LoudnessControls::showReadout() {
    std::vector<MenuButton::Item> items;
    for (const LoudnessMetric metric : TarvaneKit::allCases<LoudnessMetric>()) {
        items.push_back({.text = shortLabel(metric),
                         .isCurrent = metric == engine_.loudnessReadout(),
                         .action = [this, metric] { engine_.loudnessReadout.set(metric); },
                         .dot = std::nullopt});
    }
    readout_->setItems(std::move(items));
}

// A target of the user's own is there as long as it holds, and choosing it changes nothing.
void LoudnessControls::showTarget() {
    std::vector<MenuButton::Item> items;
    for (const LoudnessTarget& preset : LoudnessTarget::presets()) {
        items.push_back({.text = text(preset.name),
                         .isCurrent = preset == engine_.loudnessTarget(),
                         .action = [this, &preset] { engine_.loudnessTarget.set(preset); },
                         .dot = std::nullopt});
    }
    if (engine_.loudnessTarget().isCustom()) {
        items.push_back({.text = text(engine_.loudnessTarget().menuName()),
                         .isCurrent = true,
                         .action = [] {},
                         .dot = std::nullopt});
    }
    target_->setItems(std::move(items));
}

}  // namespace TarvaneApp
