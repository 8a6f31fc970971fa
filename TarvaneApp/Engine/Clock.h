// Time as the engine is given it, so that a test can hold it in its hand.
#pragma once

#include "Core/Date.h"

namespace TarvaneApp {

class Clock {
  public:
    virtual ~Clock() = default;
    virtual TarvaneKit::Date now() const = 0;
};

/// The machine's wall clock.
class SystemClock final : public Clock {
  public:
    TarvaneKit::Date now() const override;
};

}  // namespace TarvaneApp
