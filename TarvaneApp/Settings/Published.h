// A value with the key to it: whoever holds this changes what others see as `Observable`.
#pragma once

#include "Settings/Observable.h"

namespace TarvaneApp {

template <class T>
class Published final : public Observable<T> {
  public:
    explicit Published(T initial = T{}) : Observable<T>(std::move(initial)) {}

    /// Puts the value in place, then tells the watchers, also when it equals the old one.
    void set(T value) {
        this->value_ = std::move(value);
        Q_EMIT this->notifier_.changed();
    }
};

}  // namespace TarvaneApp
