#include "Core/SerialQueue.h"

#include <pthread.h>

namespace TarvaneKit {

SerialQueue::SerialQueue(std::string label)
    : label_(std::move(label)), thread_([this] { run(); }) {}

SerialQueue::~SerialQueue() {
    {
        const std::lock_guard hold(lock_);
        ends_ = true;
        work_.clear();
    }
    wake_.notify_one();
    thread_.join();
}

void SerialQueue::post(std::function<void()> work) {
    {
        const std::lock_guard hold(lock_);
        work_.push_back(std::move(work));
    }
    wake_.notify_one();
}

void SerialQueue::run() {
    // The kernel keeps 15 characters of a thread's name: the label's last component.
    const std::string name = label_.substr(label_.rfind('.') + 1).substr(0, 15);
    pthread_setname_np(pthread_self(), name.c_str());
    for (;;) {
        std::function<void()> work;
        {
            std::unique_lock hold(lock_);
            wake_.wait(hold, [this] { return ends_ || !work_.empty(); });
            if (ends_) {
                return;
            }
            work = std::move(work_.front());
            work_.pop_front();
        }
        work();
    }
}

}  // namespace TarvaneKit
