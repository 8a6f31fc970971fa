// Time as the engine is given it, so that a test can hold it in its hand.
#pragma once

#include <chrono>

#include "Core/Date.h"

namespace TarvaneApp {

class Clock {
  public:
    virtual ~Clock() = default;
    /// The wall clock: what a record's date says. It may be set while the program runs.
    virtual TarvaneKit::Date now() const = 0;
    /// What elapsed times are differences of: the wall clock as it was when the program began,
    /// carried on without a step, also while the machine sleeps.
    virtual TarvaneKit::Date steadyNow() const = 0;
};

class SystemClock final : public Clock {
  public:
    SystemClock();

    TarvaneKit::Date now() const override;
    TarvaneKit::Date steadyNow() const override;

  private:
    const TarvaneKit::Date began_;
    const std::chrono::nanoseconds bootTimeBegan_;
};

}  // namespace TarvaneApp
