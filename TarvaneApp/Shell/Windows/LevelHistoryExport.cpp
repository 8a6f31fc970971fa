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
#include <future>

#include "Displays/RawText.h"
#include "Engine/MeterEngine.h"
#include "Reports/LevelHistoryExporter.h"
#include "Settings/KeyValueStore.h"
#include "Shell/Controls/FileDialogLabels.h"
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

// The dialog takes what stands in quotes for several names.
QString proposedName(const std::vector<TarvaneKit::UUID>& channels, const MeterEngine& engine) {
    std::vector<LevelHistoryReport> reports;
    for (const TarvaneKit::UUID& id : channels) {
        if (auto report = LevelHistoryReport::make(engine, id, now())) {
            reports.push_back(std::move(*report));
        }
    }
    return LevelHistoryReport::suggestedFileName(reports, now()).replace(u'"', u'\'');
}

}  // namespace

LevelHistoryExport::LevelHistoryExport(const Environment& environment, QWidget* window)
    : QObject(window),
      engine_(environment.engine),
      store_(environment.store),
      note_(environment.note),
      window_(window) {}

LevelHistoryExport::~LevelHistoryExport() {
    std::promise<void> last;
    files_.post([&last] { last.set_value(); });
    last.get_future().wait();
}

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
    labelLists(*panel_);
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
    auto pages = LevelHistoryExporter::pages(options.selectedChannelIDs(), engine_, now());
    if (pages.empty()) {
        engine_.tellError(LevelHistoryExporter::nothingSelected);
        return;
    }
    note_.sayAtWork(QStringLiteral("Exporting %1…").arg(QFileInfo(path).fileName()));
    files_.post([this, path, pages = std::move(pages), format = options.format()] {
        std::optional<std::string> error;
        try {
            LevelHistoryExporter::write(LevelHistoryExporter::render(format, pages), path);
        } catch (const std::exception& thrown) {
            error = thrown.what();
        }
        mainThread_.post([this, path, error] { written(path, error); });
    });
}

void LevelHistoryExport::written(const QString& path, const std::optional<std::string>& error) {
    if (error) {
        note_.hide();
        engine_.tellError("Couldn't export the level history: " + *error);
        return;
    }
    note_.say(
        QStringLiteral("Exported ") + QFileInfo(path).fileName(),
        {{QStringLiteral("Open"), [path] { QDesktopServices::openUrl(QUrl::fromLocalFile(path)); }},
         {QStringLiteral("Show in File Manager"), [path] {
              QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(path).absolutePath()));
          }}});
}

}  // namespace TarvaneApp
