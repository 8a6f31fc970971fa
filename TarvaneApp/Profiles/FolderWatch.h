// Follows a folder that may come, go and be replaced, and some files in it. Main thread only.
#pragma once

#include <QFileSystemWatcher>
#include <QObject>
#include <QTimer>
#include <filesystem>
#include <vector>

namespace TarvaneApp {

class FolderWatch : public QObject {
    Q_OBJECT
  public:
    explicit FolderWatch(std::filesystem::path folder);

    // To be called one after the other, each ahead of reading what it follows, so that nothing that
    // happens meanwhile is missed.

    /// Follows which files come and go.
    void watchFolder();
    /// Follows what is in them.
    void watchFiles(const std::vector<std::filesystem::path>& files);

  Q_SIGNALS:
    /// Something has happened, once for all that comes within a moment.
    void changed();

  private:
    const std::filesystem::path folder_;
    QFileSystemWatcher watcher_;
    QTimer settling_;
};

}  // namespace TarvaneApp
