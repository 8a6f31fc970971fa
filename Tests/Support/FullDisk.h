// A disk that is full for as long as this lives.
#pragma once

#include <sys/resource.h>

#include <csignal>
#include <stdexcept>

namespace TarvaneTests {

/// Past the limit of a file's size a write fails, as it does on a full disk. For the whole process.
class FullDisk {
  public:
    explicit FullDisk(rlim_t bytesLeft) {
        if (getrlimit(RLIMIT_FSIZE, &usual_) != 0) {
            throw std::runtime_error("the limit of a file's size can't be read");
        }
        rlimit tight = usual_;
        tight.rlim_cur = bytesLeft;
        usualAction_ = std::signal(SIGXFSZ, SIG_IGN);
        if (setrlimit(RLIMIT_FSIZE, &tight) != 0) {
            throw std::runtime_error("the size of a file can't be limited");
        }
    }
    ~FullDisk() {
        setrlimit(RLIMIT_FSIZE, &usual_);
        std::signal(SIGXFSZ, usualAction_);
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

  private:
    rlimit usual_{};
    void (*usualAction_)(int) = nullptr;
};

}  // namespace TarvaneTests
