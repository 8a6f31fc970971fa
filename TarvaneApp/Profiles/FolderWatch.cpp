#include "Profiles/FolderWatch.h"

#include <QFile>
#include <QStringList>
#include <chrono>
#include <system_error>
#include <utility>

namespace TarvaneApp {

namespace fs = std::filesystem;

namespace {

// A program that writes a file, or puts several into the folder, has come to its end by then most
// of the time.
constexpr std::chrono::milliseconds settlingTime{50};

QString pathText(const fs::path& path) {
    return QFile::decodeName(path.c_str());
}

// The folder, or what is there of the way to it.
fs::path nearestExisting(fs::path folder) {
    std::error_code error;
    while (!fs::is_directory(folder, error) && folder != folder.parent_path()) {
        folder = folder.parent_path();
    }
    return folder;
}

}  // namespace

FolderWatch::FolderWatch(fs::path folder) : folder_(std::move(folder)) {
    settling_.setSingleShot(true);
    settling_.setInterval(settlingTime);
    connect(&settling_, &QTimer::timeout, this, &FolderWatch::changed);
    // From the first of many changes on: one that never ends doesn't hold up the news.
    const auto noteChange = [this] {
        if (!settling_.isActive()) {
            settling_.start();
        }
    };
    connect(&watcher_, &QFileSystemWatcher::directoryChanged, this, noteChange);
    connect(&watcher_, &QFileSystemWatcher::fileChanged, this, noteChange);
}

// What was replaced under its name is another file or folder than the one that was watched, so each
// is taken up anew.
void FolderWatch::watchFolder() {
    if (const QStringList folders = watcher_.directories(); !folders.isEmpty()) {
        watcher_.removePaths(folders);
    }
    // More of the way may have come before it was watched.
    fs::path watched;
    for (fs::path there = nearestExisting(folder_); there != watched;
         there = nearestExisting(folder_)) {
        watched = there;
        watcher_.addPath(pathText(there));
        watcher_.addPath(pathText(there.parent_path()));  // tells of another one in its place
    }
}

void FolderWatch::watchFiles(const std::vector<fs::path>& files) {
    if (const QStringList old = watcher_.files(); !old.isEmpty()) {
        watcher_.removePaths(old);
    }
    for (const fs::path& file : files) {
        watcher_.addPath(pathText(file));
    }
}

}  // namespace TarvaneApp
