// The settings store of a real user: an INI file under the XDG config folder.
//
// The main thread works on the values in memory; a thread of the store's own brings them to disk,
// so that a slow disk never holds up a slider. A crash leaves the file as one of its writes left
// it, and costs what was set in the moment before.
#pragma once

#include <QString>
#include <QVariant>
#include <map>
#include <mutex>
#include <optional>

#include "Core/SerialQueue.h"
#include "Settings/KeyValueStore.h"

namespace TarvaneApp {

class UserDefaults final : public KeyValueStore {
  public:
    /// The user's own file, `Tarvane/Tarvane.ini`.
    UserDefaults();
    /// A file of the caller's choice.
    explicit UserDefaults(const QString& path);
    /// Returns when all that was set is on disk.
    ~UserDefaults() override;

    std::optional<std::string> text(std::string_view key) const override;
    std::optional<double> number(std::string_view key) const override;
    std::optional<std::string> data(std::string_view key) const override;
    void setText(std::string_view key, const std::string& value) override;
    void setNumber(std::string_view key, double value) override;
    void setData(std::string_view key, const std::string& bytes) override;
    void remove(std::string_view key) override;
    void synchronize() override;

  private:
    /// A value without content says that the key goes.
    using Values = std::map<QString, QVariant>;

    QVariant stored(std::string_view key) const;
    void set(std::string_view key, const QVariant& value);
    void write();

    const QString path_;
    // Main thread only.
    Values values_;
    Values changes_;

    std::mutex lock_;
    Values waiting_;  // for the writer, under the lock

    std::optional<TarvaneKit::SerialQueue> writer_;
};

}  // namespace TarvaneApp
