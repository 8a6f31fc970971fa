// A value that others watch and only its owner changes. Main thread only.
#pragma once

#include <QObject>
#include <utility>

namespace TarvaneApp {

/// What a watcher connects to. Says that there is a new value, not which one.
class ChangeNotifier : public QObject {
    Q_OBJECT
  Q_SIGNALS:
    void changed();
};

template <class T>
class Observable {
  public:
    const T& operator()() const { return value_; }
    const ChangeNotifier& notifier() const { return notifier_; }

  protected:
    explicit Observable(T initial) : value_(std::move(initial)) {}
    ~Observable() = default;

    T value_;
    ChangeNotifier notifier_;
};

/// Calls `handler` now and on every change, as long as `context` lives.
template <class T, class Handler>
void follow(const Observable<T>& value, QObject* context, Handler handler) {
    QObject::connect(&value.notifier(), &ChangeNotifier::changed, context, handler);
    handler();
}

/// The same for several values.
template <class Handler, class... Values>
void followAll(QObject* context, Handler handler, const Values&... values) {
    (QObject::connect(&values.notifier(), &ChangeNotifier::changed, context, handler), ...);
    handler();
}

}  // namespace TarvaneApp
