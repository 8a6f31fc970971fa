// A measurement that was running when the program was told to end, by the desktop's session or the
// system, or when it was broken off with no word: the next launch says so, since its levels ended
// there. Main thread.
#pragma once

#include <QObject>

namespace TarvaneApp {

class Clock;
class KeyValueStore;
class MeterEngine;
class NoteBar;

class InterruptedRun final : public QObject {
    Q_OBJECT
  public:
    /// All of it outlives this.
    struct Environment {
        MeterEngine& engine;
        KeyValueStore& store;
        const Clock& clock;
    };
    explicit InterruptedRun(const Environment& environment);
    /// Ended by the user, a run isn't cut short.
    ~InterruptedRun() override;

    /// Tells of the one before this launch, once.
    void tell(NoteBar& note);
    /// The program has been told to end. Where it isn't ended after all, the next start or stop
    /// makes this forgotten.
    void programEnds();

  private:
    void forget();
    double now() const;

    MeterEngine& engine_;
    KeyValueStore& store_;
    const Clock& clock_;
    bool isNoted_ = false;
};

}  // namespace TarvaneApp
