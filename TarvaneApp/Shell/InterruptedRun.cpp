#include "Shell/InterruptedRun.h"

#include <QDateTime>
#include <QLocale>
#include <chrono>

#include "Core/Date.h"
#include "Engine/Clock.h"
#include "Engine/MeterEngine.h"
#include "Settings/KeyValueStore.h"
#include "Settings/Observable.h"
#include "Shell/Controls/NoteBar.h"
#include "Shell/Windows/AppTermination.h"

namespace TarvaneApp {

namespace {

// When.
constexpr auto key = "InterruptedRun.ended";

}  // namespace

InterruptedRun::InterruptedRun(const Environment& environment)
    : engine_(environment.engine), store_(environment.store), clock_(environment.clock) {
    connect(&engine_.isRunning.notifier(), &ChangeNotifier::changed, this, [this] {
        if (isNoted_ && !AppTermination::isTerminating()) {
            forget();
        }
    });
}

void InterruptedRun::tell(NoteBar& note) {
    const auto stored = store_.number(key);
    if (!stored) {
        return;
    }
    forget();
    const auto ended = TarvaneKit::dateFromSecondsSinceReferenceDate(*stored);
    if (!ended) {
        return;
    }
    const auto moment = QDateTime::fromSecsSinceEpoch(std::chrono::system_clock::to_time_t(*ended));
    note.say(QStringLiteral("The last measurement was cut short on %1: the system ended Tarvane.")
                 .arg(QLocale().toString(moment, QLocale::ShortFormat)),
             {});
}

void InterruptedRun::programEnds() {
    if (engine_.isRunning()) {
        isNoted_ = true;
        store_.setNumber(key, TarvaneKit::secondsSinceReferenceDate(clock_.now()));
        store_.synchronize();
    }
}

void InterruptedRun::forget() {
    isNoted_ = false;
    store_.remove(key);
    store_.synchronize();
}

}  // namespace TarvaneApp
