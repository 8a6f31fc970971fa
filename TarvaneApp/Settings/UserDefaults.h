// The settings store of a real user: an INI file under the XDG config folder.
//
// The main thread works on the values in memory; a thread of the store's own brings them to disk,
// so that a slow disk never holds up a slider. A crash leaves the file as one of its writes left
// it, and costs what was set in the moment before. What couldn't be written is kept, and tried
// again with the next change and every few seconds.
#pragma once

#include <QString>
#include <QTimer>
#include <QVariant>
#include <atomic>
#include <chrono>
#include <mutex>
#include <optional>

#include "Core/SerialQueue.h"
#include "Settings/KeyValueStore.h"
#include "Settings/Published.h"
#include "Settings/SettingsFile.h"

namespace TarvaneApp {

class UserDefaults final : public KeyValueStore {
  public:
    /// The user's own file, `Tarvane/Tarvane.ini`.
    UserDefaults();
    /// A file of the caller's choice. Made on the main thread; without an event loop nothing is
    /// tried again, and no failure told but that of reading.
    explicit UserDefaults(const QString& path,
                          std::chrono::milliseconds retryInterval = retryEvery);
    /// Returns when all that was set is on disk, or couldn't be brought there.
    ~UserDefaults() override;

    static constexpr std::chrono::milliseconds retryEvery{5000};

    std::optional<std::string> text(std::string_view key) const override;
    std::optional<double> number(std::string_view key) const override;
    std::optional<std::string> data(std::string_view key) const override;
    void setText(std::string_view key, const std::string& value) override;
    void setNumber(std::string_view key, double value) override;
    void setData(std::string_view key, const std::string& bytes) override;
    void remove(std::string_view key) override;
    void synchronize() override;
    const Observable<std::optional<std::string>>& saveFailure() const override {
        return saveFailure_;
    }

  private:
    using Values = SettingsFile::Values;

    QVariant stored(std::string_view key) const;
    void set(std::string_view key, const QVariant& value);
    void order();
    SettingsFile::Problem write();
    void written(const SettingsFile::Problem& problem);
    std::string sentence(const QString& problem) const;

    const SettingsFile file_;
    std::atomic<bool> ends_ = false;
    // Main thread only.
    Values values_;
    Values changes_;
    Published<std::optional<std::string>> saveFailure_;
    QTimer retry_;  // also the way of the writer's news to the main thread

    std::mutex lock_;
    Values waiting_;  // for the writer, under the lock

    std::optional<TarvaneKit::SerialQueue> writer_;
};

}  // namespace TarvaneApp
