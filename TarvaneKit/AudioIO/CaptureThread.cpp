#include "AudioIO/CaptureThread.h"

#include <pthread.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include "Core/Contract.h"

namespace TarvaneKit {

namespace {

// A capture thread that the scheduler keeps waiting this long still loses nothing.
constexpr double ringSeconds = 1.0;
// Longer blocks would stand in the displays too late: two of these are 43 ms at 48 kHz.
constexpr int longestHeldFrames = 1024;

std::size_t at(int index) {
    return static_cast<std::size_t>(index);
}

std::unique_ptr<SampleRing> makeRing(const CaptureThread::Layout& layout) {
    return std::make_unique<SampleRing>(
        layout.channelCount, static_cast<int>(std::ceil(layout.sampleRate * ringSeconds)),
        layout.largestBlockFrames);
}

}  // namespace

CaptureThread::CaptureThread(const std::string& name, const Layout& layout, Handler handler,
                             LostHandler onLost)
    : handler_(std::move(handler)),
      onLost_(std::move(onLost)),
      noticeBlocks_(layout.noticeBlocks),
      rings_(makeRing(layout)) {
    thread_ = std::thread([this, name] { run(name); });
}

CaptureThread::~CaptureThread() {
    stop();
}

bool CaptureThread::push(const float* const* channels, int frameCount,
                         std::int64_t missingFrames) noexcept {
    const int notice = std::min(noticeBlocks_.load(std::memory_order_relaxed), mostNoticeBlocks);
    untold_ += missingFrames;
    // What was dropped here is known at once, but told as late as all else.
    const std::int64_t ofLate = notice == 0 ? droppedAhead_ : lateDrops_[at(notice - 1)];
    const bool taken = rings_.write(channels, frameCount, untold_ + ofLate);
    if (!taken) {
        droppedAhead_ += frameCount;
        droppedBlocks_.fetch_add(1, std::memory_order_relaxed);
        droppedFrames_.fetch_add(frameCount, std::memory_order_relaxed);
    } else if (frameCount > 0) {
        untold_ = 0;
        std::shift_right(lateDrops_.begin(), lateDrops_.end(), 1);
        lateDrops_.front() = std::exchange(droppedAhead_, 0);
    }
    wake();
    return taken;
}

void CaptureThread::reopen(const Layout& layout) {
    noticeBlocks_.store(layout.noticeBlocks);
    rings_.append(makeRing(layout));
    wake();
}

void CaptureThread::stop() {
    TARVANE_PRECONDITION(thread_.get_id() != std::this_thread::get_id());
    stopping_.store(true);
    wake();
    const std::scoped_lock lock(stopMutex_);
    if (thread_.joinable()) {
        thread_.join();
    }
}

void CaptureThread::wake() noexcept {
    wakeCount_.fetch_add(1, std::memory_order_release);
    wakeCount_.notify_one();
}

void CaptureThread::run(const std::string& name) {
    pthread_setname_np(pthread_self(), name.substr(0, 15).c_str());
    for (;;) {
        const int seen = wakeCount_.load(std::memory_order_acquire);
        if (stopping_.load(std::memory_order_acquire)) {
            return;
        }
        deliverAll();
        wakeCount_.wait(seen, std::memory_order_acquire);
    }
}

void CaptureThread::deliverAll() {
    do {
        while (!stopping_.load(std::memory_order_acquire) && deliverNext()) {
        }
    } while (!stopping_.load(std::memory_order_acquire) && rings_.advance());
}

// False when there is no block, or none yet that may be delivered.
bool CaptureThread::deliverNext() {
    const auto block = rings_.front();
    if (!block) {
        return false;
    }
    const int notice = block->frameCount <= longestHeldFrames ? noticeBlocks_.load() : 0;
    if (!rings_.missingBehind(notice) && !rings_.isSucceeded()) {
        return false;
    }
    std::int64_t missingFrames = 0;
    for (; noticesTold_ <= notice; ++noticesTold_) {
        const auto missing = rings_.missingBehind(noticesTold_);
        if (!missing) {
            break;
        }
        missingFrames += *missing;
    }
    if (missingFrames > 0 && onLost_) {
        onLost_(missingFrames);
    }
    handler_(block->channels, block->channelCount, block->frameCount);
    rings_.pop();
    noticesTold_ = std::max(noticesTold_ - 1, 0);
    return true;
}

}  // namespace TarvaneKit
