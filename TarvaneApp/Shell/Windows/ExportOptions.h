// What a save dialog for reports asks beside the place: the format, and which channels.
#pragma once

#include <QPointer>
#include <QWidget>
#include <vector>

#include "Core/UUID.h"
#include "Records/ChannelInfo.h"
#include "Reports/LevelHistoryExporter.h"

class QCheckBox;
class QComboBox;
class QFileDialog;

namespace TarvaneApp {

class ExportOptions final : public QWidget {
    Q_OBJECT
  public:
    /// `proposed` are checked. With a single channel none is asked for.
    ExportOptions(QFileDialog& panel, std::vector<ChannelInfo> channels,
                  const std::vector<TarvaneKit::UUID>& proposed, QWidget* parent = nullptr);

    LevelHistoryExporter::Format format() const { return format_; }
    /// In the order of the list.
    std::vector<TarvaneKit::UUID> selectedChannelIDs() const;

    /// Has the dialog offer files of the format, and name its file so.
    void apply();

  private:
    void formatChanged(int index);
    void channelToggled(QCheckBox& box);

    QPointer<QFileDialog> panel_;
    std::vector<ChannelInfo> channels_;
    std::vector<QCheckBox*> checkboxes_;  // in the order of the channels
    LevelHistoryExporter::Format format_ = LevelHistoryExporter::Format::pdf;
};

}  // namespace TarvaneApp
