#include "Core/SampleRing.h"

#include <algorithm>
#include <cstring>

#include "Core/Contract.h"

namespace TarvaneKit {

namespace {

// A header is as long as the grain of the records, so that one always fits ahead of the end.
constexpr std::size_t grain = 4;
constexpr int smallestBlockFrames = 16;

struct Header {
    std::int64_t missingFrames;
    std::int32_t frameCount;  // 0: nothing more up to the ring's end
    std::int32_t unused;
};
static_assert(sizeof(Header) == grain * sizeof(float));

std::size_t roundedUp(std::size_t size) {
    return (size + grain - 1) / grain * grain;
}

std::size_t storageSize(int channelCount, int capacityFrames, int largestBlockFrames) {
    const auto channels = static_cast<std::size_t>(channelCount);
    const auto capacity = static_cast<std::size_t>(capacityFrames);
    const auto largest = static_cast<std::size_t>(largestBlockFrames);
    const std::size_t blocks = capacity / smallestBlockFrames + 2;
    // Each record costs a header and less than a grain of rounding; a wrap skips less than the
    // largest record, and one more largest block is to fit on top of the capacity.
    return roundedUp(channels * (capacity + 2 * largest) + 2 * grain * (blocks + 2));
}

}  // namespace

SampleRing::SampleRing(int channelCount, int capacityFrames, int largestBlockFrames)
    : channelCount_(channelCount) {
    TARVANE_PRECONDITION(channelCount > 0 && capacityFrames > 0 && largestBlockFrames > 0);
    storage_.assign(storageSize(channelCount, capacityFrames, largestBlockFrames), 0.0f);
    pointers_.assign(static_cast<std::size_t>(channelCount), nullptr);
}

std::size_t SampleRing::recordSize(int frameCount) const noexcept {
    return grain + roundedUp(static_cast<std::size_t>(channelCount_) *
                             static_cast<std::size_t>(frameCount));
}

// The place of a record of that size, counted from the start of all writing; `written_` as it is
// when there is no room.
std::size_t SampleRing::reserve(std::size_t size) noexcept {
    const std::uint64_t written = written_.load(std::memory_order_relaxed);
    const std::size_t position = written % storage_.size();
    const std::size_t toEnd = storage_.size() - position;
    const std::size_t skipped = size > toEnd ? toEnd : 0;
    if (skipped + size > storage_.size() - (written - readSeen_)) {
        readSeen_ = read_.load(std::memory_order_acquire);
        if (skipped + size > storage_.size() - (written - readSeen_)) {
            return storage_.size();
        }
    }
    if (skipped > 0) {
        const Header rest{};
        std::memcpy(&storage_[position], &rest, sizeof rest);
        written_.store(written + skipped, std::memory_order_release);
        return 0;
    }
    return position;
}

bool SampleRing::write(const float* const* channels, int frameCount,
                       std::int64_t missingFrames) noexcept {
    if (frameCount <= 0) {
        return true;
    }
    const std::size_t size = recordSize(frameCount);
    const std::size_t position = reserve(size);
    if (position == storage_.size()) {
        droppedBlocks_.fetch_add(1, std::memory_order_relaxed);
        droppedFrames_.fetch_add(frameCount, std::memory_order_relaxed);
        return false;
    }
    const Header header{missingFrames, frameCount, 0};
    std::memcpy(&storage_[position], &header, sizeof header);
    float* plane = &storage_[position + grain];
    for (int channel = 0; channel < channelCount_; ++channel, plane += frameCount) {
        if (channels[channel] != nullptr) {
            std::copy_n(channels[channel], frameCount, plane);
        } else {
            std::fill_n(plane, frameCount, 0.0f);
        }
    }
    written_.store(written_.load(std::memory_order_relaxed) + size, std::memory_order_release);
    return true;
}

std::optional<SampleRing::Block> SampleRing::front() noexcept {
    for (;;) {
        const std::uint64_t read = read_.load(std::memory_order_relaxed);
        if (read == writtenSeen_) {
            writtenSeen_ = written_.load(std::memory_order_acquire);
            if (read == writtenSeen_) {
                return std::nullopt;
            }
        }
        const std::size_t position = read % storage_.size();
        Header header{};
        std::memcpy(&header, &storage_[position], sizeof header);
        if (header.frameCount == 0) {
            read_.store(read + (storage_.size() - position), std::memory_order_release);
            continue;
        }
        const float* plane = &storage_[position + grain];
        for (const float*& pointer : pointers_) {
            pointer = plane;
            plane += header.frameCount;
        }
        return Block{pointers_.data(), channelCount_, header.frameCount, header.missingFrames};
    }
}

std::optional<std::int64_t> SampleRing::missingBehind(int blockCount) noexcept {
    std::uint64_t at = read_.load(std::memory_order_relaxed);
    for (;;) {
        if (at == writtenSeen_) {
            writtenSeen_ = written_.load(std::memory_order_acquire);
            if (at == writtenSeen_) {
                return std::nullopt;
            }
        }
        const std::size_t position = at % storage_.size();
        Header header{};
        std::memcpy(&header, &storage_[position], sizeof header);
        if (header.frameCount == 0) {
            at += storage_.size() - position;
        } else if (blockCount-- == 0) {
            return header.missingFrames;
        } else {
            at += recordSize(header.frameCount);
        }
    }
}

void SampleRing::pop() noexcept {
    const std::uint64_t read = read_.load(std::memory_order_relaxed);
    TARVANE_PRECONDITION(read != writtenSeen_);
    Header header{};
    std::memcpy(&header, &storage_[read % storage_.size()], sizeof header);
    read_.store(read + recordSize(header.frameCount), std::memory_order_release);
}

}  // namespace TarvaneKit
