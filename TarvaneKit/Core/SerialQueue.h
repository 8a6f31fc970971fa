// A named worker thread that runs what it is given, one after the other, in order.
#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

namespace TarvaneKit {

class SerialQueue {
  public:
    explicit SerialQueue(std::string label);
    /// Waits for the work at hand and drops what has not begun.
    ~SerialQueue();

    SerialQueue(const SerialQueue&) = delete;
    SerialQueue& operator=(const SerialQueue&) = delete;

    /// From any thread.
    void post(std::function<void()> work);

  private:
    void run();

    const std::string label_;
    std::mutex lock_;
    std::condition_variable wake_;
    std::deque<std::function<void()>> work_;
    bool ends_ = false;
    std::thread thread_;
};

}  // namespace TarvaneKit
