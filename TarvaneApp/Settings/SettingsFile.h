// The INI file that settings are kept in: read once, and exchanged for a new one with each write,
// so that a crash leaves the old one or the new one whole.
//
// Two programs may write into one file. Each takes the file as it finds it and puts in what it
// changed itself, alone at that moment by a lock beside the file. The kernel holds the lock, so
// that it goes with its holder, however that ends.
#pragma once

#include <QString>
#include <QVariant>
#include <atomic>
#include <map>
#include <optional>

namespace TarvaneApp {

class SettingsFile {
  public:
    /// Of a change, a value without content says that the key goes.
    using Values = std::map<QString, QVariant>;

    /// Why the file can't be used, in words that end a sentence.
    using Problem = std::optional<QString>;

    struct Content {
        Values values;
        /// With one there are no values.
        Problem problem;
    };

    explicit SettingsFile(QString path) : path_(std::move(path)) {}

    const QString& path() const { return path_; }

    /// No file is an empty one. Never waits for what isn't a regular file.
    Content read() const;

    /// Puts the changes into the file, from any thread. Another program at the same work is waited
    /// for some seconds, or a moment once `hurries` is true; then it counts as stuck, and the file
    /// is written without the lock. With a problem the file is as it was.
    Problem write(const Values& changes, const std::atomic<bool>& hurries) const;

  private:
    Problem whyUnreadable() const;

    const QString path_;
};

}  // namespace TarvaneApp
