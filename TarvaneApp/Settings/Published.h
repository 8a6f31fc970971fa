// A field that others watch.
#pragma once

#include <QObject>
#include <functional>
#include <utility>

namespace TarvaneApp {

/// What a watcher connects to. Says that there is a new value, not which one.
class ChangeNotifier : public QObject {
    Q_OBJECT
  Q_SIGNALS:
    void changed();
};

/// Main thread only.
template <class T>
class Published {
  public:
    explicit Published(T initial = T{}) : value_(std::move(initial)) {}

    const T& operator()() const { return value_; }

    /// Puts the value in place, then tells the watchers, also when it equals the old one.
    void set(T value) {
        value_ = std::move(value);
        Q_EMIT notifier_.changed();
    }

    const ChangeNotifier& notifier() const { return notifier_; }

  protected:
    T value_;
    ChangeNotifier notifier_;
};

/// Calls `handler` now and on every change, as long as `context` lives.
template <class T, class Handler>
void follow(const Published<T>& field, QObject* context, Handler handler) {
    QObject::connect(&field.notifier(), &ChangeNotifier::changed, context, handler);
    handler();
}

}  // namespace TarvaneApp
