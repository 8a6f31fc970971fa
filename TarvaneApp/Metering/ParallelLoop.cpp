#include "Metering/ParallelLoop.h"

#include <pthread.h>

#include <algorithm>
#include <span>

namespace TarvaneApp {

ParallelLoop::ParallelLoop()
    : ParallelLoop(static_cast<int>(std::max(1U, std::thread::hardware_concurrency())) - 1) {}

ParallelLoop::ParallelLoop(int helperCount) : helpers_(static_cast<std::size_t>(helperCount)) {
    for (Helper& helper : helpers_) {
        helper.thread = std::thread([this, &helper] { help(helper); });
    }
}

ParallelLoop::~ParallelLoop() {
    {
        const std::lock_guard hold(lock_);
        ends_ = true;
    }
    for (Helper& helper : helpers_) {
        helper.wake.notify_one();
        helper.thread.join();
    }
}

void ParallelLoop::run(int count, const std::function<void(int)>& body) {
    if (count <= 1 || helpers_.empty()) {
        for (int i = 0; i < count; ++i) {
            body(i);
        }
        return;
    }
    const auto called =
        std::span(helpers_).first(std::min(helpers_.size(), static_cast<std::size_t>(count) - 1));
    {
        const std::lock_guard hold(lock_);
        body_ = &body;
        count_ = count;
        next_ = 0;
        for (Helper& helper : called) {
            helper.isCalled = true;
        }
    }
    for (Helper& helper : called) {
        helper.wake.notify_one();
    }
    takeShare(body, count);
    // A helper that is still at work holds an iteration. One that hasn't come yet finds its call
    // withdrawn and sleeps on, until the next loop calls it anew.
    std::unique_lock hold(lock_);
    for (Helper& helper : called) {
        helper.isCalled = false;
    }
    done_.wait(hold, [this] { return busyHelpers_ == 0; });
}

void ParallelLoop::takeShare(const std::function<void(int)>& body, int count) {
    for (int i = next_++; i < count; i = next_++) {
        body(i);
    }
}

void ParallelLoop::help(Helper& self) {
    pthread_setname_np(pthread_self(), "analysis-helper");
    std::unique_lock hold(lock_);
    for (;;) {
        self.wake.wait(hold, [&] { return ends_ || self.isCalled; });
        if (ends_) {
            return;
        }
        self.isCalled = false;
        const auto& body = *body_;
        const int count = count_;
        ++busyHelpers_;
        hold.unlock();
        takeShare(body, count);
        hold.lock();
        if (--busyHelpers_ == 0) {
            done_.notify_one();
        }
    }
}

}  // namespace TarvaneApp
