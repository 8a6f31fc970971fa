// Time in the test's hand: a clock that stands until it is moved, and a tick timer that
// ticks when it is told to.
#pragma once

#include <functional>
#include <utility>

#include "Engine/Clock.h"
#include "Engine/TickTimer.h"

namespace TarvaneTests {

class ManualClock final : public TarvaneApp::Clock {
  public:
    TarvaneKit::Date now() const override { return now_ + setBy_; }
    TarvaneKit::Date steadyNow() const override { return now_; }

    void advance(double seconds) { now_ += duration(seconds); }
    /// Somebody sets the wall clock.
    void setWallClockBy(double seconds) { setBy_ += duration(seconds); }

  private:
    static TarvaneKit::Date::duration duration(double seconds) {
        return std::chrono::duration_cast<TarvaneKit::Date::duration>(
            std::chrono::duration<double>(seconds));
    }

    TarvaneKit::Date now_ = *TarvaneKit::dateFromISO8601("2026-03-01T19:30:00Z");
    TarvaneKit::Date::duration setBy_{};
};

class ManualTickTimer final : public TarvaneApp::TickTimer {
  public:
    void start(std::function<void()> onTick) override { onTick_ = std::move(onTick); }
    void stop() override { onTick_ = nullptr; }

    bool isRunning() const { return onTick_ != nullptr; }
    /// One firing; nothing while stopped.
    void fire() {
        if (onTick_) {
            onTick_();
        }
    }

  private:
    std::function<void()> onTick_;
};

}  // namespace TarvaneTests
