// Keeps programs that write the same files apart. The kernel holds the lock, so that it goes with
// its holder, however that ends.
#pragma once

#include <QString>
#include <chrono>
#include <functional>

namespace TarvaneApp {

class FileLock {
  public:
    /// Another holder is waited for as long as `waits` says yes to the time that has passed; then
    /// it counts as stuck, and the work goes on without the lock, as it does in a place that offers
    /// none.
    FileLock(const QString& path, const std::function<bool(std::chrono::milliseconds)>& waits);
    ~FileLock();
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

  private:
    const int file_;
};

}  // namespace TarvaneApp
