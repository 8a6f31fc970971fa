// How large a window can be where it is: what the desktop's panels leave of its screen, without
// the window's own frame. The window owns it; main thread.
#pragma once

#include <QMetaObject>
#include <QObject>
#include <QSize>

class QWidget;

namespace TarvaneApp {

class ScreenRoom final : public QObject {
    Q_OBJECT
  public:
    explicit ScreenRoom(QWidget& window);

    /// Of the window's content.
    QSize size() const;

    /// The same for a window that is only being made, and isn't followed.
    static QSize of(const QWidget& window);

  Q_SIGNALS:
    /// The window is on another screen, or its screen has more or less room.
    void changed();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void followScreen();

    QWidget& window_;
    QMetaObject::Connection room_;
    bool isShown_ = false;
};

}  // namespace TarvaneApp
