// Time in the test's hand: a clock that stands until it is moved, and a display timer that
// ticks when it is told to.
#pragma once

#include <functional>
#include <utility>

#include "Clock.h"
#include "TickTimer.h"

namespace TarvaneTests {

class ManualClock final : public TarvaneApp::Clock {
  public:
    TarvaneKit::Date now() const override { return now_; }
    void advance(double seconds) {
        now_ += std::chrono::duration_cast<TarvaneKit::Date::duration>(
            std::chrono::duration<double>(seconds));
    }

  private:
    TarvaneKit::Date now_ = *TarvaneKit::dateFromISO8601("2026-03-01T19:30:00Z");
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
