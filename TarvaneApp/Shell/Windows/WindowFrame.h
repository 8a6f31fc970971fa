// Where a window was when the program was last used: it is restored before it is first shown,
// and its frame is stored as it is moved and when it closes. The window owns it; main thread.
#pragma once

#include <QObject>
#include <QTimer>
#include <string>

class QWidget;

namespace TarvaneApp {

class KeyValueStore;

class WindowFrame final : public QObject {
    Q_OBJECT
  public:
    /// The frame is stored under `name`. A frame that lies on no screen any more is moved onto one.
    WindowFrame(KeyValueStore& store, const std::string& name, QWidget& window);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void save();

    KeyValueStore& store_;
    const std::string key_;
    QWidget& window_;
    QTimer atRest_;
};

}  // namespace TarvaneApp
