#include "AudioIO/CaptureThread.h"

#include <pthread.h>

#include <cmath>
#include <utility>

#include "Core/Contract.h"

namespace TarvaneKit {

namespace {

// A capture thread that the scheduler keeps waiting this long still loses nothing.
constexpr double ringSeconds = 1.0;

std::unique_ptr<SampleRing> makeRing(const CaptureThread::Layout& layout) {
    return std::make_unique<SampleRing>(
        layout.channelCount, static_cast<int>(std::ceil(layout.sampleRate * ringSeconds)),
        layout.largestBlockFrames);
}

}  // namespace

CaptureThread::CaptureThread(const std::string& name, const Layout& layout, Handler handler,
                             LostHandler onLost)
    : handler_(std::move(handler)), onLost_(std::move(onLost)), rings_(makeRing(layout)) {
    thread_ = std::thread([this, name] { run(name); });
}

CaptureThread::~CaptureThread() {
    stop();
}

bool CaptureThread::push(const float* const* channels, int frameCount,
                         std::int64_t missingFrames) noexcept {
    missingFrames += missingFrames_.load(std::memory_order_relaxed);
    const bool taken = rings_.write(channels, frameCount, missingFrames);
    if (!taken) {
        missingFrames += frameCount;
        droppedBlocks_.fetch_add(1, std::memory_order_relaxed);
        droppedFrames_.fetch_add(frameCount, std::memory_order_relaxed);
    } else if (frameCount > 0) {
        missingFrames = 0;
    }
    missingFrames_.store(missingFrames, std::memory_order_relaxed);
    wake();
    return taken;
}

void CaptureThread::reopen(const Layout& layout) {
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
        while (const auto block = rings_.front()) {
            if (stopping_.load(std::memory_order_acquire)) {
                return;
            }
            if (block->missingFrames > 0 && onLost_) {
                onLost_(block->missingFrames);
            }
            handler_(block->channels, block->channelCount, block->frameCount);
            rings_.pop();
        }
    } while (rings_.advance());
}

}  // namespace TarvaneKit
