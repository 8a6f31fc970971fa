#include "Shell/Windows/ChannelWindowLayoutControls.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QLabel>
#include <QPushButton>

#include "Displays/Theme.h"
#include "Engine/MeterEngine.h"
#include "Settings/Observable.h"
#include "Shell/Controls/BareLayout.h"
#include "Shell/Controls/DropDown.h"
#include "Shell/Controls/EnumChoice.h"
#include "Shell/Controls/MenuItems.h"
#include "Shell/Controls/TextLabel.h"
#include "Shell/Windows/StandaloneModule.h"

namespace TarvaneApp {

using TarvaneKit::UUID;

ChannelWindowLayoutControls::ChannelWindowLayoutControls(MeterEngine& engine, const UUID& channelID,
                                                         QWidget* parent)
    : QWidget(parent), engine_(engine), channelID_(channelID) {
    auto* column = layOutColumn(this, Theme::Space::section);
    column->addWidget(
        makeTextLabel(QStringLiteral("Show"), Theme::Text::caption, Theme::axisText, this));
    auto* toggles = new QVBoxLayout;
    toggles->setSpacing(Theme::Space::related);
    addToggle(*toggles, label(StandaloneModule::splMeter), &ChannelWindowLayout::showsSPLMeter);
    addToggle(*toggles, label(StandaloneModule::rta), &ChannelWindowLayout::showsRTA);
    addToggle(*toggles, label(StandaloneModule::spectrogram),
              &ChannelWindowLayout::showsSpectrogram);
    addToggle(*toggles, label(StandaloneModule::levelHistory),
              &ChannelWindowLayout::showsLevelHistory);
    column->addLayout(toggles);
    auto* rows = new QFormLayout;
    addPicker(*rows, QStringLiteral("RTA & Spectrogram"), &ChannelWindowLayout::graphOrientation);
    addPicker(*rows, QStringLiteral("Graph Order"), &ChannelWindowLayout::graphOrder);
    addPicker(*rows, QStringLiteral("Level History Position"),
              &ChannelWindowLayout::levelHistoryPosition);
    column->addLayout(rows);
    auto* reset = new QPushButton(QStringLiteral("Reset to Main Window Layout"), this);
    reset->setAutoDefault(false);
    connect(reset, &QPushButton::clicked, this, [this] { engine_.resetWindowLayout(channelID_); });
    column->addWidget(reset);
    follow(engine.channelWindowLayouts, this, [this] { showLayout(); });
}

// The last module shown can't be hidden: a click on its toggle changes nothing.
void ChannelWindowLayoutControls::addToggle(QVBoxLayout& column, const QString& name,
                                            bool ChannelWindowLayout::*shows) {
    auto* toggle = new QCheckBox(name, this);
    connect(toggle, &QCheckBox::clicked, this, [this, shows](bool isOn) {
        engine_.updateWindowLayout(channelID_,
                                   [&](ChannelWindowLayout& layout) { layout.*shows = isOn; });
        showLayout();
    });
    shows_.emplace_back(
        [toggle, shows](const ChannelWindowLayout& layout) { toggle->setChecked(layout.*shows); });
    column.addWidget(toggle);
}

template <class E>
void ChannelWindowLayoutControls::addPicker(QFormLayout& rows, const QString& name,
                                            std::optional<E> ChannelWindowLayout::*field) {
    auto* picker = new DropDown(this);
    picker->setAccessibleName(name);
    picker->addItem(QStringLiteral("Same as Main Window"));
    picker->addItems(EnumChoice<E>::labels());
    connect(picker, &QComboBox::activated, this, [this, field](int index) {
        engine_.updateWindowLayout(channelID_, [field, index](ChannelWindowLayout& layout) {
            layout.*field = index > 0 ? std::optional(EnumChoice<E>::at(index - 1)) : std::nullopt;
        });
    });
    shows_.emplace_back([picker, field](const ChannelWindowLayout& layout) {
        const auto& chosen = layout.*field;
        picker->setCurrentIndex(chosen ? 1 + EnumChoice<E>::index(*chosen) : 0);
    });
    rows.addRow(menuText(name.toStdString()), picker);
}

void ChannelWindowLayoutControls::showLayout() {
    const ChannelWindowLayout layout = engine_.windowLayout(channelID_);
    for (const auto& show : shows_) {
        show(layout);
    }
}

}  // namespace TarvaneApp
