// The way back to the main thread: work posted from any thread runs there, in order, from the
// event loop.
//
// The hand-over is a mutex and a descriptor of the kernel's, not Qt's event queue, so that a
// race detector sees both sides of it. A poster waits for nothing but the list's lock.
#pragma once

#include <QSocketNotifier>
#include <functional>
#include <mutex>
#include <vector>

namespace TarvaneApp {

class MainThreadQueue {
  public:
    /// On the thread where the work is to run.
    MainThreadQueue();
    /// Drops what has not run.
    ~MainThreadQueue();

    MainThreadQueue(const MainThreadQueue&) = delete;
    MainThreadQueue& operator=(const MainThreadQueue&) = delete;

    /// From any thread.
    void post(std::function<void()> work);

  private:
    void runPosted();

    const int descriptor_;
    std::mutex lock_;
    std::vector<std::function<void()>> posted_;
    QSocketNotifier notifier_;
};

}  // namespace TarvaneApp
