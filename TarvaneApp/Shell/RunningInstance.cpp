#include "Shell/RunningInstance.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QLocalSocket>
#include <QStandardPaths>

#include <sys/stat.h>
#include <unistd.h>

namespace TarvaneApp {

namespace {

constexpr char answerText[] = "here";

int millisecondsLeft(const QDeadlineTimer& deadline) {
    return static_cast<int>(deadline.remainingTime());
}

}  // namespace

RunningInstance::RunningInstance(const QString& socketPath, std::chrono::milliseconds patience)
    : socketPath_(socketPath) {
    connect(&server_, &QLocalServer::newConnection, this, [this] { answer(); });
    if (socketPath_.isEmpty()) {
        return;
    }
    // To connect is the whole question. The system lets a launch connect whatever state the other
    // program is in; the answer comes from its event loop.
    const QDeadlineTimer deadline(patience);
    QLocalSocket socket;
    socket.connectToServer(socketPath_);
    if (socket.waitForConnected(millisecondsLeft(deadline))) {
        if (socket.waitForReadyRead(millisecondsLeft(deadline)) || socket.bytesAvailable() > 0) {
            state_ = State::handedOver;
        } else if (socket.state() == QLocalSocket::ConnectedState) {
            state_ = State::unanswered;
        }
    } else if (socket.state() == QLocalSocket::ConnectingState) {
        state_ = State::unanswered;  // with so many launches in line that none is let in any more
    }
    if (state_ == State::alone) {
        takeOver();
    }
}

// A crash leaves a socket behind.
void RunningInstance::takeOver() {
    if (!socketPath_.isEmpty()) {
        QLocalServer::removeServer(socketPath_);
        server_.listen(socketPath_);
    }
}

void RunningInstance::answer() {
    QLocalSocket* launch = server_.nextPendingConnection();
    launch->write(answerText);
    launch->flush();
    launch->deleteLater();
    Q_EMIT launchedAgain();
}

// In a Flatpak each launch has a runtime folder of its own, of which only this part is common to
// all.
QString RunningInstance::userSocketPath() {
    const QString runtime = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    const QString flatpak = qEnvironmentVariable("FLATPAK_ID");
    return socketPathIn(flatpak.isEmpty() ? runtime : runtime + QStringLiteral("/app/") + flatpak);
}

QString RunningInstance::socketPathIn(const QString& folder) {
    struct stat status {};
    const bool isSafe = lstat(QFile::encodeName(folder).constData(), &status) == 0 &&
                        S_ISDIR(status.st_mode) && status.st_uid == geteuid() &&
                        (status.st_mode & (S_IRWXG | S_IRWXO)) == 0;
    return isSafe ? folder + QStringLiteral("/tarvane.socket") : QString();
}

}  // namespace TarvaneApp
