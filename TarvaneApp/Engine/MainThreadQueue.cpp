#include "Engine/MainThreadQueue.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <cstdint>

#include "Core/Contract.h"

namespace TarvaneApp {

MainThreadQueue::MainThreadQueue()
    : descriptor_(eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)),
      notifier_(descriptor_, QSocketNotifier::Read) {
    TARVANE_PRECONDITION(descriptor_ >= 0);
    QObject::connect(&notifier_, &QSocketNotifier::activated, &notifier_, [this] { runPosted(); });
}

MainThreadQueue::~MainThreadQueue() {
    notifier_.setEnabled(false);
    // What dies with it may be a source that is open, and may post while it shuts.
    std::vector<std::function<void()>> works;
    {
        const std::lock_guard hold(lock_);
        works.swap(posted_);
    }
    works.clear();
    close(descriptor_);
}

void MainThreadQueue::post(std::function<void()> work) {
    {
        const std::lock_guard hold(lock_);
        posted_.push_back(std::move(work));
    }
    // Only a counter of 2^64 unread posts could turn this down.
    const std::uint64_t one = 1;
    TARVANE_PRECONDITION(write(descriptor_, &one, sizeof one) == sizeof one);
}

void MainThreadQueue::runPosted() {
    std::uint64_t count = 0;
    if (read(descriptor_, &count, sizeof count) != sizeof count) {
        return;
    }
    std::vector<std::function<void()>> works;
    {
        const std::lock_guard hold(lock_);
        works.swap(posted_);
    }
    for (const auto& work : works) {
        work();
    }
}

}  // namespace TarvaneApp
