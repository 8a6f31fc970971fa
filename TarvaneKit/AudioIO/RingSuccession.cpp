#include "AudioIO/RingSuccession.h"

#include <utility>

namespace TarvaneKit {

RingSuccession::RingSuccession(std::unique_ptr<SampleRing> first) : current_(std::move(first)) {
    newest_.store(current_.get(), std::memory_order_release);
}

bool RingSuccession::write(const float* const* channels, int frameCount,
                           std::int64_t missingFrames) noexcept {
    return newest_.load(std::memory_order_acquire)->write(channels, frameCount, missingFrames);
}

void RingSuccession::append(std::unique_ptr<SampleRing> ring) {
    newest_.store(ring.get(), std::memory_order_release);
    const std::scoped_lock lock(mutex_);
    waiting_.push_back(std::move(ring));
}

bool RingSuccession::isSucceeded() {
    const std::scoped_lock lock(mutex_);
    return !waiting_.empty();
}

bool RingSuccession::advance() {
    const std::scoped_lock lock(mutex_);
    if (waiting_.empty()) {
        return false;
    }
    // A ring that has a successor gets no more blocks, but may have got some since it was emptied.
    if (!current_->front()) {
        current_ = std::move(waiting_.front());
        waiting_.pop_front();
    }
    return true;
}

}  // namespace TarvaneKit
