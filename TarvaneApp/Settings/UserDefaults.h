// The settings store of a real user: an INI file under the XDG config folder.
#pragma once

#include <QSettings>

#include "KeyValueStore.h"

namespace TarvaneApp {

/// Each write is replaced atomically on disk, so that a crash leaves the old or the new file.
class UserDefaults final : public KeyValueStore {
  public:
    /// The user's own file, `Tarvane/Tarvane.ini`.
    UserDefaults();
    /// A file of the caller's choice.
    explicit UserDefaults(const QString& path);

    std::optional<std::string> text(std::string_view key) const override;
    std::optional<double> number(std::string_view key) const override;
    std::optional<std::string> data(std::string_view key) const override;
    void setText(std::string_view key, const std::string& value) override;
    void setNumber(std::string_view key, double value) override;
    void setData(std::string_view key, const std::string& bytes) override;
    void remove(std::string_view key) override;
    void synchronize() override;

  private:
    QVariant stored(std::string_view key) const;

    QSettings settings_;
};

}  // namespace TarvaneApp
