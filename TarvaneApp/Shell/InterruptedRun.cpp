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

// When the program was told to end.
constexpr auto endedKey = "InterruptedRun.ended";
// When the run began that goes on. A display that breaks away takes the program with it, unasked.
constexpr auto beganKey = "InterruptedRun.began";

QString dateInWords(double stored) {
    const auto date = TarvaneKit::dateFromSecondsSinceReferenceDate(stored);
    return date ? QLocale().toString(
                      QDateTime::fromSecsSinceEpoch(std::chrono::system_clock::to_time_t(*date)),
                      QLocale::ShortFormat)
                : QString();
}

// Empty for none, or for a date that none is.
QString saidOf(const KeyValueStore& store) {
    if (const auto ended = store.number(endedKey)) {
        const QString date = dateInWords(*ended);
        return date.isEmpty()
                   ? QString()
                   : QStringLiteral(
                         "The last measurement was cut short on %1: the system ended Tarvane.")
                         .arg(date);
    }
    if (const auto began = store.number(beganKey)) {
        const QString date = dateInWords(*began);
        return date.isEmpty() ? QString()
                              : QStringLiteral(
                                    "The last measurement was cut short. It began on %1, and "
                                    "Tarvane was broken off.")
                                    .arg(date);
    }
    return {};
}

}  // namespace

InterruptedRun::InterruptedRun(const Environment& environment)
    : engine_(environment.engine), store_(environment.store), clock_(environment.clock) {
    connect(&engine_.isRunning.notifier(), &ChangeNotifier::changed, this, [this] {
        if (AppTermination::isTerminating()) {
            return;
        }
        forget();
        if (engine_.isRunning()) {
            store_.setNumber(beganKey, now());
            store_.synchronize();
        }
    });
}

InterruptedRun::~InterruptedRun() {
    if (!isNoted_) {
        forget();
    }
}

void InterruptedRun::tell(NoteBar& note) {
    const QString said = saidOf(store_);
    forget();
    if (!said.isEmpty()) {
        note.say(said, {});
    }
}

void InterruptedRun::programEnds() {
    if (engine_.isRunning()) {
        isNoted_ = true;
        store_.setNumber(endedKey, now());
        store_.synchronize();
    }
}

void InterruptedRun::forget() {
    isNoted_ = false;
    // A store that can't be written would be told of ahead of the window, and so behind it.
    if (!store_.number(endedKey) && !store_.number(beganKey)) {
        return;
    }
    store_.remove(endedKey);
    store_.remove(beganKey);
    store_.synchronize();
}

double InterruptedRun::now() const {
    return TarvaneKit::secondsSinceReferenceDate(clock_.now());
}

}  // namespace TarvaneApp
