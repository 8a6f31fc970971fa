// Lets a file be dropped onto a widget. The widget owns it.
#pragma once

#include <QObject>
#include <filesystem>
#include <functional>

class QWidget;

namespace TarvaneApp {

class FileDrop final : public QObject {
    Q_OBJECT
  public:
    /// `onFile` runs with the file. Several at once, and what lies on no disk of this computer, are
    /// not taken.
    FileDrop(QWidget& target, std::function<void(const std::filesystem::path&)> onFile);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    std::function<void(const std::filesystem::path&)> onFile_;
};

}  // namespace TarvaneApp
