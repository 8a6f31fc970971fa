#include "Shell/ChannelControls/SPLControls.h"

#include <QHBoxLayout>
#include <QLabel>

#include "Displays/RawText.h"
#include "Displays/Theme.h"
#include "Engine/MeterEngine.h"
#include "Settings/Observable.h"
#include "Shell/ChannelControls/LeqPresets.h"
#include "Shell/Controls/BareLayout.h"
#include "Shell/Controls/CompactToggleButton.h"
#include "Shell/Controls/Divider.h"
#include "Shell/Controls/EnumChoice.h"
#include "Shell/Controls/SegmentedPicker.h"
#include "Shell/Controls/TextLabel.h"

namespace TarvaneApp {

using TarvaneKit::UUID;

namespace {

constexpr int modePickerWidth = 150;

}  // namespace

template <class E>
SPLControls::ToggleRow<E> SPLControls::makeRow(QWidget* group, const char* what,
                                               E ChannelDisplaySettings::*field) {
    auto* holder = new QWidget(group);
    auto* layout = layOutRow(holder, Theme::Space::related);
    ToggleRow<E> row;
    for (const E value : TarvaneKit::allCases<E>()) {
        const QString label = rawText(value);
        auto* button = new CompactToggleButton(
            label,
            [this, field, value] {
                engine_.updateDisplay(channelID_, [field, value](ChannelDisplaySettings& display) {
                    display.*field = value;
                });
            },
            holder);
        button->setAccessibleName(label + QLatin1Char(' ') + QLatin1String(what));
        layout->addWidget(button);
        row.push_back({value, button});
    }
    group->layout()->addWidget(holder);
    return row;
}

SPLControls::SPLControls(MeterEngine& engine, const UUID& channelID, QWidget* parent)
    : QWidget(parent), engine_(engine), channelID_(channelID) {
    auto* row = layOutRow(this, Theme::Space::group);
    modePicker_ = new SegmentedPicker(
        EnumChoice<MetricMode>::labels(), modePickerWidth,
        [this](int index) {
            engine_.updateDisplay(channelID_, [index](ChannelDisplaySettings& display) {
                display.metricMode = EnumChoice<MetricMode>::at(index);
            });
        },
        this);
    modePicker_->setAccessibleName(QStringLiteral("Metric"));
    row->addWidget(modePicker_);
    row->addWidget(makeGroupDivider(this));

    splGroup_ = new QWidget(this);
    layOutRow(splGroup_, Theme::Space::group);
    splWeightings_ = makeRow(splGroup_, "weighting", &ChannelDisplaySettings::splWeighting);
    splGroup_->layout()->addWidget(makeGroupDivider(splGroup_));
    splTimeWeightings_ =
        makeRow(splGroup_, "time weighting", &ChannelDisplaySettings::splTimeWeighting);
    row->addWidget(splGroup_);

    peakGroup_ = new QWidget(this);
    layOutRow(peakGroup_, Theme::Space::group);
    peakWeightings_ = makeRow(peakGroup_, "peak weighting", &ChannelDisplaySettings::peakWeighting);
    row->addWidget(peakGroup_);

    leqNote_ = makeTextLabel({}, Theme::Text::body, Theme::axisText, this);
    row->addWidget(leqNote_);

    followChannels(
        engine.channelChanges(), this, [this](const UUID& id) { return id == channelID_; },
        [this] { showDisplay(); });
}

void SPLControls::setChannelID(const UUID& channelID) {
    channelID_ = channelID;
    showDisplay();
}

void SPLControls::setSpacing(int spacing) {
    if (layout()->spacing() != spacing) {
        layout()->setSpacing(spacing);
        splGroup_->layout()->setSpacing(spacing);
    }
}

int SPLControls::widthWith(int spacing) const {
    // A divider has a gap on each side; the levels have two dividers, the others one.
    const int gaps = splGroup_->isHidden() ? 2 : 4;
    return sizeHint().width() + gaps * (spacing - layout()->spacing());
}

void SPLControls::showDisplay() {
    const ChannelDisplaySettings display = engine_.display(channelID_);
    modePicker_->setSelectedIndex(EnumChoice<MetricMode>::index(display.metricMode));
    splGroup_->setVisible(display.metricMode == MetricMode::spl);
    peakGroup_->setVisible(display.metricMode == MetricMode::peak);
    leqNote_->setVisible(display.metricMode == MetricMode::leq);
    const auto select = [](const auto& row, auto value) {
        for (const auto& toggle : row) {
            toggle.button->setSelected(toggle.value == value);
        }
    };
    select(splWeightings_, display.splWeighting);
    select(splTimeWeightings_, display.splTimeWeighting);
    select(peakWeightings_, display.peakWeighting);
    leqNote_->setText(leqDescription(engine_.leqWeighting(), engine_.leqIntegrationSeconds()) +
                      QStringLiteral(" · configured in Settings"));
}

}  // namespace TarvaneApp
