// A source's capture thread: takes the blocks that the platform's audio callback left in the ring
// and calls the source's handler with them, whole and in order, at the handler's own pace.
//
// `push` belongs to the audio callback and is wait-free; all it asks of the system is to wake the
// thread. `reopen` and `stop` belong to the source's owner. The handler runs on this object's
// thread and nowhere else.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

#include "AudioIO/RingSuccession.h"

namespace TarvaneKit {

class CaptureThread {
  public:
    /// `channels[channel][frame]`, valid for the call only.
    using Handler =
        std::function<void(const float* const* channels, int channelCount, int frameCount)>;
    /// So many frames are missing ahead of the block that the handler gets next.
    using LostHandler = std::function<void(std::int64_t frameCount)>;

    struct Layout {
        int channelCount = 1;
        double sampleRate = 48000;
        int largestBlockFrames = 8192;  ///< PipeWire's own limit of a graph cycle
        /// So many blocks, at most 2, after a hole it is known for one, and pushed as missing.
        /// Blocks wait until then, unless they are long, so that the hole is told in its place.
        int noticeBlocks = 0;
    };

    /// Takes all memory and starts the thread. `name` is what a debugger shows, 15 characters.
    CaptureThread(const std::string& name, const Layout& layout, Handler handler,
                  LostHandler onLost = nullptr);
    ~CaptureThread();
    CaptureThread(const CaptureThread&) = delete;
    CaptureThread& operator=(const CaptureThread&) = delete;

    /// Audio callback. Hands over one block of the layout's channels; a null channel counts as
    /// silence. `missingFrames` didn't come ahead of it, or of the one `noticeBlocks` before it.
    /// False when the ring was full and the block is lost: it counts as missing ahead of the next
    /// block that fits.
    bool push(const float* const* channels, int frameCount,
              std::int64_t missingFrames = 0) noexcept;

    /// Makes room for another layout. Blocks pushed before are still delivered, ahead of those
    /// pushed after; what is missing is told still. No push may be running.
    void reopen(const Layout& layout);

    /// When it has returned, the handler isn't running and won't run again. Blocks still in the
    /// ring are dropped. Idempotent; not from within the handler.
    void stop();

    /// Lost because the ring was full, since the start. Any thread.
    std::int64_t droppedBlocks() const { return droppedBlocks_.load(std::memory_order_relaxed); }
    std::int64_t droppedFrames() const { return droppedFrames_.load(std::memory_order_relaxed); }

  private:
    void run(const std::string& name);
    void deliverAll();
    bool deliverNext();
    void wake() noexcept;

    const Handler handler_;
    const LostHandler onLost_;
    std::atomic<int> noticeBlocks_;
    RingSuccession rings_;
    // The capture thread's: of how many blocks in the ring it was told what is missing.
    int noticesTold_ = 0;
    // The audio callback's: what the next block that fits has to tell.
    static constexpr int mostNoticeBlocks = 2;
    std::int64_t untold_ = 0;
    std::int64_t droppedAhead_ = 0;                           // of that block
    std::array<std::int64_t, mostNoticeBlocks> lateDrops_{};  // of those before, the newest first
    std::atomic<std::int64_t> droppedBlocks_ = 0;
    std::atomic<std::int64_t> droppedFrames_ = 0;
    std::atomic<int> wakeCount_ = 0;
    std::atomic<bool> stopping_ = false;
    std::mutex stopMutex_;
    std::thread thread_;
};

}  // namespace TarvaneKit
