// One running program per user: a launch that finds another one running asks it to come to the
// front, and goes. A program whose last window was closed is brought back in this way. Main thread.
#pragma once

#include <QLocalServer>

namespace TarvaneApp {

class RunningInstance final : public QObject {
    Q_OBJECT
  public:
    /// `socketPath` is where running programs listen.
    explicit RunningInstance(const QString& socketPath = userSocketPath());

    /// Another one runs, and has been brought to the front.
    bool hasHandedOver() const { return hasHandedOver_; }
    /// Whether a later launch will find this one; false where the system has no place for the
    /// socket.
    bool isListening() const { return server_.isListening(); }

    /// The same path for all launches of one user.
    static QString userSocketPath();

  Q_SIGNALS:
    void launchedAgain();

  private:
    QLocalServer server_;
    bool hasHandedOver_ = false;
};

}  // namespace TarvaneApp
