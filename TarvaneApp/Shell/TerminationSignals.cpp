#include "Shell/TerminationSignals.h"

#include <QSocketNotifier>
#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <unistd.h>

#include "Core/Contract.h"

namespace TarvaneApp {

namespace {

constexpr std::array caught{SIGTERM, SIGINT, SIGHUP};

// The end of the pipe that a handler writes to. A handler may do next to nothing, but it may write.
std::atomic<int> writing = -1;
static_assert(std::atomic<int>::is_always_lock_free);

std::array<struct sigaction, caught.size()> before;

extern "C" void passOn(int) {
    const int error = errno;
    const char one = 1;
    // A full pipe has enough in it to wake the reader.
    static_cast<void>(!write(writing, &one, 1));
    errno = error;
}

}  // namespace

TerminationSignals::TerminationSignals() {
    TARVANE_PRECONDITION(writing == -1);
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
        return;  // then the signals end the program as they end any
    }
    reading_ = ends[0];
    writing = ends[1];
    connect(new QSocketNotifier(reading_, QSocketNotifier::Read, this), &QSocketNotifier::activated,
            this, [this] {
                drain();
                Q_EMIT endAsked();
            });
    struct sigaction action {};
    action.sa_handler = &passOn;
    action.sa_flags = static_cast<int>(SA_RESTART | SA_RESETHAND);
    sigemptyset(&action.sa_mask);
    for (std::size_t i = 0; i < caught.size(); ++i) {
        sigaction(caught[i], nullptr, &before[i]);
        // Whoever launched us with a signal ignored, as nohup does, wants it so.
        if (before[i].sa_handler != SIG_IGN) {
            sigaction(caught[i], &action, nullptr);
        }
    }
}

TerminationSignals::~TerminationSignals() {
    if (reading_ == -1) {
        return;
    }
    for (std::size_t i = 0; i < caught.size(); ++i) {
        sigaction(caught[i], &before[i], nullptr);
    }
    close(writing.exchange(-1));
    close(reading_);
}

void TerminationSignals::drain() {
    std::array<char, 16> bytes{};
    while (read(reading_, bytes.data(), bytes.size()) > 0) {
    }
}

}  // namespace TarvaneApp
