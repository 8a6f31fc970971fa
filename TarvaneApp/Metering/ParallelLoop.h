// A blocking parallel loop over a few threads that stay, for work that comes 60 times a second.
//
// One loop at a time. The calling thread takes its share, so that a machine with one core needs
// no other. A loop of n iterations wakes at most n - 1 helpers, always the same ones first, so
// that a small loop leaves the other helpers asleep.
#pragma once

#include <atomic>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace TarvaneApp {

class ParallelLoop {
  public:
    /// One thread less than the machine has cores.
    ParallelLoop();
    explicit ParallelLoop(int helperCount);
    ~ParallelLoop();

    ParallelLoop(const ParallelLoop&) = delete;
    ParallelLoop& operator=(const ParallelLoop&) = delete;

    /// Calls `body(0)` … `body(count - 1)`, each once, on any of the threads; returns when all
    /// have returned. The body throws nothing.
    void run(int count, const std::function<void(int)>& body);

  private:
    // A thread with a call of its own: nobody else can take the wake-up that is meant for it.
    struct Helper {
        std::thread thread;
        std::condition_variable wake;
        bool isCalled = false;  // to the loop under way; withdrawn when that ends without it
    };

    void help(Helper& self);
    void takeShare(const std::function<void(int)>& body, int count);

    std::mutex lock_;
    std::condition_variable done_;
    const std::function<void(int)>* body_ = nullptr;  // of the loop under way
    int count_ = 0;
    int busyHelpers_ = 0;
    bool ends_ = false;
    std::atomic<int> next_{0};
    std::vector<Helper> helpers_;
};

}  // namespace TarvaneApp
