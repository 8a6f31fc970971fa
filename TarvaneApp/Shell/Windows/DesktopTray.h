// Whether the desktop has a tray. The toolkit looks for one when the first icon is made, and never
// again; a program that comes with the session is there before the panel. Main thread.
#pragma once

#include <QDBusServiceWatcher>
#include <QObject>
#include <QTimer>

namespace TarvaneApp {

class DesktopTray final : public QObject {
    Q_OBJECT
  public:
    DesktopTray();

  Q_SIGNALS:
    /// Once, from the event loop: an icon that is made from now on is taken in.
    void arrived();

  private Q_SLOTS:
    void look();

  private:
    void arrive();

    QDBusServiceWatcher panels_;
    QTimer oldForm_;
    bool hasArrived_ = false;
};

}  // namespace TarvaneApp
