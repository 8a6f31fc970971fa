#include "Shell/Preferences/ChannelSection.h"

#include <QAbstractButton>
#include <QHBoxLayout>
#include <QPushButton>

#include "Displays/Theme.h"
#include "Engine/MeterEngine.h"
#include "Shell/Controls/ChannelColorDot.h"
#include "Shell/Controls/ElidedLabel.h"
#include "Shell/Forms/Form.h"
#include "Shell/Forms/FormSection.h"
#include "Shell/Preferences/ChannelCalibrationSections.h"
#include "Shell/Preferences/ChannelDisplaySection.h"
#include "Shell/Preferences/ChannelInputGainSection.h"
#include "Shell/Preferences/ChannelRingOutSection.h"
#include "Shell/Preferences/ChannelSignalSection.h"
#include "Shell/Preferences/ChannelSourceRows.h"
#include "Shell/Preferences/ChannelWindowLayoutSection.h"
#include "Shell/Preferences/TextFieldStore.h"

namespace TarvaneApp {

using TarvaneKit::UUID;

namespace {

constexpr double dimmedOpacity = 0.4;

}  // namespace

ChannelSection::ChannelSection(const Environment& environment, const UUID& channelID,
                               QWidget* parent)
    : FoldingGroup([this](QWidget* holder) { return makeForm(holder); }, parent),
      environment_(environment),
      channel_(environment.engine, channelID),
      dot_(new ChannelColorDot(&header())),
      name_(new ElidedLabel(Theme::Text::title, Theme::primaryText, &header())),
      input_(new ElidedLabel(Theme::Text::body, Theme::axisText, &header())) {
    headerRow().addWidget(dot_);
    headerRow().addWidget(name_);
    headerRow().addWidget(input_, 1);
    MeterEngine& engine = environment.engine;
    followChannels(
        engine.channelChanges(), this, [channelID](const UUID& id) { return id == channelID; },
        [this] { refresh(); });
    // What rows show that is of no channel's settings.
    followAll(
        this, [this] { refresh(); }, engine.currentInputVolumeScalar, engine.channelWindowLayouts,
        environment.texts.knownSPL);
}

Form* ChannelSection::makeForm(QWidget* parent) {
    auto* form = new Form(parent);
    addChannelRows(*form);
    addChannelSignalSection(*form, channel_);
    addChannelRingOutSection(*form, channel_);
    addChannelDisplaySection(*form, channel_);
    addChannelWindowLayoutSection(*form, channel_, environment_.openChannelWindow);
    addChannelInputGainSection(*form, channel_);
    addChannelCalibrationSections(*form, channel_, environment_.texts);
    if (!channel_.isMain()) {
        // It asks nothing, so it stands where no hand goes for anything else.
        auto* row = new QWidget(form);
        auto* layout = new QHBoxLayout(row);
        layout->setContentsMargins(0, 0, 0, Theme::Space::section);
        layout->addStretch(1);
        layout->addWidget(makeFormButton(
            QStringLiteral("Remove Channel"),
            [channel = channel_] { channel.engine().removeChannel(channel.id()); }, row));
        form->addWidget(row);
    }
    return form;
}

void ChannelSection::addChannelRows(Form& form) {
    FormSection& section =
        form.addSection(channel_.isMain() ? QStringLiteral("Source") : QStringLiteral("Channel"));
    if (!channel_.isMain()) {
        section.addTextField(QStringLiteral("Name"), channel_.name());
        section
            .addHelp(QStringLiteral("Without a name, menus list this channel by its color alone."))
            .shownWhile([channel = channel_] { return channel.name().get().isEmpty(); });
        section.addToggle(QStringLiteral("Enabled"), channel_.isEnabled());
    }
    addChannelSourceRows(section, channel_);
    if (channel_.isMain()) {
        section.addButton(QStringLiteral("Refresh Devices"),
                          [channel = channel_] { channel.engine().refreshDevices(); });
    }
}

void ChannelSection::refresh() {
    const auto info = environment_.engine.channelInfo(channelID());
    if (!info) {
        return;  // it is about to go
    }
    const QString name = QString::fromStdString(info->name);
    const double opacity = info->isEnabled ? 1.0 : dimmedOpacity;
    dot_->setColor(Theme::faded(Theme::color(info->color), opacity));
    name_->setText(name);
    name_->setEnabled(info->isEnabled);
    input_->setText(QString::fromStdString(environment_.engine.inputDescription(*info)));
    input_->setEnabled(info->isEnabled);
    setTitle(name);
    if (auto* form = static_cast<Form*>(content())) {
        form->refresh();
    }
}

}  // namespace TarvaneApp
