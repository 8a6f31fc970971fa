#include "Engine/KernelTickTimer.h"

#include <sys/timerfd.h>
#include <unistd.h>

#include <QSocketNotifier>
#include <cstdint>

#include "Core/Contract.h"

namespace TarvaneApp {

namespace {

constexpr long periodNanoseconds = 16'666'667;  // 1/60 s

}  // namespace

KernelTickTimer::KernelTickTimer()
    : descriptor_(timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC)) {
    TARVANE_PRECONDITION(descriptor_ >= 0);
    notifier_ = std::make_unique<QSocketNotifier>(descriptor_, QSocketNotifier::Read);
    notifier_->setEnabled(false);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(), [this] {
        std::uint64_t expirations = 0;
        if (read(descriptor_, &expirations, sizeof expirations) == sizeof expirations && onTick_) {
            onTick_();
        }
    });
}

KernelTickTimer::~KernelTickTimer() {
    notifier_.reset();
    close(descriptor_);
}

void KernelTickTimer::start(std::function<void()> onTick) {
    onTick_ = std::move(onTick);
    arm(periodNanoseconds);
    notifier_->setEnabled(true);
}

void KernelTickTimer::stop() {
    notifier_->setEnabled(false);
    arm(0);
}

void KernelTickTimer::arm(long period) {
    const itimerspec spec{.it_interval = {0, period}, .it_value = {0, period}};
    timerfd_settime(descriptor_, 0, &spec, nullptr);
}

}  // namespace TarvaneApp
