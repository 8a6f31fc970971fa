#include "Shell/Windows/ExportOptions.h"

#include <QCheckBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QVBoxLayout>
#include <algorithm>
#include <cstddef>

#include "Displays/Theme.h"
#include "Shell/Controls/DropDown.h"
#include "Shell/Controls/EnumChoice.h"
#include "Shell/Controls/MenuItems.h"
#include "Shell/Controls/TextLabel.h"

namespace TarvaneApp {

using LevelHistoryExporter::Format;
using TarvaneKit::UUID;

namespace {

constexpr QMargins edges(20, 10, 20, 10);
constexpr int spacing = 10;
constexpr int labelSpacing = 8;

}  // namespace

ExportOptions::ExportOptions(QFileDialog& panel, std::vector<ChannelInfo> channels,
                             const std::vector<UUID>& proposed, QWidget* parent)
    : QWidget(parent), panel_(&panel), channels_(std::move(channels)) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(edges);
    column->setSpacing(spacing);
    auto* row = new QHBoxLayout;
    row->setSpacing(labelSpacing);
    auto* label = new QLabel(QStringLiteral("&Format:"), this);
    auto* formats = new DropDown(this);
    formats->addItems(EnumChoice<Format>::labels());
    formats->setAccessibleName(QStringLiteral("Format"));
    label->setBuddy(formats);
    connect(formats, &QComboBox::currentIndexChanged, this, &ExportOptions::formatChanged);
    row->addWidget(label);
    row->addWidget(formats);
    row->addStretch(1);
    column->addLayout(row);
    if (channels_.size() > 1) {
        for (const ChannelInfo& channel : channels_) {
            auto* box = new QCheckBox(menuText(channel.name), this);
            box->setChecked(std::ranges::find(proposed, channel.id) != proposed.end());
            connect(box, &QCheckBox::toggled, this, [this, box] { channelToggled(*box); });
            column->addWidget(box);
            checkboxes_.push_back(box);
        }
    }
    column->addWidget(makeTextLabel(
        QStringLiteral("PDF puts each channel on its own page; PNG stacks them in one image."),
        Theme::Text::caption, Theme::axisText, this));
    apply();
}

std::vector<UUID> ExportOptions::selectedChannelIDs() const {
    std::vector<UUID> selected;
    for (std::size_t i = 0; i < channels_.size(); ++i) {
        if (checkboxes_.empty() || checkboxes_[i]->isChecked()) {
            selected.push_back(channels_[i].id);
        }
    }
    return selected;
}

// A report is of one channel at least.
void ExportOptions::channelToggled(QCheckBox& box) {
    if (selectedChannelIDs().empty()) {
        box.setChecked(true);
    }
}

void ExportOptions::formatChanged(int index) {
    format_ = EnumChoice<Format>::at(index);
    apply();
}

void ExportOptions::apply() {
    if (!panel_) {
        return;
    }
    const QString extension = LevelHistoryExporter::fileExtension(format_);
    panel_->setNameFilter(rawText(format_) + QStringLiteral(" (*.") + extension + u')');
    panel_->setDefaultSuffix(extension);
    const QStringList files = panel_->selectedFiles();
    if (!files.isEmpty() && !QFileInfo(files.front()).fileName().isEmpty() &&
        !QFileInfo(files.front()).isDir()) {
        const QFileInfo file(files.front());
        const bool hasExtension =
            std::ranges::any_of(TarvaneKit::allCases<Format>(), [&file](Format format) {
                return file.suffix() == LevelHistoryExporter::fileExtension(format);
            });
        panel_->selectFile((hasExtension ? file.completeBaseName() : file.fileName()) + u'.' +
                           extension);
    }
}

}  // namespace TarvaneApp
