#include "MetricControlBar.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <algorithm>

#include "ChannelPickerMenu.h"
#include "Controls/CompactToggleButton.h"
#include "Controls/SegmentedPicker.h"
#include "Controls/TextLabel.h"
#include "LeqPresets.h"
#include "LiveFollow.h"
#include "MeterEngine.h"
#include "ReadoutUnitPicker.h"
#include "Theme.h"

namespace TarvaneApp {

using TarvaneKit::allCases;
using TarvaneKit::rawValue;

namespace {

constexpr int paddingAcross = 16;
constexpr int paddingUpDown = 8;
constexpr int groupSpacing = 20;
constexpr int buttonSpacing = 6;
constexpr int dividerHeight = 10;
constexpr int modePickerWidth = 150;

QString text(std::string_view raw) {
    return QString::fromUtf8(raw.data(), static_cast<qsizetype>(raw.size()));
}

QWidget* makeDivider(QWidget* parent) {
    auto* divider = new QWidget(parent);
    divider->setFixedSize(1, dividerHeight);
    divider->setAutoFillBackground(true);
    QPalette palette = divider->palette();
    palette.setColor(QPalette::Window, Theme::gridLineStrong);
    divider->setPalette(palette);
    return divider;
}

QHBoxLayout* makeRowLayout(QWidget* group, int spacing) {
    auto* row = new QHBoxLayout(group);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(spacing);
    return row;
}

QStringList modeLabels() {
    QStringList labels;
    for (const MetricMode mode : allCases<MetricMode>()) {
        labels.append(text(rawValue(mode)));
    }
    return labels;
}

int modeIndex(MetricMode mode) {
    constexpr auto modes = allCases<MetricMode>();
    return static_cast<int>(std::ranges::find(modes, mode) - modes.begin());
}

}  // namespace

template <class E>
MetricControlBar::ToggleRow<E> MetricControlBar::makeRow(QWidget* group, const char* what,
                                                         E ChannelDisplaySettings::*field) {
    auto* holder = new QWidget(group);
    auto* layout = makeRowLayout(holder, buttonSpacing);
    ToggleRow<E> row;
    for (const E value : allCases<E>()) {
        const QString label = text(rawValue(value));
        auto* button = new CompactToggleButton(
            label,
            [this, field, value] {
                engine_.updateDisplay(channelID(), [field, value](ChannelDisplaySettings& display) {
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

MetricControlBar::MetricControlBar(MeterEngine& engine,
                                   std::optional<TarvaneKit::UUID> fixedChannelID, QWidget* parent)
    : QWidget(parent), engine_(engine), fixedChannelID_(fixedChannelID) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(paddingAcross, paddingUpDown, paddingAcross, paddingUpDown);
    row->setSpacing(groupSpacing);
    if (!fixedChannelID_) {
        row->addWidget(new ChannelPickerMenu(engine, engine.splMeterChannelID, this));
    }
    unitPicker_ = new ReadoutUnitPicker(engine, channelID(), this);
    row->addWidget(unitPicker_);
    row->addWidget(makeDivider(this));
    modePicker_ = new SegmentedPicker(
        modeLabels(), modePickerWidth,
        [this](int index) {
            engine_.updateDisplay(channelID(), [index](ChannelDisplaySettings& display) {
                display.metricMode = allCases<MetricMode>()[static_cast<std::size_t>(index)];
            });
        },
        this);
    modePicker_->setAccessibleName(QStringLiteral("Metric"));
    row->addWidget(modePicker_);
    row->addWidget(makeDivider(this));

    splGroup_ = new QWidget(this);
    makeRowLayout(splGroup_, groupSpacing);
    splWeightings_ = makeRow(splGroup_, "weighting", &ChannelDisplaySettings::splWeighting);
    splGroup_->layout()->addWidget(makeDivider(splGroup_));
    splTimeWeightings_ =
        makeRow(splGroup_, "time weighting", &ChannelDisplaySettings::splTimeWeighting);
    row->addWidget(splGroup_);

    peakGroup_ = new QWidget(this);
    makeRowLayout(peakGroup_, groupSpacing);
    peakWeightings_ = makeRow(peakGroup_, "peak weighting", &ChannelDisplaySettings::peakWeighting);
    row->addWidget(peakGroup_);

    leqNote_ = makeTextLabel({}, 12, Theme::axisText, this);
    row->addWidget(leqNote_);
    row->addStretch(1);

    followAll(
        this, [this] { channelChanged(); }, engine.splMeterChannelID, engine.extraChannels);
    followAll(
        this, [this] { showDisplay(); }, engine.metricMode, engine.splWeighting,
        engine.splTimeWeighting, engine.peakWeighting, engine.leqWeighting,
        engine.leqIntegrationSeconds);
}

TarvaneKit::UUID MetricControlBar::channelID() const {
    return engine_.resolvedChannelID(fixedChannelID_.value_or(engine_.splMeterChannelID()));
}

void MetricControlBar::channelChanged() {
    unitPicker_->setChannelID(channelID());
    showDisplay();
}

void MetricControlBar::showDisplay() {
    const ChannelDisplaySettings display = engine_.display(channelID());
    modePicker_->setSelectedIndex(modeIndex(display.metricMode));
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
    leqNote_->setText(QStringLiteral("%1-weighted, %2 · configured in Settings")
                          .arg(text(rawValue(engine_.leqWeighting())),
                               leqTimeLabel(engine_.leqIntegrationSeconds())));
}

}  // namespace TarvaneApp
