#include "Shell/Windows/LevelHistoryExport.h"

#include <QApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QGridLayout>
#include <QStandardPaths>
#include <QUrl>
#include <chrono>

#include "Displays/RawText.h"
#include "Engine/MeterEngine.h"
#include "Reports/LevelHistoryExporter.h"
#include "Settings/KeyValueStore.h"
#include "Shell/Controls/NoteBar.h"
#include "Shell/Windows/ExportOptions.h"

namespace TarvaneApp {

using TarvaneKit::Date;

namespace {

constexpr auto folderKey = "ExportLevelHistory.folder";

QString lastFolder(const KeyValueStore& store) {
    const QString stored = utf8Text(store.text(folderKey).value_or(std::string()));
    return !stored.isEmpty() && QFileInfo(stored).isDir()
               ? stored
               : QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
}

Date now() {
    return std::chrono::system_clock::now();
}

QString proposedName(const std::vector<TarvaneKit::UUID>& channels, const MeterEngine& engine) {
    std::vector<LevelHistoryReport> reports;
    for (auto& page : LevelHistoryExporter::pages(channels, engine, now())) {
        reports.push_back(std::move(page.report));
    }
    return LevelHistoryReport::suggestedFileName(reports, now());
}

}  // namespace

LevelHistoryExport::LevelHistoryExport(const Environment& environment, QWidget* window)
    : QObject(window),
      engine_(environment.engine),
      store_(environment.store),
      note_(environment.note),
      window_(window) {}

void LevelHistoryExport::begin() {
    if (panel_) {
        panel_->raise();
        panel_->activateWindow();
        return;
    }
    auto channels = LevelHistoryReport::exportableChannels(engine_);
    if (channels.empty()) {
        engine_.tellError(LevelHistoryExporter::nothingRecorded);
        return;
    }
    const auto proposed = LevelHistoryExporter::proposedChannels(engine_);
    QWidget* active = QApplication::activeWindow();
    panel_ = new QFileDialog(active != nullptr ? active : window_,
                             QStringLiteral("Export Level History"), lastFolder(store_));
    panel_->setAttribute(Qt::WA_DeleteOnClose);
    panel_->setAcceptMode(QFileDialog::AcceptSave);
    // The desktop's own dialog has no room for the channels.
    panel_->setOption(QFileDialog::DontUseNativeDialog);
    panel_->selectFile(proposedName(proposed, engine_) + u'.' +
                       LevelHistoryExporter::fileExtension(LevelHistoryExporter::Format::pdf));
    auto* options = new ExportOptions(*panel_, std::move(channels), proposed, panel_);
    if (auto* grid = qobject_cast<QGridLayout*>(panel_->layout())) {
        grid->addWidget(options, grid->rowCount(), 0, 1, grid->columnCount());
    }
    connect(panel_, &QFileDialog::fileSelected, this,
            [this, options](const QString& path) { write(path, *options); });
    panel_->open();
}

void LevelHistoryExport::write(const QString& path, const ExportOptions& options) {
    store_.setText(folderKey, QFileInfo(path).absolutePath().toStdString());
    store_.synchronize();
    const auto pages = LevelHistoryExporter::pages(options.selectedChannelIDs(), engine_, now());
    if (pages.empty()) {
        engine_.tellError(LevelHistoryExporter::nothingSelected);
        return;
    }
    QApplication::setOverrideCursor(Qt::WaitCursor);
    try {
        LevelHistoryExporter::write(LevelHistoryExporter::render(options.format(), pages), path);
        note_.say(
            QStringLiteral("Exported ") + QFileInfo(path).fileName(),
            {{QStringLiteral("Open"),
              [path] { QDesktopServices::openUrl(QUrl::fromLocalFile(path)); }},
             {QStringLiteral("Show in File Manager"), [path] {
                  QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(path).absolutePath()));
              }}});
    } catch (const std::exception& error) {
        engine_.tellError(std::string("Couldn't export the level history: ") + error.what());
    }
    QApplication::restoreOverrideCursor();
}

}  // namespace TarvaneApp
