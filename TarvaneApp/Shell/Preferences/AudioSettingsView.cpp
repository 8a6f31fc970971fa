#include "Shell/Preferences/AudioSettingsView.h"

#include <QAbstractButton>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>
#include <algorithm>
#include <cstddef>

#include "Displays/Theme.h"
#include "Engine/MeterEngine.h"
#include "Shell/Controls/BareLayout.h"
#include "Shell/Controls/TextLabel.h"
#include "Shell/Forms/FormSection.h"

namespace TarvaneApp {

using TarvaneKit::UUID;

namespace {

// To the top of what is seen, once its rows have their places.
void scrollTo(QWidget& widget) {
    QMetaObject::invokeMethod(
        &widget,
        [&widget] {
            for (QWidget* around = widget.parentWidget(); around != nullptr;
                 around = around->parentWidget()) {
                if (auto* area = qobject_cast<QScrollArea*>(around)) {
                    area->verticalScrollBar()->setValue(
                        widget.mapTo(area->widget(), QPoint(0, -Theme::Space::section)).y());
                }
            }
        },
        Qt::QueuedConnection);
}

}  // namespace

AudioSettingsView::AudioSettingsView(const ChannelSection::Environment& environment,
                                     KeyValueStore& store, QWidget* parent)
    : Form(parent), environment_(environment), folds_(store) {
    auto* channels = new QWidget(this);
    column_ = layOutColumn(channels, Theme::Space::section);
    addWidget(channels);
    addButton_ = makeFormButton(
        QStringLiteral("Add Channel"), [this] { addChannel(); }, this);
    addWidget(addButton_);
    auto* note = makeTextLabel(
        QStringLiteral("Each channel is any input of any device, including every channel of a "
                       "network audio card or multichannel interface, or the computer's own "
                       "output."),
        Theme::Text::caption, Theme::axisText, this);
    note->setWordWrap(true);
    addWidget(note);
    follow(environment.engine.extraChannels, this, [this] { showChannels(); });
}

// A channel's section stays the same as long as the channel is there, whatever happens to others.
void AudioSettingsView::showChannels() {
    std::vector<UUID> ids{UUID::main()};
    for (const ChannelConfig& channel : environment_.engine.extraChannels()) {
        ids.push_back(channel.id);
    }
    std::vector<ChannelSection*> sections;
    for (const UUID& id : ids) {
        const auto found = std::ranges::find(sections_, id, &ChannelSection::channelID);
        sections.push_back(found != sections_.end() ? *found : &makeSection(id));
    }
    for (ChannelSection* section : sections_) {
        if (std::ranges::find(sections, section) == sections.end()) {
            folds_.forget(section->channelID());
            section->hide();
            section->deleteLater();  // its own button may be what removed the channel
        }
    }
    for (std::size_t i = 0; i < sections.size(); ++i) {
        if (column_->indexOf(sections[i]) != static_cast<int>(i)) {
            column_->insertWidget(static_cast<int>(i), sections[i]);
            sections[i]->show();
        }
    }
    sections_ = std::move(sections);
}

ChannelSection& AudioSettingsView::makeSection(const UUID& id) {
    auto* section = new ChannelSection(environment_, id, this);
    section->setExpanded(folds_.isExpanded(id));
    connect(section, &FoldingGroup::folded, this,
            [this, id](bool isExpanded) { folds_.setExpanded(id, isExpanded); });
    return *section;
}

// What was just added is what the user wants to set up.
void AudioSettingsView::addChannel() {
    const std::size_t before = sections_.size();
    environment_.engine.addChannel();
    if (sections_.size() > before) {
        ChannelSection& added = *sections_.back();
        added.setExpanded(true);
        folds_.setExpanded(added.channelID(), true);
        added.header().setFocus();
        scrollTo(added);
    }
}

}  // namespace TarvaneApp
