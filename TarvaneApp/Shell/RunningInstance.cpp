#include "Shell/RunningInstance.h"

#include <QLocalSocket>
#include <QStandardPaths>

namespace TarvaneApp {

namespace {

// The system answers at once, even while the other program is busy.
constexpr int connectMilliseconds = 1000;

// To connect is the whole message.
bool canConnect(const QString& socketPath) {
    QLocalSocket socket;
    socket.connectToServer(socketPath);
    return socket.waitForConnected(connectMilliseconds);
}

}  // namespace

RunningInstance::RunningInstance(const QString& socketPath) {
    connect(&server_, &QLocalServer::newConnection, this, [this] {
        server_.nextPendingConnection()->deleteLater();
        Q_EMIT launchedAgain();
    });
    hasHandedOver_ = canConnect(socketPath);
    if (!hasHandedOver_) {
        // A crash leaves a socket behind.
        QLocalServer::removeServer(socketPath);
        server_.listen(socketPath);
    }
}

QString RunningInstance::userSocketPath() {
    return QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation) +
           QStringLiteral("/tarvane.socket");
}

}  // namespace TarvaneApp
