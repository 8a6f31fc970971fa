#include "Shell/Windows/FilePanels.h"

#include <QApplication>
#include <QFile>
#include <QFileDialog>

#include "Displays/RawText.h"
#include "Shell/Controls/FileDialogLabels.h"

namespace TarvaneApp {

namespace {

std::filesystem::path path(const QString& file) {
    return QFile::encodeName(file).toStdString();
}

}  // namespace

std::optional<std::filesystem::path> FilePanels::fileToSave(const std::string& title,
                                                            const std::string& proposedName) {
    QFileDialog panel(QApplication::activeWindow(), utf8Text(title));
    labelLists(panel);
    panel.setAcceptMode(QFileDialog::AcceptSave);
    panel.setNameFilter(QStringLiteral("JSON files (*.json)"));
    panel.setDefaultSuffix(QStringLiteral("json"));
    panel.selectFile(utf8Text(proposedName));
    if (panel.exec() == QDialog::Rejected || panel.selectedFiles().isEmpty()) {
        return std::nullopt;
    }
    return path(panel.selectedFiles().front());
}

std::vector<std::filesystem::path> FilePanels::filesToOpen(const std::string& title) {
    std::vector<std::filesystem::path> files;
    for (const QString& file :
         QFileDialog::getOpenFileNames(QApplication::activeWindow(), utf8Text(title), QString(),
                                       QStringLiteral("JSON files (*.json)"))) {
        files.push_back(path(file));
    }
    return files;
}

}  // namespace TarvaneApp
