// One running program per user: a launch that finds another one running asks it to come to the
// front, and goes once that one has answered. A program whose last window was closed is brought
// back in this way. Main thread.
#pragma once

#include <QLocalServer>
#include <chrono>

namespace TarvaneApp {

class RunningInstance final : public QObject {
    Q_OBJECT
  public:
    static constexpr std::chrono::milliseconds longestWait{2000};

    /// `socketPath` is where running programs listen; with an empty one there is no such place. An
    /// answer is waited for up to `patience`.
    explicit RunningInstance(const QString& socketPath = userSocketPath(),
                             std::chrono::milliseconds patience = longestWait);

    /// Another one runs, and has been brought to the front.
    bool hasHandedOver() const { return state_ == State::handedOver; }
    /// Another one runs but didn't answer: it is stopped, or stuck.
    bool isUnanswered() const { return state_ == State::unanswered; }
    /// Whether a later launch will find this one; false where the system has no place for the
    /// socket.
    bool isListening() const { return server_.isListening(); }

    /// Runs beside the one that didn't answer; later launches find this one.
    void takeOver();

    /// The same path for all launches of one user; empty without a folder that is safe.
    static QString userSocketPath();
    /// Empty unless the folder is the user's own and no other user can look into it or change it:
    /// whoever can, could answer in the program's name.
    static QString socketPathIn(const QString& folder);

  Q_SIGNALS:
    void launchedAgain();

  private:
    enum class State { alone, handedOver, unanswered };

    void answer();

    const QString socketPath_;
    QLocalServer server_;
    State state_ = State::alone;
};

}  // namespace TarvaneApp
