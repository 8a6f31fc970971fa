// One PipeWire stream that captures from one node, and its data thread's process callback: the
// place where samples come in.
//
// The callback takes each buffer's planes and pushes them to the capture thread, and does nothing
// else: no lock, no allocation, no system call but the wake-up. All other callbacks come on the
// loop's thread; they note what happened and tell the owner, who acts later. Making and destroying
// a stream needs the loop's lock and must not happen inside a callback. When the destructor has
// returned, the process callback isn't running and won't run again.
#pragma once

#include <pipewire/pipewire.h>

#include <atomic>
#include <cstdint>
#include <string>
#include <vector>

#include "AudioIO/BlockContinuity.h"
#include "AudioIO/CaptureThread.h"
#include "AudioIO/PipeWire/CaptureStatistics.h"

namespace TarvaneKit {

/// What a source has captured and lost, counted on the data thread.
struct CaptureCounters {
    std::atomic<std::int64_t> blocks = 0;
    std::atomic<std::int64_t> frames = 0;
    std::atomic<std::int64_t> droppedBlocks = 0;
    std::atomic<std::int64_t> droppedFrames = 0;
    std::atomic<std::int64_t> missedTicks = 0;

    CaptureStatistics read() const;
    void reset();
};

class CaptureStream {
  public:
    class Owner {
      public:
        virtual ~Owner() = default;
        /// Inside a callback: a format was agreed on, and blocks of it come next if the answer is
        /// true. No process callback is running.
        virtual bool acceptFormat(int rate, int channelCount) = 0;
        /// Inside a callback: something about the stream is different.
        virtual void streamChanged() = 0;
    };

    struct Request {
        std::string targetSerial;
        int channelCount = 1;
        int rate = 0;               ///< Hz; 0 asks for the graph's own
        bool capturesSink = false;  ///< what the target plays rather than what it records
        std::string nodeName;
        std::string description;
        std::string mediaName;
    };

    /// A failing call is kept as the stream's failure.
    CaptureStream(pw_core* core, const Request& request, CaptureThread& thread,
                  CaptureCounters& counters, Owner& owner);
    ~CaptureStream();
    CaptureStream(const CaptureStream&) = delete;
    CaptureStream& operator=(const CaptureStream&) = delete;

    bool isStreaming() const { return state_ == PW_STREAM_STATE_STREAMING; }
    /// It was asked to go: the node it captured from is gone, or the server is.
    bool isEnded() const { return state_ == PW_STREAM_STATE_UNCONNECTED && wasConnecting_; }
    bool hasFailed() const { return state_ == PW_STREAM_STATE_ERROR; }
    /// PipeWire's own words; empty without one.
    const std::string& failure() const { return failure_; }
    /// The negative errno of a failed call, or 0.
    int status() const { return status_; }
    /// The format that was agreed on isn't accepted.
    bool isRefused() const { return isRefused_; }
    /// SPA_ID_INVALID until the server has given one.
    std::uint32_t nodeID() const;

  private:
    static void onStateChanged(void* data, pw_stream_state old, pw_stream_state state,
                               const char* error);
    static void onControlInfo(void* data, std::uint32_t id, const pw_stream_control* control);
    static void onParamChanged(void* data, std::uint32_t id, const spa_pod* param);
    static void onProcess(void* data);

    void connect(const Request& request);
    void pushBuffer(const spa_buffer& buffer);
    std::int64_t missingFrames(int frameCount);
    std::int64_t framesOf(double missedTicks);

    CaptureThread& thread_;
    CaptureCounters& counters_;
    Owner& owner_;
    pw_stream* stream_ = nullptr;
    spa_hook hook_ = {};
    pw_stream_state state_ = PW_STREAM_STATE_UNCONNECTED;
    bool wasConnecting_ = false;
    bool isRefused_ = false;
    int status_ = 0;
    std::string failure_;
    int rate_ = 0;

    // The data thread's; handed over by `isAccepting_`.
    std::atomic<bool> isAccepting_ = false;
    std::vector<const float*> planes_;
    double ticksPerSecond_ = 0;
    BlockContinuity continuity_;
    // Set on the loop's thread, taken on the data thread.
    std::atomic<bool> followsOnNothing_ = true;
};

}  // namespace TarvaneKit
