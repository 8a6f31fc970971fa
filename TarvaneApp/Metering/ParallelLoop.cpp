#include "Metering/ParallelLoop.h"

#include <pthread.h>

#include <algorithm>

namespace TarvaneApp {

ParallelLoop::ParallelLoop()
    : ParallelLoop(static_cast<int>(std::max(1U, std::thread::hardware_concurrency())) - 1) {}

ParallelLoop::ParallelLoop(int helpers) {
    for (int i = 0; i < helpers; ++i) {
        helpers_.emplace_back([this] { help(); });
    }
}

ParallelLoop::~ParallelLoop() {
    {
        const std::lock_guard hold(lock_);
        ends_ = true;
    }
    wake_.notify_all();
    for (std::thread& helper : helpers_) {
        helper.join();
    }
}

void ParallelLoop::run(int count, const std::function<void(int)>& body) {
    if (count <= 1 || helpers_.empty()) {
        for (int i = 0; i < count; ++i) {
            body(i);
        }
        return;
    }
    {
        const std::lock_guard hold(lock_);
        body_ = &body;
        count_ = count;
        next_ = 0;
        ++loopNumber_;
    }
    wake_.notify_all();
    takeShare(body, count);
    // A helper that is still at work holds an iteration; one that hasn't woken yet finds no loop.
    std::unique_lock hold(lock_);
    body_ = nullptr;
    done_.wait(hold, [this] { return busyHelpers_ == 0; });
}

void ParallelLoop::takeShare(const std::function<void(int)>& body, int count) {
    for (int i = next_++; i < count; i = next_++) {
        body(i);
    }
}

void ParallelLoop::help() {
    pthread_setname_np(pthread_self(), "analysis-helper");
    unsigned lastLoop = 0;
    std::unique_lock hold(lock_);
    for (;;) {
        wake_.wait(hold, [&] { return ends_ || loopNumber_ != lastLoop; });
        if (ends_) {
            return;
        }
        lastLoop = loopNumber_;
        if (body_ == nullptr) {
            continue;
        }
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
