// The heartbeat of the displays, as the engine is given it.
#pragma once

#include <functional>

namespace TarvaneApp {

/// Main thread only.
class TickTimer {
  public:
    virtual ~TickTimer() = default;

    /// Calls `onTick` 60 times a second until `stop`. Starting a running timer restarts it.
    virtual void start(std::function<void()> onTick) = 0;
    virtual void stop() = 0;
};

}  // namespace TarvaneApp
