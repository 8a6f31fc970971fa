#include "Shell/Windows/DesktopTray.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QGuiApplication>
#include <chrono>

namespace TarvaneApp {

namespace {

QString service() {
    return QStringLiteral("org.kde.StatusNotifierWatcher");
}

QString path() {
    return QStringLiteral("/StatusNotifierWatcher");
}

// How long a panel has to come up, until an X11 desktop is taken for one with a tray of the old
// form alone, which takes icons in whenever it comes. Under Wayland there is no old form.
constexpr std::chrono::seconds patience(10);

}  // namespace

DesktopTray::DesktopTray() {
    connect(&oldForm_, &QTimer::timeout, this, &DesktopTray::arrive);
    oldForm_.setSingleShot(true);
    if (QGuiApplication::platformName() == QLatin1String("xcb")) {
        oldForm_.start(patience);
    }
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        return;
    }
    panels_.setConnection(bus);
    panels_.setWatchMode(QDBusServiceWatcher::WatchForRegistration);
    panels_.addWatchedService(service());
    connect(&panels_, &QDBusServiceWatcher::serviceRegistered, this, &DesktopTray::look);
    bus.connect(service(), path(), service(), QStringLiteral("StatusNotifierHostRegistered"), this,
                SLOT(look()));
    look();
}

// Icons are shown by a host; the watcher only keeps the list of them.
void DesktopTray::look() {
    QDBusMessage question = QDBusMessage::createMethodCall(
        service(), path(), QStringLiteral("org.freedesktop.DBus.Properties"),
        QStringLiteral("Get"));
    question << service() << QStringLiteral("IsStatusNotifierHostRegistered");
    question.setAutoStartService(false);
    auto* answer =
        new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(question), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        const QDBusPendingReply<QDBusVariant> reply = *answer;
        answer->deleteLater();
        if (reply.isValid() && reply.value().variant().toBool()) {
            arrive();
        }
    });
}

void DesktopTray::arrive() {
    oldForm_.stop();
    if (!hasArrived_) {
        hasArrived_ = true;
        Q_EMIT arrived();
    }
}

}  // namespace TarvaneApp
