// The signals that ask a program to end, as a desktop's session, a service manager or a closed
// terminal sends them, brought to the main thread. One at a time; main thread.
#pragma once

#include <QObject>

namespace TarvaneApp {

class TerminationSignals final : public QObject {
    Q_OBJECT
  public:
    /// Catches SIGTERM, SIGINT and SIGHUP from now on.
    TerminationSignals();
    /// They do what they did before.
    ~TerminationSignals() override;

  Q_SIGNALS:
    /// From the event loop. The same signal sent again ends the program at once, in case it hangs.
    void endAsked();

  private:
    void drain();

    int reading_ = -1;
};

}  // namespace TarvaneApp
