// A timer of 1/60 s on the main thread's event loop.
//
// QTimer counts whole milliseconds and would give 62.5 or 58.8 ticks a second; a kernel timer
// descriptor keeps the exact period and drops the ticks that a busy main thread missed.
#pragma once

#include <QObject>
#include <memory>

#include "Engine/TickTimer.h"

class QSocketNotifier;

namespace TarvaneApp {

class KernelTickTimer final : public TickTimer {
  public:
    KernelTickTimer();
    ~KernelTickTimer() override;

    void start(std::function<void()> onTick) override;
    void stop() override;

  private:
    void arm(long period);

    int descriptor_;
    std::function<void()> onTick_;
    std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace TarvaneApp
