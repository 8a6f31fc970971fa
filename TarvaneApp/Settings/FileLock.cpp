#include "Settings/FileLock.h"

#include <QFile>
#include <cerrno>
#include <thread>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace TarvaneApp {

namespace {

constexpr std::chrono::milliseconds lookEvery{5};

}  // namespace

FileLock::FileLock(const QString& path, const std::function<bool(std::chrono::milliseconds)>& waits)
    : file_(open(QFile::encodeName(path).constData(),
                 O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, S_IRUSR | S_IWUSR)) {
    for (std::chrono::milliseconds waited{0};
         file_ >= 0 && flock(file_, LOCK_EX | LOCK_NB) != 0 &&
         (errno == EWOULDBLOCK || errno == EINTR) && waits(waited);
         waited += lookEvery) {
        std::this_thread::sleep_for(lookEvery);
    }
}

FileLock::~FileLock() {
    if (file_ >= 0) {
        close(file_);
    }
}

}  // namespace TarvaneApp
